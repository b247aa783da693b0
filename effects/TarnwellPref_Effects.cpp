// The controller's half of the effects page: what there is and what is on comes from this folder's
// plain functions, the outline, the switches and the preview are served here.

#include "pane/TarnwellPref.h"

#include "effects/CompositionLists.h"
#include "effects/CompositionSearch.h"
#include "effects/EffectInformation.h"
#include "effects/OutlineModel.h"
#include "effects/OutlineView.h"
#include "effects/PreviewProcess.h"
#include "effects/QCView.h"
#include "effects/SampleMenu.h"
#include "foundation/ForeignText.h"
#include "foundation/Logging.h"
#include "ports/FileManager.h"
#include "ports/Preferences.h"
#include "ports/SystemFacts.h"
#include "ports/Workspace.h"
#include "prefs/PreferenceKeys.h"
#include "ui/ForeignLabel.h"
#include "ui/InterfaceFile.h"

#include <QAbstractButton>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QScopedValueRollback>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

/// The property of the place for instructions that keeps the one of its interface.
constexpr const char *usualInstruction = "usualInstruction";

constexpr qsizetype longestReason = 300;
constexpr qsizetype mostLinesOfAReason = 6;

} // namespace

void TarnwellPref::registerEffectsClasses(ui::InterfaceFileLoader &loader)
{
    loader.registerClass(u"QCView"_s, [this](QWidget *parent) {
        return new effects::QCView(
            m_desktop.clock, m_desktop.timers,
            [this] {
                // It is built and installed beside the host.
                const QFileInfo host(m_desktop.systemFacts.mainBundlePath());
                return std::make_unique<effects::PreviewProcess>(
                    host.dir().filePath(u"tarnwell-composition"_s));
            },
            parent);
    });
    loader.registerClass(u"OutlineView"_s,
                         [](QWidget *parent) { return new effects::OutlineView(parent); });
}

void TarnwellPref::addEffectsBindings(ui::InterfaceOwner &owner)
{
    const auto addSwitch = [&](const QString &name, QAbstractButton *&control,
                               void (TarnwellPref::*set)(bool)) {
        owner.addBinding(u"value"_s, name, [this, &control, set](QWidget *widget) {
            control = qobject_cast<QAbstractButton *>(widget);
            if (control)
                connect(control, &QAbstractButton::clicked, this, set);
            return control != nullptr;
        });
    };
    addSwitch(u"sillyEffect"_s, m_sillyEffectSwitch, &TarnwellPref::setSillyEffect);
    addSwitch(u"includesBundledEffects"_s, m_includesBundledEffectsSwitch,
              &TarnwellPref::setIncludesBundledEffects);
    owner.addBinding(u"hidden"_s, u"hideSillyEffects"_s, [this](QWidget *widget) {
        m_hiddenWithEffects.append(widget);
        m_effectsPage = widget->parentWidget();
        m_effectsPage->installEventFilter(this);
        return true;
    });
    owner.addBinding(u"shown"_s, u"hideSillyEffects"_s, [this](QWidget *widget) {
        m_shownWithoutEffects.append(widget);
        widget->hide();
        return true;
    });
}

void TarnwellPref::setUpEffects()
{
    connect(urlField(), &QLabel::linkActivated, this,
            [this](const QString &address) { m_desktop.workspace.openUrl(QUrl(address)); });
    urlField()->setFocusPolicy(Qt::NoFocus);
    preInstructionView()->setProperty(usualInstruction, preInstructionView()->text());
    connect(previewView(), &effects::QCView::failed, this, [this](const QString &reason) {
        ui::showInLabel(preInstructionView(),
                        foundation::shownLines(reason, longestReason, mostLinesOfAReason));
        preInstructionView()->show();
    });
    connect(previewView(), &effects::QCView::playable, this, &TarnwellPref::showWhetherEffectsPlay);
    showEffectSwitches();
}

void TarnwellPref::effectsWillShow()
{
    // To find out what there is to play, and whether it can be, takes a while, so it is done for
    // those alone who look at the page.
    previewView()->prepare();
    if (!m_seModel)
        setUpOutline();
}

void TarnwellPref::effectsDidHide()
{
    previewView()->release();
}

void TarnwellPref::showWhetherEffectsPlay(bool canPlay)
{
    m_canPlayEffects = canPlay;
    for (QWidget *widget : std::as_const(m_hiddenWithEffects))
        widget->setVisible(canPlay);
    for (QWidget *widget : std::as_const(m_shownWithoutEffects))
        widget->setHidden(canPlay);
}

void TarnwellPref::setUpOutline()
{
    QTreeView *outline = seView();
    m_seModel = new effects::OutlineModel(
        outline->property("identifiers").toStringList(),
        outline->property("headings").toStringList(), m_desktop.fileManager,
        [this](const effects::OutlineItem &item, bool on) {
            setObjectValue(on, effects::enableColumn, item);
        },
        outline);
    outline->setModel(m_seModel);
    reloadOutline();
    QHeaderView *header = outline->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
    header->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    connect(outline->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { outlineViewSelectionDidChange(seView()); });
}

void TarnwellPref::showEffectSwitches()
{
    m_sillyEffectSwitch->setChecked(sillyEffect());
    m_includesBundledEffectsSwitch->setChecked(includesBundledEffects());
}

void TarnwellPref::refreshEffects()
{
    showEffectSwitches();
    setQtzEnabledList({});
    setQtzDict({});
    reloadOutline();
}

effects::Outline TarnwellPref::knownOutline()
{
    if (qtzDict().isEmpty())
        getQTZDict();
    return effects::Outline({qtzDict(), qtzEnabledList()});
}

void TarnwellPref::reloadOutline()
{
    if (!m_seModel)
        return;
    const effects::Outline lists = knownOutline();
    if (!previewView()->composition())
        preInstructionView()->setText(
            tawlBundle()
                ? preInstructionView()->property(usualInstruction).toString()
                : localized("Effects come with the Tarnwell plug-in, which is not installed."));
    QTreeView *outline = seView();
    std::vector<effects::OutlineItem> collapsed;
    for (int row = 0; row < m_seModel->rowCount(); ++row) {
        const QModelIndex group = m_seModel->index(row, 0);
        if (!outline->isExpanded(group))
            collapsed.push_back(
                effects::Outline::persistentObjectForItem(m_seModel->itemAt(group)));
    }
    const QModelIndex current = outline->currentIndex();
    const effects::OutlineItem selected = m_seModel->itemAt(current);
    const int scrolled = outline->verticalScrollBar()->value();

    // Rows that are still the same ones keep the selection and what is expanded by themselves.
    const bool isReset = lists.groups() != m_seModel->outline().groups();
    m_seModel->setOutline(lists);
    if (!isReset)
        return;
    outline->expandAll();
    for (const effects::OutlineItem &item : collapsed)
        outline->collapse(m_seModel->indexOf(effects::Outline::itemForPersistentObject(item)));
    // The preview goes on, so a row that is chosen again is not played anew.
    const QScopedValueRollback isReloading(m_isReloadingOutline, true);
    const QModelIndex now = m_seModel->indexOf(selected);
    if (now.isValid())
        outline->setCurrentIndex(now.siblingAtColumn(current.column()));
    outline->verticalScrollBar()->setValue(scrolled);
}

const effects::CompositionGroups &TarnwellPref::getQTZDict()
{
    if (!tawlBundle())
        setTawlBundle(effects::findSillyEffectBundle(m_desktop.fileManager));
    if (!tawlBundle()) {
        TARNWELL_SYSTEM_LOG(u"Cannot find the Tarnwell.zok bundle containing Silly Effect"_s);
        return m_qtzDict;
    }
    const effects::DiscoveryContext context{m_desktop.preferences, m_desktop.fileManager,
                                            m_desktop.folders, m_desktop.clock,
                                            prefs::pluginDomain};
    // What a refresh of the plug-in brings here must not send anything back.
    effects::CompositionLists lists =
        effects::copyCompositionLists(context, tawlBundle(),
                                      isInNotification() ? effects::NewScreenSavers::OnlyLeaveOut
                                                         : effects::NewScreenSavers::Record);
    setQtzDict(std::move(lists.groups));
    setQtzEnabledList(std::move(lists.enabled));
    return m_qtzDict;
}

bool TarnwellPref::sillyEffect()
{
    m_desktop.preferences.appSynchronize(prefs::pluginDomain);
    bool isValid = false;
    const bool isStopped = m_desktop.preferences.appBooleanValue(prefs::keys::stopEffects,
                                                                 prefs::pluginDomain, &isValid);
    m_sillyEffect = isValid && !isStopped;
    return m_sillyEffect;
}

void TarnwellPref::setSillyEffect(bool on)
{
    m_desktop.preferences.setAppValue(prefs::keys::stopEffects, !on, prefs::pluginDomain);
    m_desktop.preferences.appSynchronize(prefs::pluginDomain);
    m_sillyEffect = on;
}

bool TarnwellPref::includesBundledEffects()
{
    m_desktop.preferences.appSynchronize(prefs::pluginDomain);
    return m_desktop.preferences.appBooleanValue(prefs::keys::includeBundledQTZs,
                                                 prefs::pluginDomain);
}

void TarnwellPref::setIncludesBundledEffects(bool include)
{
    m_desktop.preferences.setAppValue(prefs::keys::includeBundledQTZs, include,
                                      prefs::pluginDomain);
    m_desktop.preferences.appSynchronize(prefs::pluginDomain);
}

bool TarnwellPref::hideSillyEffects() const
{
    return !m_canPlayEffects;
}

int TarnwellPref::numberOfChildrenOfItem(const effects::OutlineItem &item)
{
    return knownOutline().numberOfChildrenOfItem(item);
}

bool TarnwellPref::isItemExpandable(const effects::OutlineItem &item) const
{
    return effects::Outline::isItemExpandable(item);
}

effects::OutlineItem TarnwellPref::child(int index, const effects::OutlineItem &ofItem)
{
    return knownOutline().childOfItem(index, ofItem);
}

QVariant TarnwellPref::objectValueForTableColumn(const QString &column,
                                                 const effects::OutlineItem &byItem)
{
    return knownOutline().objectValueForTableColumn(column, byItem, m_desktop.fileManager);
}

bool TarnwellPref::shouldEditTableColumn(const QString &column, const effects::OutlineItem &) const
{
    return effects::Outline::shouldEditTableColumn(column);
}

effects::OutlineItem TarnwellPref::itemForPersistentObject(const effects::OutlineItem &object) const
{
    return effects::Outline::itemForPersistentObject(object);
}

effects::OutlineItem TarnwellPref::persistentObjectForItem(const effects::OutlineItem &item) const
{
    return effects::Outline::persistentObjectForItem(item);
}

void TarnwellPref::setObjectValue(const QVariant &value, const QString &forTableColumn,
                                  const effects::OutlineItem &byItem)
{
    if (!effects::Outline::shouldEditTableColumn(forTableColumn))
        return;
    effects::storeStatus(m_desktop.preferences, prefs::pluginDomain,
                         knownOutline().compositionsOf(byItem), value.toBool());
    setQtzEnabledList({});
    setQtzDict({});
    reloadOutline();
}

void TarnwellPref::outlineViewSelectionDidChange(QTreeView *outline)
{
    if (!m_seModel || m_isReloadingOutline)
        return;
    const QModelIndexList rows = outline->selectionModel()->selectedRows();
    const effects::OutlineItem item =
        rows.isEmpty() ? effects::OutlineItem() : m_seModel->itemAt(rows.constFirst());
    if (const QUrl *const composition = std::get_if<QUrl>(&item))
        previewComposition(composition->toLocalFile());
}

void TarnwellPref::previewComposition(const QString &path)
{
    effects::QCView *view = previewView();
    if (view->isRendering())
        view->stopRendering();
    if (!view->loadCompositionFromFile(path))
        return;
    const QStringList keys = view->inputKeys();
    for (const auto &[key, value] : effects::sampleMenuInputs()) {
        if (keys.contains(key))
            view->setValue(value, key);
    }
    showInformation(effects::effectInformation(*view->composition(),
                                               m_desktop.fileManager.displayNameAtPath(path)));
    preInstructionView()->hide();
    view->startRendering();
}

void TarnwellPref::showInformation(const effects::EffectInformation &information)
{
    ui::showInLabel(qcName(), information.name);
    ui::showInLabel(authorName(), information.author);
    ui::showInLabel(urlField(), information.linkText);
    const bool isLink = !information.link.isEmpty();
    urlField()->setFocusPolicy(isLink ? Qt::StrongFocus : Qt::NoFocus);
    if (isLink) {
        const QString address = QString::fromUtf8(information.link.toEncoded());
        const QString host = urlField()->text();
        urlField()->setTextFormat(Qt::RichText);
        urlField()->setText(
            u"<a href=\"%1\">%2</a>"_s.arg(address.toHtmlEscaped(), host.toHtmlEscaped()));
    }
    // A tool tip would take tags for what they are, and break an address after every few words.
    constexpr qsizetype longestLine = 120;
    const QString &toolTip = information.linkToolTip;
    const QString form = toolTip.size() <= longestLine
                             ? u"<p style=\"white-space: pre\">%1</p>"_s
                             : u"<p style=\"white-space: pre-wrap\">%1</p>"_s;
    urlField()->setToolTip(toolTip.isEmpty() ? QString() : form.arg(toolTip.toHtmlEscaped()));
}

} // namespace tarnwell::pane

// About, help, the tutorial and the mailing list.

#include "pane/TarnwellPref.h"

#include "foundation/ForeignText.h"
#include "hotkey/LiWindow.h"
#include "pane/AboutScroller.h"
#include "ports/Applications.h"
#include "ports/KeyboardLayouts.h"
#include "ports/Sheets.h"
#include "ports/Timers.h"
#include "ports/Workspace.h"
#include "prefs/ApplicationIdentity.h"
#include "prefs/ApplicationSettings.h"
#include "prefs/PreferenceKeys.h"
#include "ui/Announcement.h"
#include "ui/ForeignLabel.h"
#include "ui/RichTextView.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

constexpr double aboutScrollInterval = 0.05; // seconds; one point a step
constexpr quint32 optionKeys = 0x4800;       // left and right

/// The sheet that a control stands in, and the number that the control answers it with.
struct SheetAnswer
{
    QWidget *sheet = nullptr;
    int tag = 0;
};

SheetAnswer sheetAnswer(QObject *sender)
{
    const auto *control = qobject_cast<QWidget *>(sender);
    return control ? SheetAnswer{control->window(), control->property("tag").toInt()}
                   : SheetAnswer{};
}

} // namespace

void TarnwellPref::doAbout(QObject *)
{
    const QString path = m_bundle.resourcePath(u"About"_s, u"rtfd"_s);
    if (!path.isEmpty())
        ui::showRichTextPackage(path, *aboutTextField());
    aboutTextField()->verticalScrollBar()->setValue(0);
    setPos(0.0F);
    m_desktop.sheets.beginSheet(aboutSheet(), m_mainView, [this](int returnCode) {
        // Also when the window below went away, nobody having pressed the button.
        setScrollTimer(nullptr);
        customSheetDidEnd(aboutSheet(), returnCode);
    });
    setScrollTimer(
        m_desktop.timers.scheduleRepeating(aboutScrollInterval, [this] { scrollAboutText(); }));
}

void TarnwellPref::scrollAboutText()
{
    const bool backwards = (m_desktop.keyboardLayouts.currentKeyModifiers() & optionKeys) != 0;
    QScrollBar *bar = aboutTextField()->verticalScrollBar();
    if (m_maximumAboutOffset == 0.0F)
        m_maximumAboutOffset = static_cast<float>(bar->maximum());
    setPos(nextAboutOffset(pos(), m_maximumAboutOffset, backwards));
    bar->setValue(static_cast<int>(pos()));
}

void TarnwellPref::doSheetDismiss(QObject *sender)
{
    const SheetAnswer answer = sheetAnswer(sender);
    if (!answer.sheet)
        return;
    if (answer.sheet == aboutSheet() && scrollTimer()) {
        scrollTimer()->invalidate();
        setScrollTimer(nullptr);
    }
    m_desktop.sheets.endSheet(answer.sheet, answer.tag);
}

void TarnwellPref::customSheetDidEnd(QWidget *sheet, int returnCode)
{
    if (sheet == hotkeySheet() && returnCode == 1)
        storeHotKey();
    sheet->hide();
}

void TarnwellPref::doHelp(QObject *)
{
    const QString path = m_bundle.resourcePath(u"Tarnwell Read Me"_s, u"rtfd"_s);
    if (path.isEmpty())
        return;
    // To a file manager the document is a folder, so the pane is its own reader.
    if (!m_helpWindow) {
        m_helpWindow = std::make_unique<QWidget>(m_mainView, Qt::Window);
        m_helpWindow->setObjectName(u"helpWindow"_s);
        m_helpWindow->setWindowTitle(localized("Tarnwell Read Me"));
        auto *layout = new QVBoxLayout(m_helpWindow.get());
        layout->setContentsMargins({});
        m_helpText = new QTextBrowser;
        m_helpText->setObjectName(u"helpText"_s);
        m_helpText->setAccessibleName(localized("Tarnwell Read Me"));
        m_helpText->setOpenExternalLinks(true);
        layout->addWidget(m_helpText);
        m_helpWindow->resize(m_helpText->fontMetrics().averageCharWidth() * 90,
                             m_helpText->fontMetrics().height() * 36);
        new QShortcut(QKeySequence(Qt::Key_Escape), m_helpWindow.get(), m_helpWindow.get(),
                      &QWidget::close);
    }
    ui::showRichTextPackage(path, *m_helpText);
    m_helpWindow->show();
    m_helpWindow->raise();
    m_helpWindow->activateWindow();
}

void TarnwellPref::showTutorialSheet()
{
    m_desktop.sheets.beginSheet(tutPanel(), m_mainView, [this](int returnCode) {
        customSheetDidEnd(tutPanel(), returnCode);
    });
}

void TarnwellPref::doTutorialSheet(QObject *sender)
{
    const SheetAnswer answer = sheetAnswer(sender);
    if (answer.sheet)
        m_desktop.sheets.endSheet(answer.sheet, 0);
    if (tutDontShowCheckbox()->isChecked()) {
        const auto wrapper = preferences();
        wrapper->setObject(true, prefs::keys::dontShowTutorialSheet);
        wrapper->synchronize();
    }
    if (answer.tag != 0)
        doTutorial(nullptr);
}

void TarnwellPref::doTutorial(QObject *)
{
    const QString path = m_bundle.resourcePath(u"Tarnwell Tutorial"_s, u"app"_s);
    if (path.isEmpty())
        return;
    if (const auto tutorial = foundation::Bundle::open(path)) {
        // The tutorial starts without the settings of its last time.
        prefs::RemoveCustomSettings(m_desktop.preferences, prefs::pluginDomain,
                                    prefs::GetApplicationID(identityContext(), *tutorial, path));
    }
    m_desktop.applications.openApplication(path, {});
}

void TarnwellPref::doMLSubscribe(QObject *)
{
    const QString address = mlEmailField()->text();
    if (address.isEmpty())
        return;
    const QUrl url(QStringLiteral(TARNWELL_WEB_SERVER "/list-subscribe.php?list=quillets&email=") +
                       address,
                   QUrl::StrictMode);
    const auto wrapper = preferences();
    wrapper->setObject(address, prefs::keys::mlEmailAddress);
    wrapper->synchronize();
    if (url.isValid())
        m_desktop.workspace.openUrl(url);
}

void TarnwellPref::doMLAction(QObject *) {}

void TarnwellPref::showStatus(const QString &text)
{
    statusLine()->setVisible(!text.isEmpty());
    ui::showInLabel(statusLine(), text);
    if (!text.isEmpty())
        ui::announce(statusLine());
}

void TarnwellPref::showMessage(const QString &title, const QString &message)
{
    ports::Alert alert;
    alert.title = title;
    alert.message = message;
    alert.defaultButton = localized("OK");
    m_desktop.sheets.beginAlert(alert, m_mainView, {});
}

QString TarnwellPref::withTexts(const QString &format, const QStringList &texts)
{
    // Split first: a text may hold a placeholder itself.
    const QStringList parts = format.split("%@"_L1);
    QString whole = parts.first();
    for (qsizetype i = 1; i < parts.size(); ++i)
        whole += foundation::shownText(texts.value(i - 1)) + parts.at(i);
    return whole;
}

} // namespace tarnwell::pane

#include "pane/TarnwellPref.h"

#include "effects/QCView.h"
#include "foundation/Languages.h"
#include "pane/Catalogues.h"
#include "ports/HostApplication.h"
#include "ports/HttpFetcher.h"
#include "ports/KeyboardLayouts.h"
#include "ports/NotificationCenter.h"
#include "ports/Preferences.h"
#include "ports/Timers.h"
#include "prefs/ApplicationIdentity.h"
#include "prefs/PreferenceKeys.h"
#include "prefs/StoreRetry.h"
#include "shortcuts/LayoutKeyCommandTranslator.h"
#include "shortcuts/ShortcutTableModel.h"
#include "ui/FirstPaint.h"
#include "ui/InterfaceFile.h"
#include "update/QXVCUpdateViewController_V102.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

TarnwellPref::TarnwellPref(const ports::Desktop &desktop,
                           prefs::ApplicationIdentityCache &identityCache,
                           const foundation::Bundle &bundle)
    : m_desktop(desktop)
    , m_identityCache(identityCache)
    , m_bundle(bundle)
    , m_interfaceMismatch(std::make_unique<ui::InterfaceMismatch>())
    , m_updateState(std::make_unique<update::UpdateProcessState>())
{}

TarnwellPref::~TarnwellPref()
{
    if (m_scrollTimer)
        m_scrollTimer->invalidate();
    // The view plays by the desktop's clock, and outlives it.
    if (m_mainView)
        previewView()->stopRendering();
}

QWidget *TarnwellPref::loadMainView(QString *errorMessage)
{
    loadTranslation();
    QStringList files;
    for (const QString &name :
         {u"Main"_s, u"AboutSheet"_s, u"HotKeySheet"_s, u"TutorialSheet"_s, u"BringBackSheet"_s}) {
        const QString path = m_bundle.resourcePath(name, u"ui"_s);
        if (path.isEmpty()) {
            *errorMessage = localized("The interface file \"%1\" is missing from the pane.")
                                .arg(name + ".ui"_L1);
            return nullptr;
        }
        files.append(path);
    }

    ui::InterfaceOwner owner;
    addOutlets(owner);
    addActions(owner);
    ui::InterfaceFileLoader loader;
    registerInterfaceClasses(loader);
    std::vector<std::unique_ptr<QWidget>> views =
        loader.load(files, owner, m_interfaceMismatch.get(), errorMessage);
    if (views.empty())
        return nullptr;
    if (!m_interfaceMismatch->outletsWithoutWidget.isEmpty()) {
        *errorMessage = localized("The interface of the pane is incomplete: %1 is missing.")
                            .arg(m_interfaceMismatch->outletsWithoutWidget.join(", "_L1));
        return nullptr;
    }
    m_mainView = views.front().release();
    for (size_t i = 1; i < views.size(); ++i)
        m_sheets.push_back(std::move(views[i]));
    awakeFromNib();
    return m_mainView;
}

void TarnwellPref::loadTranslation()
{
    // The application forgets a translator that is destroyed, so the host is left as it was.
    m_translators =
        loadCatalogues(foundation::userLanguages(), m_bundle.path() + "/Contents/Resources"_L1,
                       QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    for (const auto &translator : m_translators)
        QCoreApplication::installTranslator(translator.get());
}

void TarnwellPref::hostDidBecomeActive()
{
    m_desktop.localNotifications.post(
        {QString(ports::applicationDidBecomeActiveNotification), QString(), plist::Value()});
}

std::unique_ptr<prefs::CFPreferencesWrapper_Tarnwell> TarnwellPref::preferences() const
{
    return prefs::CFPreferencesWrapper_Tarnwell::preferencesWithApplication(m_desktop.preferences,
                                                                            prefs::pluginDomain);
}

prefs::IdentityContext TarnwellPref::identityContext() const
{
    return {m_desktop.applications, m_desktop.fileManager, m_desktop.bookmarks,
            m_desktop.systemFacts, m_identityCache};
}

QString TarnwellPref::localized(const char *text)
{
    return QCoreApplication::translate("TarnwellPref", text);
}

} // namespace tarnwell::pane

// The executable of the pane bundle: makes the real desktop and hands it to the principal class.

#include "pane/PaneDesktop.h"
#include "pane/TarnwellPref.h"
#include "ui/PreferencePane.h"

#include <QObject>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

/// The controller together with the desktop it stands on, so that the two go in the right order.
class DesktopHolder
{
protected:
    DesktopHolder(const ui::PaneContext &context, const foundation::Bundle &bundle)
        : m_desktop(context, bundle)
    {}

    PaneDesktop m_desktop;
};

class LoadedPane : private DesktopHolder, public TarnwellPref
{
public:
    LoadedPane(const ui::PaneContext &context, const foundation::Bundle &bundle)
        : DesktopHolder(context, bundle)
        , TarnwellPref(m_desktop.ports(), m_desktop.identityCache(), bundle)
    {
        m_desktop.setMissedNotificationsHandler([this] { refreshWithoutWriting(); });
    }
};

} // namespace

class PaneFactory : public QObject, public ui::PreferencePaneFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID TARNWELL_PANE_FACTORY_IID)
    Q_INTERFACES(tarnwell::ui::PreferencePaneFactory)

public:
    std::unique_ptr<ui::PreferencePane> createPane(const QString &principalClass,
                                                   const ui::PaneContext &context) override
    {
        const auto bundle = foundation::Bundle::open(context.bundlePath);
        if (principalClass != "TarnwellPref"_L1 || !bundle)
            return nullptr;
        return std::make_unique<LoadedPane>(context, *bundle);
    }
};

} // namespace tarnwell::pane

#include "EntryPoint.moc"

// The executable of the pane bundle: makes the real desktop and hands it to the principal class.

#include "pane/PaneDesktop.h"
#include "pane/TarnwellPref.h"
#include "ui/PreferencePane.h"

#include <QObject>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

/// Holds the desktop that the controller stands on: as a base it is made before and goes after it.
struct DesktopHolder
{
    explicit DesktopHolder(const ui::PaneContext &context)
        : desktop(context)
    {}

    PaneDesktop desktop;
};

class LoadedPane : private DesktopHolder, public TarnwellPref
{
public:
    LoadedPane(const ui::PaneContext &context, const foundation::Bundle &bundle)
        : DesktopHolder(context)
        , TarnwellPref(desktop.ports(), desktop.identityCache(), bundle)
    {
        desktop.setMissedNotificationsHandler([this] { refreshWithoutWriting(); });
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

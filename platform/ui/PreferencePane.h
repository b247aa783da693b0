#pragma once

#include <QObject>
#include <QString>
#include <QtPlugin>

#include <functional>
#include <memory>

class QWidget;

namespace tarnwell::ports {
class HostApplication;
}

namespace tarnwell::ui {

/// What a host tells a pane when it makes it.
struct PaneContext
{
    QString bundlePath; ///< the pane's own bundle
    QString home;       ///< what "~" stands for
    QString root;       ///< put before absolute names of the documented folders; may be empty
    ports::HostApplication &hostApplication; ///< lives longer than the pane
};

/// A loaded pane. The host calls loadMainView() and mainViewDidLoad() once, and then willSelect()
/// and willUnselect() in turn around every showing.
class PreferencePane : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Loads the interface files. The view belongs to the caller, who takes it into a window; the
    /// pane must be told to let go (it is destroyed) before the view is. Null, with a message for
    /// the user, when the interface cannot be loaded.
    virtual QWidget *loadMainView(QString *errorMessage) = 0;

    virtual void mainViewDidLoad() = 0;
    virtual void willSelect() = 0;
    virtual void willUnselect() = 0;

    /// The user came back to the host application.
    virtual void hostDidBecomeActive() = 0;

    /// The user wants to close the window. Replies once, at once or from the event loop: true when
    /// it may be closed, false when it is to stay, perhaps after asking the user in a sheet. Not
    /// called again before the reply.
    virtual void askToClose(std::function<void(bool mayClose)> reply) = 0;

    /// The program is about to end, and nobody can be asked: stores what is left to store, or logs
    /// that it could not. The program may go on all the same.
    virtual void willEnd() = 0;
};

/// Makes panes. The executable of a pane bundle is a Qt plug-in with this interface at its root.
class PreferencePaneFactory
{
public:
    virtual ~PreferencePaneFactory() = default;

    /// A new pane of the principal class that the bundle's Info.plist names (NSPrincipalClass);
    /// null when the executable has no such class.
    virtual std::unique_ptr<PreferencePane> createPane(const QString &principalClass,
                                                       const PaneContext &context) = 0;
};

} // namespace tarnwell::ui

/// The number at the end is the ABI: it rises with every change of the classes above, and a pane of
/// another number is refused with a message.
#define TARNWELL_PANE_FACTORY_IID "com.varnit.PreferencePaneFactory/2"
Q_DECLARE_INTERFACE(tarnwell::ui::PreferencePaneFactory, TARNWELL_PANE_FACTORY_IID)

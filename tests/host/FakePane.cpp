// A pane bundle's executable for the tests of the host: each of its classes goes wrong, or right,
// in another way. Compiled once for each interface identifier.

#include "ports/HostApplication.h"
#include "ui/InterfaceFile.h"
#include "ui/PreferencePane.h"

#include <QDBusConnection>
#include <QDebug>
#include <QLabel>
#include <QPointer>
#include <QWidget>

#include <cstdio>
#include <stdexcept>

using namespace Qt::StringLiterals;
using tarnwell::ui::PaneContext;
using tarnwell::ui::PreferencePane;

namespace {

/// Where a test sees that code of this executable ran, and in which order.
void say(const char *step)
{
    std::printf("pane: %s\n", step);
    std::fflush(stdout);
}

const struct StaticInitialiser
{
    StaticInitialiser() { say("loaded"); }
} staticInitialiser;

class FakePane final : public PreferencePane
{
public:
    FakePane(const QString &behaviour, const PaneContext &context)
        : m_behaviour(behaviour)
        , m_context(context)
    {
        throwAt(u"ThrowingInConstructor"_s);
    }

    ~FakePane() override { say(m_view ? "destroyed before its view" : "destroyed"); }

    QWidget *loadMainView(QString *errorMessage) override
    {
        throwAt(u"ThrowingInLoadMainView"_s);
        if (m_behaviour == "Viewless"_L1) {
            *errorMessage = u"The interface file Main.ui cannot be read: it is damaged"_s;
            return nullptr;
        }
        if (m_behaviour == "Interface"_L1)
            return loadInterface(errorMessage);
        auto *label = new QLabel(u"home %1\nroot %2"_s.arg(m_context.home, m_context.root));
        m_view = label;
        return label;
    }

    void mainViewDidLoad() override
    {
        say("mainViewDidLoad");
        throwAt(u"ThrowingInMainViewDidLoad"_s);
        if (m_behaviour == "Talkative"_L1)
            talk();
        if (m_behaviour == "WantingABus"_L1) {
            say(QDBusConnection::sessionBus().isConnected() ? "a bus" : "no bus");
            say(qgetenv("DBUS_SESSION_BUS_ADDRESS").constData());
        }
        if (m_behaviour == "ThrowingLater"_L1)
            QMetaObject::invokeMethod(
                this, [] { throw std::runtime_error("later"); }, Qt::QueuedConnection);
    }

    void willSelect() override
    {
        say(m_view && m_view->isVisible() ? "willSelect, visible" : "willSelect, hidden");
        throwAt(u"ThrowingInWillSelect"_s);
    }

    void willUnselect() override { say("willUnselect"); }
    void hostDidBecomeActive() override { say("hostDidBecomeActive"); }
    void askToClose(std::function<void(bool)> reply) override { reply(true); }
    void willEnd() override { say("willEnd"); }

private:
    /// More than any pipe takes, and a name that would forge a line and clear the terminal.
    static void talk()
    {
        qWarning().noquote() << u"shown as \nforged: \u001b[2Jname"_s;
        for (int i = 0; i < 2000; ++i)
            qWarning().noquote() << u"x"_s.repeated(i == 0 ? 1000000 : 1000);
    }

    void throwAt(const QString &step) const
    {
        if (m_behaviour == step)
            throw std::runtime_error(step.toStdString());
    }

    QWidget *loadInterface(QString *errorMessage)
    {
        tarnwell::ui::InterfaceFileLoader loader;
        loader.registerClass(u"QCView"_s, [](QWidget *parent) { return new QWidget(parent); });
        auto roots = loader.load({m_context.bundlePath + u"/Contents/Resources/Main.ui"_s}, {},
                                 nullptr, errorMessage);
        if (roots.empty())
            return nullptr;
        m_view = roots.front().release();
        return m_view;
    }

    QString m_behaviour;
    PaneContext m_context;
    QPointer<QWidget> m_view;
};

} // namespace

class FakePaneFactory : public QObject, public tarnwell::ui::PreferencePaneFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID FAKE_PANE_IID)
    Q_INTERFACES(tarnwell::ui::PreferencePaneFactory)

public:
    std::unique_ptr<PreferencePane> createPane(const QString &principalClass,
                                               const PaneContext &context) override
    {
        if (principalClass == "Absent"_L1)
            return nullptr;
        return std::make_unique<FakePane>(principalClass, context);
    }
};

#include "FakePane.moc"

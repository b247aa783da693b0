#include "desktop/DesktopGlobalShortcuts.h"

#include "desktop/GnomeShortcuts.h"
#include "desktop/SessionBus.h"
#include "desktop/ShortcutMessages.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QThread>

#include <atomic>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwell::desktop {

namespace {

constexpr int patience = 2000; // milliseconds

QString connectionName(const QObject *owner)
{
    return u"tarnwell-global-shortcuts-%1"_s.arg(quintptr(owner), 0, 16);
}

/// The ones that may hold the combination, in the order in which they are asked.
enum Step { Kde, KdeOfPlasma6, Xfce, Gnome, Nobody };

} // namespace

DesktopGlobalShortcuts::DesktopGlobalShortcuts(QObject *parent)
    : QObject(parent)
{}

DesktopGlobalShortcuts::~DesktopGlobalShortcuts()
{
    if (m_bus)
        QDBusConnection::disconnectFromBus(connectionName(this));
}

void DesktopGlobalShortcuts::findHolder(const ports::KeyCombination &combination, Answer answer)
{
    m_combination = combination;
    m_answer = std::move(answer);
    const quint64 question = ++m_question;
    const auto beginUnlessObsolete = [this, question] {
        if (question == m_question)
            begin();
    };
    QMetaObject::invokeMethod(this, beginUnlessObsolete, Qt::QueuedConnection);
}

void DesktopGlobalShortcuts::begin()
{
    const QString address = sessionBusAddress();
    if (address.isEmpty() || (m_bus && m_bus->isConnected())) {
        askStep(address.isEmpty() ? Gnome : Kde);
        return;
    }
    // Connecting to a bus that does not answer would never come to an end.
    const auto isSilent = std::make_shared<std::atomic<bool>>(true);
    QThread *const thread =
        QThread::create([address, isSilent] { *isSilent = isSilentBus(address, patience); });
    connect(thread, &QThread::finished, this, [this, address, isSilent, question = m_question] {
        if (question == m_question)
            askStep(!*isSilent && connectToBus(address) ? Kde : Gnome);
    });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
}

bool DesktopGlobalShortcuts::connectToBus(const QString &address)
{
    if (m_bus && m_bus->isConnected())
        return true;
    if (m_bus)
        QDBusConnection::disconnectFromBus(connectionName(this));
    m_bus = QDBusConnection::connectToBus(address, connectionName(this));
    return m_bus->isConnected();
}

void DesktopGlobalShortcuts::askStep(int step)
{
    const int key = toolkitKey(m_combination);
    switch (step) {
    case Kde:
        askOverBus(kdeQuestion(key), step, holderFromKde);
        return;
    case KdeOfPlasma6:
        askOverBus(kdeQuestionOfPlasma6(key), step, holderFromKde);
        return;
    case Xfce:
        askOverBus(xfceQuestion(), step, [this](const QDBusMessage &reply) {
            return holderFromXfce(reply, m_combination);
        });
        return;
    case Gnome:
        if (const Holder holder = holderFromGnome(m_combination)) {
            finish(holder);
            return;
        }
        [[fallthrough]];
    default:
        finish(std::nullopt);
    }
}

void DesktopGlobalShortcuts::askOverBus(const QDBusMessage &question, int step, const Reader &read)
{
    auto *const watcher = new QDBusPendingCallWatcher(m_bus->asyncCall(question, patience), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, step, read, number = m_question] {
                watcher->deleteLater();
                if (number != m_question)
                    return;
                const QDBusMessage reply = watcher->reply();
                if (const Holder holder = read(reply))
                    finish(holder);
                else if (step == Kde &&
                         reply.errorName() != "org.freedesktop.DBus.Error.UnknownMethod"_L1)
                    askStep(Xfce);
                else
                    askStep(step + 1);
            });
}

void DesktopGlobalShortcuts::finish(const Holder &holder)
{
    const Answer answer = std::exchange(m_answer, {});
    if (answer)
        answer(holder);
}

} // namespace tarnwell::desktop

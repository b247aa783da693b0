#pragma once

#include "ports/GlobalShortcuts.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <optional>

class QDBusMessage;

namespace tarnwell::desktop {

/// Asks the desktops that can be asked: KDE's service and Xfce's store over the session bus, which
/// are not started for it, and, where GNOME or a relative of it runs, its settings.
///
/// Nothing is connected before the first question, and no answer is waited for longer than two
/// seconds, nor with the event loop standing still. Main thread only.
class DesktopGlobalShortcuts final : public QObject, public ports::GlobalShortcuts
{
    Q_OBJECT

public:
    explicit DesktopGlobalShortcuts(QObject *parent = nullptr);
    ~DesktopGlobalShortcuts() override;

    void findHolder(const ports::KeyCombination &combination, Answer answer) override;

private:
    using Holder = std::optional<ports::GlobalShortcutHolder>;
    using Reader = std::function<Holder(const QDBusMessage &reply)>;

    void begin();
    bool connectToBus(const QString &address);
    void askStep(int step);
    void askOverBus(const QDBusMessage &question, int step, const Reader &read);
    void finish(const Holder &holder);

    std::optional<QDBusConnection> m_bus;
    ports::KeyCombination m_combination;
    Answer m_answer;
    quint64 m_question = 0; ///< tells late answers from those that are waited for
};

} // namespace tarnwell::desktop

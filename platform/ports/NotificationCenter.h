#pragma once

#include "foundation/plist/Value.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace tarnwell::ports {

struct Notification
{
    QString name;
    QString object;        ///< who it is about; empty when about nobody
    plist::Value userInfo; ///< a dictionary, or null
};

/// Keeps an observer registered for as long as it lives.
class Observation
{
public:
    virtual ~Observation() = default;
};

/// A place where notifications are posted and observed: one within the process, one between
/// processes. Handlers run on the main thread, from the event loop for notifications of others.
class NotificationCenter
{
public:
    using Handler = std::function<void(const Notification &)>;

    virtual ~NotificationCenter() = default;

    /// Calls the handler for each notification of this name. An observer that names an object
    /// hears notifications about that object alone. The observation must not outlive the centre.
    [[nodiscard]] virtual std::unique_ptr<Observation>
    addObserver(const QString &name, const std::optional<QString> &object, Handler handler) = 0;

    /// For who looks for itself what is new: calls the handler once for all the notifications of
    /// this name that wait, whatever they are about and whatever they say.
    [[nodiscard]] virtual std::unique_ptr<Observation>
    addMergingObserver(const QString &name, std::function<void()> handler) = 0;

    virtual void post(const Notification &notification) = 0;
};

/// Posted in the process's own centre when the user comes back to the host application.
inline constexpr QLatin1StringView applicationDidBecomeActiveNotification{
    "NSApplicationDidBecomeActiveNotification"};

} // namespace tarnwell::ports

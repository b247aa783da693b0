#pragma once

#include "host/Options.h"

#include <QDBusMessage>
#include <QObject>

class QDBusPendingCallWatcher;

namespace tarnwell::host {

/// Follows the user's choice between light and dark, which desktops publish on the session bus.
/// Nothing happens before start(), and nothing ever waits for an answer.
class DesktopColorScheme final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void start();

Q_SIGNALS:
    /// What the user prefers now; AsDesktop for no preference.
    void changed(tarnwell::host::ColorScheme scheme);

private Q_SLOTS:
    void settingChanged(const QDBusMessage &message);

private:
    void answered(QDBusPendingCallWatcher *call);
};

} // namespace tarnwell::host

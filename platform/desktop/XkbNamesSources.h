#pragma once

#include "desktop/XkbKeymap.h"

#include <QByteArrayView>
#include <QObject>
#include <QVariantMap>

#include <optional>

namespace tarnwell::desktop {

/// The names in a keyboard configuration file, /etc/default/keyboard: assignments to XKBMODEL,
/// XKBLAYOUT, XKBVARIANT and XKBOPTIONS, quoted or not. Nothing when it names no layout.
std::optional<XkbNames> parseKeyboardFile(QByteArrayView text);

/// The names in the properties of the locale service; nothing when it names no layout.
std::optional<XkbNames> namesFromLocaleProperties(const QVariantMap &properties);

/// The locale service of a system, which knows the names of its keyboard.
class LocaleService : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Asks the service on the system bus and follows its answer from then on. Waits for at most
    /// the given milliseconds, as the service may have to be started; nothing without an answer.
    std::optional<XkbNames> names(int patience);

Q_SIGNALS:
    /// Another answer can be had now.
    void namesChanged();

private:
    bool m_isFollowed = false;
};

} // namespace tarnwell::desktop

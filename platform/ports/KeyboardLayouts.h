#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <optional>

namespace tarnwell::ports {

/// One keyboard layout.
struct InputSource
{
    QString identifier; ///< for logs and comparisons, such as "xkb:de(nodeadkeys)"

    /// The layout in the published Unicode keyboard-layout format; empty when there is none.
    QByteArray unicodeKeyLayoutData;
};

/// The user's keyboard.
class KeyboardLayouts : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The layout that types now; nothing when the desktop has none.
    virtual std::optional<InputSource> currentKeyboardLayout() const = 0;

    /// The keyboard type that layout data is indexed by.
    virtual quint32 keyboardType() const = 0;

    /// The modifier keys held now, in event-modifier bits (0x0100 Command, 0x0200 Shift,
    /// 0x0400 Caps Lock, 0x0800 and 0x4000 Option, 0x1000 Control).
    virtual quint32 currentKeyModifiers() const = 0;

    /// Hears at once of what the desktop has still to tell: keys may arrive ahead of the news of
    /// the layout that they were pressed in.
    virtual void catchUp() const {}

Q_SIGNALS:
    /// The current layout is another one now.
    void currentKeyboardLayoutChanged();
};

} // namespace tarnwell::ports

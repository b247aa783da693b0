#pragma once

#include "shortcuts/ShortcutListBuilder.h"

#include <QByteArray>
#include <QHash>

namespace tarnwell::ports {
class KeyboardLayouts;
}

namespace tarnwell::shortcuts {

/// Translates key commands with the current keyboard layout.
///
/// A user's shortcuts use the same few hundred combinations again and again, so each is translated
/// once per layout.
class LayoutKeyCommandTranslator final : public KeyCommandTranslator
{
public:
    /// The layouts are borrowed; none is what a command without a key shows.
    LayoutKeyCommandTranslator(const ports::KeyboardLayouts &layouts, const QString &none);

    /// Forgets what was translated if another layout types now. Called before a list is built.
    void useCurrentLayout();

    foundation::StyledString display(const plist::Dictionary &keyCommand) override;
    std::optional<QString> fingerprint(const plist::Value &keyCode,
                                       const plist::Value &commandKey) override;

private:
    const ports::KeyboardLayouts &m_layouts;
    QString m_none;
    QString m_layoutIdentifier;
    QByteArray m_layoutData;
    QHash<std::tuple<quint32, quint32, quint32>, foundation::StyledString> m_displayed;
};

} // namespace tarnwell::shortcuts

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
    struct Combination
    {
        quint32 keyCode;
        quint32 commandKey;
        quint32 modifiers;

        friend bool operator==(const Combination &, const Combination &) = default;
        friend size_t qHash(const Combination &combination, size_t seed = 0)
        {
            return qHashMulti(seed, combination.keyCode, combination.commandKey,
                              combination.modifiers);
        }
    };

    const ports::KeyboardLayouts &m_layouts;
    QString m_none;
    QString m_layoutIdentifier;
    QByteArray m_layoutData;
    QHash<Combination, foundation::StyledString> m_displayed;
};

} // namespace tarnwell::shortcuts

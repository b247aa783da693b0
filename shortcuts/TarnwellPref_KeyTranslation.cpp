#include "pane/TarnwellPref.h"

#include "shortcuts/KeyTranslation.h"

namespace tarnwell::pane {

std::optional<QString> TarnwellPref::translateKey(const plist::Value &kc,
                                                  const plist::Value &andCmdKey) const
{
    return shortcuts::TranslateKey(m_desktop.keyboardLayouts, kc, andCmdKey);
}

foundation::StyledString
TarnwellPref::translatedStringFromKeyDictionary(const plist::Dictionary &keyDictionary) const
{
    return shortcuts::TranslatedStringFromKeyDictionary(m_desktop.keyboardLayouts, keyDictionary,
                                                        localized("None"));
}

foundation::StyledString TarnwellPref::shortcutStringFor(const std::optional<QString> &character,
                                                         const plist::Value &modifiers) const
{
    return shortcuts::ShortcutStringFor(character, modifiers, localized("None"));
}

foundation::StyledString TarnwellPref::smallFontFor(const std::optional<QString> &string,
                                                    bool useBold, bool disabled) const
{
    return shortcuts::SmallFontFor(string, useBold, disabled);
}

} // namespace tarnwell::pane

#include "desktop/GlobalShortcutKeys.h"

#include <QByteArray>

#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace tarnwell::desktop {

namespace {

constexpr quint32 shift = 1;
constexpr quint32 option = 2;
constexpr quint32 control = 4;
constexpr quint32 noCommand = 8;

/// A key that types no letter, by its virtual key code.
struct NamedKey
{
    quint16 keyCode;
    int toolkitKey;
    const char *symbol;
};

// Where two keys share a place, both names are tried.
constexpr NamedKey namedKeys[] = {
    {0x24, Qt::Key_Return, "Return"},
    {0x30, Qt::Key_Tab, "Tab"},
    {0x31, Qt::Key_Space, "space"},
    {0x33, Qt::Key_Backspace, "BackSpace"},
    {0x35, Qt::Key_Escape, "Escape"},
    {0x4C, Qt::Key_Enter, "KP_Enter"},
    {0x6E, Qt::Key_Menu, "Menu"},
    {0x72, Qt::Key_Insert, "Insert"},
    {0x72, Qt::Key_Help, "Help"},
    {0x73, Qt::Key_Home, "Home"},
    {0x74, Qt::Key_PageUp, "Page_Up"},
    {0x75, Qt::Key_Delete, "Delete"},
    {0x77, Qt::Key_End, "End"},
    {0x79, Qt::Key_PageDown, "Page_Down"},
    {0x7B, Qt::Key_Left, "Left"},
    {0x7C, Qt::Key_Right, "Right"},
    {0x7D, Qt::Key_Down, "Down"},
    {0x7E, Qt::Key_Up, "Up"},
    {0x7A, Qt::Key_F1, "F1"},
    {0x78, Qt::Key_F2, "F2"},
    {0x63, Qt::Key_F3, "F3"},
    {0x76, Qt::Key_F4, "F4"},
    {0x60, Qt::Key_F5, "F5"},
    {0x61, Qt::Key_F6, "F6"},
    {0x62, Qt::Key_F7, "F7"},
    {0x64, Qt::Key_F8, "F8"},
    {0x65, Qt::Key_F9, "F9"},
    {0x6D, Qt::Key_F10, "F10"},
    {0x67, Qt::Key_F11, "F11"},
    {0x6F, Qt::Key_F12, "F12"},
    {0x69, Qt::Key_Print, "Print"},
    {0x69, Qt::Key_F13, "F13"},
    {0x6B, Qt::Key_ScrollLock, "Scroll_Lock"},
    {0x6B, Qt::Key_F14, "F14"},
    {0x71, Qt::Key_Pause, "Pause"},
    {0x71, Qt::Key_F15, "F15"},
    {0x6A, Qt::Key_F16, "F16"},
    {0x41, Qt::Key_Period, "KP_Decimal"},
    {0x43, Qt::Key_Asterisk, "KP_Multiply"},
    {0x45, Qt::Key_Plus, "KP_Add"},
    {0x4B, Qt::Key_Slash, "KP_Divide"},
    {0x4E, Qt::Key_Minus, "KP_Subtract"},
    {0x52, Qt::Key_0, "KP_0"},
    {0x53, Qt::Key_1, "KP_1"},
    {0x54, Qt::Key_2, "KP_2"},
    {0x55, Qt::Key_3, "KP_3"},
    {0x56, Qt::Key_4, "KP_4"},
    {0x57, Qt::Key_5, "KP_5"},
    {0x58, Qt::Key_6, "KP_6"},
    {0x59, Qt::Key_7, "KP_7"},
    {0x5B, Qt::Key_8, "KP_8"},
    {0x5C, Qt::Key_9, "KP_9"},
};

constexpr quint16 keyAboveTab = 0x32;

struct ModifierName
{
    QLatin1StringView name;
    quint32 bit; ///< noCommand stands for Command
};

constexpr ModifierName modifierNames[] = {
    {"shift"_L1, shift},     {"shft"_L1, shift},      {"alt"_L1, option},   {"mod1"_L1, option},
    {"primary"_L1, control}, {"control"_L1, control}, {"ctrl"_L1, control}, {"ctl"_L1, control},
    {"super"_L1, noCommand}, {"mod4"_L1, noCommand},
};

/// One character that the key types, if it types one.
std::optional<char16_t> singleCharacter(const QString &text)
{
    return text.size() == 1 && !text.front().isSurrogate() && text.front().isPrint()
               ? std::optional(text.front().unicode())
               : std::nullopt;
}

xkb_keysym_t lowerSymbol(QStringView name)
{
    const QByteArray bytes = name.toUtf8();
    xkb_keysym_t symbol = xkb_keysym_from_name(bytes.constData(), XKB_KEYSYM_NO_FLAGS);
    if (symbol == XKB_KEY_NoSymbol)
        symbol = xkb_keysym_from_name(bytes.constData(), XKB_KEYSYM_CASE_INSENSITIVE);
    return xkb_keysym_to_lower(symbol);
}

bool isSymbolOfKey(QStringView name, const ports::KeyCombination &combination)
{
    // The longest names of symbols have less than thirty characters.
    if (name.isEmpty() || name.size() > 64)
        return false;
    if (name == "Above_Tab"_L1)
        return combination.keyCode == keyAboveTab;
    const xkb_keysym_t wanted = lowerSymbol(name);
    if (wanted == XKB_KEY_NoSymbol)
        return false;
    bool isNamed = false;
    for (const NamedKey &key : namedKeys) {
        if (key.keyCode != combination.keyCode)
            continue;
        isNamed = true;
        if (lowerSymbol(QString(QLatin1StringView(key.symbol))) == wanted)
            return true;
    }
    const auto character = singleCharacter(combination.character);
    return !isNamed && character && xkb_keysym_to_lower(xkb_utf32_to_keysym(*character)) == wanted;
}

} // namespace

int toolkitKey(const ports::KeyCombination &combination)
{
    const auto named = std::ranges::find(namedKeys, combination.keyCode, &NamedKey::keyCode);
    const auto character = singleCharacter(combination.character);
    int key = 0;
    if (named != std::end(namedKeys))
        key = named->toolkitKey;
    else if (character)
        key = QChar(*character).toUpper().unicode();
    if (key == 0)
        return 0;
    const quint32 bits = combination.menuModifiers;
    key |= bits & shift ? int(Qt::ShiftModifier) : 0;
    key |= bits & control ? int(Qt::ControlModifier) : 0;
    key |= bits & option ? int(Qt::AltModifier) : 0;
    key |= bits & noCommand ? 0 : int(Qt::MetaModifier);
    return key;
}

bool isAccelerator(QStringView accelerator, const ports::KeyCombination &combination)
{
    quint32 held = noCommand;
    while (accelerator.startsWith(u'<')) {
        const qsizetype end = accelerator.indexOf(u'>');
        if (end < 0)
            return false;
        const QStringView name = accelerator.sliced(1, end - 1);
        const auto *modifier =
            std::ranges::find_if(modifierNames, [name](const ModifierName &known) {
                return name.compare(known.name, Qt::CaseInsensitive) == 0;
            });
        if (modifier == std::end(modifierNames))
            return false;
        if (modifier->bit == noCommand)
            held &= ~noCommand;
        else
            held |= modifier->bit;
        accelerator = accelerator.sliced(end + 1);
    }
    return held == (combination.menuModifiers & 0xF) && isSymbolOfKey(accelerator, combination);
}

} // namespace tarnwell::desktop

#include "desktop/XkbLayoutData.h"

#include "desktop/XkbDeadKeys.h"
#include "desktop/XkbKeymap.h"
#include "desktop/XkbModifiers.h"
#include "foundation/KeyCodes.h"

#include <QList>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <optional>

namespace tarnwell::desktop {

using foundation::KeyLayoutDescription;
using foundation::KeyLayoutOutput;
using foundation::KeyPosition;

namespace {

constexpr xkb_keycode_t firstKeycode = 8; // that of evdev code 0

/// The tables, by number. Below tableCommand the number is a sum.
enum Table : quint8 {
    tableShift = 1,
    tableCapsLock = 2,
    tableOption = 4,
    tableCommand = 8,
    tableCommandShift,
    tableControl,
    tableCount
};

// The modifier state of the layout format: event modifiers shifted right by eight.
constexpr unsigned stateCommand = 0x01;
constexpr unsigned stateShift = 0x02 | 0x20;
constexpr unsigned stateCapsLock = 0x04;
constexpr unsigned stateOption = 0x08 | 0x40;
constexpr unsigned stateControl = 0x10 | 0x80;

quint8 tableForState(unsigned state)
{
    const quint8 shift = state & stateShift ? tableShift : 0;
    if (state & stateCommand)
        return tableCommand + shift;
    if (state & stateControl)
        return tableControl;
    return shift | (state & stateCapsLock ? tableCapsLock : 0) |
           (state & stateOption ? tableOption : 0);
}

bool isOfScript(const QString &text, auto isWanted)
{
    const QList<uint> characters = text.toUcs4();
    return std::ranges::all_of(characters,
                               [&](uint character) { return isWanted(QChar::script(character)); });
}

/// Whether a text can name a key on a Latin board.
bool isLatinOrCommon(const QString &text)
{
    return isOfScript(text, [](QChar::Script script) {
        return script == QChar::Script_Latin || script == QChar::Script_Common ||
               script == QChar::Script_Inherited;
    });
}

/// Of the control characters only those of the editing keys are typed.
bool isTyped(char32_t character)
{
    return character >= 0x20 || character == '\r' || character == '\t' || character == '\b' ||
           character == 0x1B;
}

/// What a key gives, as yet without the numbers of dead-key states.
struct TypedKey
{
    QString text;
    const XkbDeadKey *deadKey = nullptr;
};

class Describer
{
public:
    Describer(xkb_keymap *keymap, xkb_layout_index_t group)
        : m_keymap(keymap)
        , m_state(xkb_state_new(keymap))
        , m_masks(modifierMasks(keymap))
        , m_group(group)
    {}

    KeyLayoutDescription describe();

private:
    TypedKey typed(const KeyPosition &key, xkb_layout_index_t group, quint8 table) const;
    QString shown(const KeyPosition &key, xkb_layout_index_t group, quint8 table) const;
    bool isLatin(xkb_layout_index_t group) const;
    std::optional<xkb_layout_index_t> firstOtherLatinGroup() const;
    QString commandText(const KeyPosition &key, quint8 shift) const;
    KeyLayoutOutput output(const TypedKey &typed);
    void describeDeadKeys();

    xkb_keymap *m_keymap;
    XkbStatePointer m_state;
    XkbModifierMasks m_masks;
    xkb_layout_index_t m_group;
    bool m_isLatin = true;
    std::optional<xkb_layout_index_t> m_latinGroup;
    KeyLayoutDescription m_description;
    std::vector<const XkbDeadKey *> m_deadKeys;
};

/// What a key of a group types with the modifiers of one of the first eight tables.
TypedKey Describer::typed(const KeyPosition &key, xkb_layout_index_t group, quint8 table) const
{
    if (key.evdevCode == 0)
        return {};
    // The keypad types digits, as if Num Lock were always on: Shift would take that back.
    const bool keypad = (key.flags & foundation::keyFlagNumericPad) != 0;
    const xkb_mod_mask_t held = (table & tableShift && !keypad ? m_masks.shift : 0) |
                                (table & tableOption ? m_masks.level3 : 0);
    const xkb_mod_mask_t locked =
        (table & tableCapsLock ? m_masks.capsLock : 0) | (keypad ? m_masks.numLock : 0);
    xkb_state_update_mask(m_state.get(), held, 0, locked, 0, 0, group);

    const xkb_keycode_t keycode = firstKeycode + key.evdevCode;
    const xkb_keysym_t *several = nullptr;
    const int count = xkb_state_key_get_syms(m_state.get(), keycode, &several);
    TypedKey result;
    if (count == 1) {
        // Asking for one symbol is what applies Caps Lock to keys that have no level for it.
        const xkb_keysym_t keysym = xkb_state_key_get_one_sym(m_state.get(), keycode);
        result.deadKey = xkbDeadKey(keysym);
        const char32_t character = xkb_keysym_to_utf32(keysym);
        if (result.deadKey == nullptr && isTyped(character))
            result.text = QString::fromUcs4(&character, 1);
        return result;
    }
    for (int i = 0; i < count; ++i) {
        const char32_t character = xkb_keysym_to_utf32(several[i]);
        if (isTyped(character))
            result.text += QString::fromUcs4(&character, 1);
    }
    return result;
}

/// The same as a text alone: of a dead key its accent.
QString Describer::shown(const KeyPosition &key, xkb_layout_index_t group, quint8 table) const
{
    const TypedKey result = typed(key, group, table);
    return result.deadKey != nullptr ? spacingText(*result.deadKey) : result.text;
}

/// Whether most letter keys of a group type the plain letters that shortcuts are named by. A board
/// of accented letters alone is a companion to another, as one of another script is.
bool Describer::isLatin(xkb_layout_index_t group) const
{
    int plain = 0;
    int other = 0;
    for (const KeyPosition &key : foundation::keyPositions()) {
        const QString text = QChar(key.usCharacter).isLetter() ? shown(key, group, 0) : QString();
        if (text.size() == 1 && text.front() < QChar(0x80)) {
            if (text.front().isLetter())
                ++plain;
        } else if (!isOfScript(text, [](auto script) { return script == QChar::Script_Common; })) {
            ++other;
        }
    }
    return plain > other;
}

std::optional<xkb_layout_index_t> Describer::firstOtherLatinGroup() const
{
    const xkb_layout_index_t groups = xkb_keymap_num_layouts(m_keymap);
    for (xkb_layout_index_t group = 0; group < groups; ++group) {
        if (group != m_group && isLatin(group))
            return group;
    }
    return std::nullopt;
}

/// The character that names a key in shortcuts.
QString Describer::commandText(const KeyPosition &key, quint8 shift) const
{
    const QString own = shown(key, m_group, shift);
    // Caps Lock may be another Backspace; such a key has no name.
    if (own.size() == 1 && own.front() < u' ')
        return own.front() == QChar(key.usCharacter) ? own : QString();
    const bool keypad = (key.flags & foundation::keyFlagNumericPad) != 0;
    if ((m_isLatin || keypad) && isLatinOrCommon(own))
        return own;
    if (m_latinGroup) {
        const QString latin = shown(key, *m_latinGroup, shift);
        if (!latin.isEmpty() && isLatinOrCommon(latin))
            return latin;
    }
    const char16_t us = shift ? key.usShifted : key.usCharacter;
    // A key that the US board lacks keeps what it has: anything beats a shortcut without a key.
    return us != 0 ? QString(QChar(us)) : own;
}

QString controlText(const QString &text)
{
    const char16_t unit = text.size() == 1 ? text.front().toUpper().unicode() : 0;
    return unit >= u'@' && unit <= u'_' ? QString(QChar(unit & 0x1F)) : text;
}

KeyLayoutOutput Describer::output(const TypedKey &typed)
{
    if (typed.deadKey == nullptr)
        return {typed.text, 0};
    auto place = std::ranges::find(m_deadKeys, typed.deadKey);
    if (place == m_deadKeys.end())
        place = m_deadKeys.insert(place, typed.deadKey);
    return {{}, static_cast<quint16>(place - m_deadKeys.begin() + 1)};
}

void Describer::describeDeadKeys()
{
    for (const XkbDeadKey *deadKey : m_deadKeys) {
        foundation::KeyLayoutDeadKey described{spacingText(*deadKey), {}};
        for (quint8 table = 0; table < tableCommand; ++table) {
            for (const auto &[keyCode, typed] : m_description.tables[table]) {
                if (typed.text.isEmpty() || described.combinations.contains(typed.text))
                    continue;
                const QString combined = combine(*deadKey, typed.text);
                if (!combined.isEmpty())
                    described.combinations[typed.text] = {combined, 0};
            }
        }
        m_description.deadKeys.push_back(std::move(described));
    }
}

KeyLayoutDescription Describer::describe()
{
    if (m_state == nullptr)
        return {};
    m_isLatin = isLatin(m_group);
    m_latinGroup = firstOtherLatinGroup();
    m_description.tables.resize(tableCount);
    for (const KeyPosition &key : foundation::keyPositions()) {
        const auto enter = [&](quint8 table, KeyLayoutOutput result) {
            if (!result.isEmpty())
                m_description.tables[table][key.virtualKeyCode] = std::move(result);
        };
        for (quint8 table = 0; table < tableCommand; ++table)
            enter(table, output(typed(key, m_group, table)));
        const QString command = commandText(key, 0);
        enter(tableCommand, {command, 0});
        enter(tableCommandShift, {commandText(key, tableShift), 0});
        enter(tableControl, {controlText(command), 0});
    }
    for (unsigned state = 0; state < m_description.tableForModifiers.size(); ++state)
        m_description.tableForModifiers[state] = tableForState(state);
    describeDeadKeys();
    return std::move(m_description);
}

/// Whether a key has a wanted symbol, in whatever group and with whatever modifiers.
bool hasSymbol(xkb_keymap *keymap, const KeyPosition &key, auto isWanted)
{
    const xkb_keycode_t keycode = firstKeycode + key.evdevCode;
    const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap, keycode);
    for (xkb_layout_index_t group = 0; group < groups; ++group) {
        const xkb_level_index_t levels = xkb_keymap_num_levels_for_key(keymap, keycode, group);
        for (xkb_level_index_t level = 0; level < levels; ++level) {
            const xkb_keysym_t *symbols = nullptr;
            const int count =
                xkb_keymap_key_get_syms_by_level(keymap, keycode, group, level, &symbols);
            for (int i = 0; i < count; ++i) {
                if (isWanted(symbols[i]))
                    return true;
            }
        }
    }
    return false;
}

} // namespace

bool isKeymapOfBoard(xkb_keymap *keymap)
{
    constexpr int enoughKeys = 30; // of 36
    const auto isSpace = [](xkb_keysym_t symbol) {
        return QChar::isSpace(xkb_keysym_to_utf32(symbol));
    };
    int keys = 0;
    for (const KeyPosition &key : foundation::keyPositions()) {
        if (key.flags & foundation::keyFlagNumericPad)
            continue;
        const QChar us(key.usCharacter);
        if (us.isLetterOrNumber())
            keys += hasSymbol(keymap, key, [](auto symbol) { return symbol != XKB_KEY_NoSymbol; });
        else if (us.isSpace() && us != u'\t' && !hasSymbol(keymap, key, isSpace))
            return false;
    }
    return keys >= enoughKeys;
}

KeyLayoutDescription describeKeymap(xkb_keymap *keymap, xkb_layout_index_t group)
{
    return Describer(keymap, group).describe();
}

} // namespace tarnwell::desktop

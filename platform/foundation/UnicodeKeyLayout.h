#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace tarnwell::foundation {

/// Reads one keyboard layout in the published Unicode keyboard-layout format, in place.
///
/// The bytes are those of a stranger: every offset, count and index is checked before it is
/// followed, and what leads outside counts as absent. Numbers are little-endian. The view borrows
/// the bytes.
class UnicodeKeyLayout
{
public:
    /// A view of the bytes; nothing when they do not begin like a layout.
    static std::optional<UnicodeKeyLayout> fromBytes(QByteArrayView bytes);

    struct KeyboardType
    {
        quint32 first = 0;
        quint32 last = 0;
        quint32 modifiersToTableNum = 0;  ///< offset, format 0x3001
        quint32 keyToCharTableIndex = 0;  ///< offset, format 0x4001
        quint32 keyStateRecordsIndex = 0; ///< offset, format 0x5001; 0 when absent
        quint32 keyStateTerminators = 0;  ///< offset, format 0x6001; 0 when absent
        quint32 keySequenceDataIndex = 0; ///< offset, format 0x7001; 0 when absent
    };

    quint32 keyboardTypeCount() const;
    /// One of the keyboard types, in stored order; nothing past their count.
    std::optional<KeyboardType> keyboardType(quint32 index) const;

    /// How many key-to-character tables a keyboard type has, and how many keys each covers.
    quint32 tableCount(const KeyboardType &type) const;
    quint32 tableSize(const KeyboardType &type) const;

    /// The stored output of a key in a table; nothing outside the table.
    std::optional<quint16> output(const KeyboardType &type, quint32 table, quint32 keyCode) const;

    /// The character that a state record gives in state zero; nothing when there is no such record.
    std::optional<quint16> stateZeroCharacter(const KeyboardType &type, quint32 record) const;

    /// The keyboard type of a number, or else the default one; nothing when there is none at all.
    std::optional<KeyboardType> keyboardTypeFor(quint32 number) const;

    /// The table that serves a modifier state of eight bits; nothing when it is not in the layout.
    std::optional<quint32> tableForModifiers(const KeyboardType &type, quint32 modifierState) const;

    /// What a state record does in a state: the character data that it gives and the state that
    /// it leads to, 0 for none.
    struct Transition
    {
        quint16 character = 0;
        quint16 nextState = 0;
    };

    /// The transition of a record in state zero; nothing when there is no such record.
    std::optional<Transition> stateZeroTransition(const KeyboardType &type, quint32 record) const;

    /// The transition of a record in a dead-key state; nothing when it has none for the state.
    std::optional<Transition> transition(const KeyboardType &type, quint32 record,
                                         quint16 state) const;

    /// The character data that ends a dead-key state when the next key does not combine.
    std::optional<quint16> terminator(const KeyboardType &type, quint16 state) const;

    /// Adds the characters that character data stands for; false when they are outside the bytes.
    bool appendCharacters(const KeyboardType &type, quint16 characterData, QString &text) const;

private:
    std::optional<quint16> at16(quint64 offset) const;
    std::optional<quint32> at32(quint64 offset) const;
    bool isPart(quint32 offset, quint16 format) const;
    std::optional<quint32> recordOffset(const KeyboardType &type, quint32 record) const;

    explicit UnicodeKeyLayout(QByteArrayView bytes)
        : m_bytes(bytes)
    {}

    QByteArrayView m_bytes;
};

enum class KeyAction : quint16 { Down = 0, Up = 1, AutoKey = 2, Display = 3 };

inline constexpr quint32 keyTranslateNoDeadKeys = 1;

/// The characters that a key types, as the platform's key-translation service answers.
///
/// modifierState holds the event-modifier bits shifted right by eight (1 Command, 2 Shift, 4 Caps
/// Lock, 8 Option, 16 Control). With keyTranslateNoDeadKeys a dead key yields its own character at
/// once; without it the key changes deadKeyState and yields nothing. At most maxLength code units
/// are returned. Nothing when the layout has no such table or the bytes are damaged; an empty
/// string when the key types nothing.
std::optional<QString> UCKeyTranslate(QByteArrayView layoutData, quint16 virtualKeyCode,
                                      KeyAction action, quint32 modifierState, quint32 keyboardType,
                                      quint32 options, quint32 &deadKeyState, qsizetype maxLength);

} // namespace tarnwell::foundation

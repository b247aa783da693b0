#pragma once

#include <QtGlobal>

/// The numbers that the published Unicode keyboard-layout format is made of: what the reader and
/// the builder of layout data have in common. Sizes and offsets are in bytes.
namespace tarnwell::foundation::keylayout {

inline constexpr quint16 headerFormat = 0x1002;
inline constexpr quint16 dataVersion = 0x0100;
inline constexpr quint16 modifiersFormat = 0x3001;
inline constexpr quint16 tableIndexFormat = 0x4001;
inline constexpr quint16 recordsIndexFormat = 0x5001;
inline constexpr quint16 terminatorsFormat = 0x6001;
inline constexpr quint16 sequencesFormat = 0x7001;

// Header: format, version, feature offset (32 bits), keyboard type count (32), keyboard types.
inline constexpr quint32 headerSize = 12;
// Keyboard type: first, last, and the offsets of the five parts, 32 bits each.
inline constexpr quint32 keyboardTypeSize = 28;
// Modifiers: format, default table, count (32), a table number a byte.
inline constexpr quint32 modifiersHeaderSize = 8;
// Table index: format, table size, count (32), offsets (32).
inline constexpr quint32 tableIndexHeaderSize = 8;
// Records index: format, count (16), offsets (32). Terminators: format, count, characters (16).
// Sequences: format, count, one offset (16) more than there are sequences.
inline constexpr quint32 shortHeaderSize = 4;

// State record: state-zero character, state-zero next state, entry count, entry format, entries.
inline constexpr quint32 recordHeaderSize = 8;
inline constexpr quint16 terminalEntries = 0x0001; // state, character
inline constexpr quint32 terminalEntrySize = 4;
inline constexpr quint16 rangeEntries = 0x0002; // state, more states (8), step (8), character, next
inline constexpr quint32 rangeEntrySize = 8;

// The top two bits of an output tell a state record or a sequence from a character.
inline constexpr quint16 kindMask = 0xC000;
inline constexpr quint16 recordKind = 0x4000;
inline constexpr quint16 sequenceKind = 0x8000;
inline constexpr quint16 indexMask = 0x3FFF;

inline constexpr quint16 noCharacter = 0xFFFF;

/// Whether a unit says that there is no character.
constexpr bool isNone(quint16 unit)
{
    return unit >= 0xFFFE;
}

} // namespace tarnwell::foundation::keylayout

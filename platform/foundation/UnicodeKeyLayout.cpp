#include "foundation/UnicodeKeyLayout.h"

#include "foundation/UnicodeKeyLayoutFormat.h"

#include <QtEndian>

#include <algorithm>

namespace tarnwell::foundation {

using namespace keylayout;

std::optional<quint16> UnicodeKeyLayout::at16(quint64 offset) const
{
    if (offset + 2 > static_cast<quint64>(m_bytes.size()))
        return std::nullopt;
    return qFromLittleEndian<quint16>(m_bytes.data() + offset);
}

std::optional<quint32> UnicodeKeyLayout::at32(quint64 offset) const
{
    if (offset + 4 > static_cast<quint64>(m_bytes.size()))
        return std::nullopt;
    return qFromLittleEndian<quint32>(m_bytes.data() + offset);
}

/// Whether a part of a format is at an offset. No part can be at 0, where the header is.
bool UnicodeKeyLayout::isPart(quint32 offset, quint16 format) const
{
    return offset != 0 && at16(offset) == format;
}

std::optional<UnicodeKeyLayout> UnicodeKeyLayout::fromBytes(QByteArrayView bytes)
{
    const UnicodeKeyLayout layout(bytes);
    if (bytes.size() < headerSize || layout.at16(0) != headerFormat)
        return std::nullopt;
    return layout;
}

quint32 UnicodeKeyLayout::keyboardTypeCount() const
{
    const quint64 room = (static_cast<quint64>(m_bytes.size()) - headerSize) / keyboardTypeSize;
    return static_cast<quint32>(std::min<quint64>(at32(8).value_or(0), room));
}

std::optional<UnicodeKeyLayout::KeyboardType> UnicodeKeyLayout::keyboardType(quint32 index) const
{
    if (index >= keyboardTypeCount())
        return std::nullopt;
    const quint64 start = headerSize + quint64{index} * keyboardTypeSize;
    const auto number = [&](quint64 position) { return at32(start + 4 * position).value_or(0); };
    return KeyboardType{number(0), number(1), number(2), number(3),
                        number(4), number(5), number(6)};
}

std::optional<UnicodeKeyLayout::KeyboardType>
UnicodeKeyLayout::keyboardTypeFor(quint32 number) const
{
    const quint32 count = keyboardTypeCount();
    for (const quint32 wanted : {number, quint32{0}}) {
        for (quint32 i = 0; i < count; ++i) {
            const std::optional<KeyboardType> type = keyboardType(i);
            if (type && type->first <= wanted && wanted <= type->last)
                return type;
        }
    }
    return keyboardType(0);
}

quint32 UnicodeKeyLayout::tableCount(const KeyboardType &type) const
{
    if (!isPart(type.keyToCharTableIndex, tableIndexFormat))
        return 0;
    const quint64 start = quint64{type.keyToCharTableIndex} + tableIndexHeaderSize;
    const auto size = static_cast<quint64>(m_bytes.size());
    const quint64 room = size > start ? (size - start) / 4 : 0;
    const quint32 count = at32(quint64{type.keyToCharTableIndex} + 4).value_or(0);
    return static_cast<quint32>(std::min<quint64>(count, room));
}

quint32 UnicodeKeyLayout::tableSize(const KeyboardType &type) const
{
    if (!isPart(type.keyToCharTableIndex, tableIndexFormat))
        return 0;
    return at16(quint64{type.keyToCharTableIndex} + 2).value_or(0);
}

std::optional<quint16> UnicodeKeyLayout::output(const KeyboardType &type, quint32 table,
                                                quint32 keyCode) const
{
    if (table >= tableCount(type) || keyCode >= tableSize(type))
        return std::nullopt;
    const std::optional<quint32> start =
        at32(quint64{type.keyToCharTableIndex} + tableIndexHeaderSize + quint64{table} * 4);
    if (!start)
        return std::nullopt;
    return at16(*start + quint64{keyCode} * 2);
}

std::optional<quint32> UnicodeKeyLayout::tableForModifiers(const KeyboardType &type,
                                                           quint32 modifierState) const
{
    const quint64 start = type.modifiersToTableNum;
    if (!isPart(type.modifiersToTableNum, modifiersFormat))
        return std::nullopt;
    quint32 table = at16(start + 2).value_or(0);
    const quint64 place = start + modifiersHeaderSize + (modifierState & 0xFF);
    if ((modifierState & 0xFF) < at32(start + 4).value_or(0)) {
        if (place >= static_cast<quint64>(m_bytes.size()))
            return std::nullopt;
        table = static_cast<quint8>(m_bytes[static_cast<qsizetype>(place)]);
    }
    if (table >= tableCount(type))
        return std::nullopt;
    return table;
}

std::optional<quint32> UnicodeKeyLayout::recordOffset(const KeyboardType &type,
                                                      quint32 record) const
{
    const quint64 start = type.keyStateRecordsIndex;
    if (!isPart(type.keyStateRecordsIndex, recordsIndexFormat) ||
        record >= at16(start + 2).value_or(0))
        return std::nullopt;
    return at32(start + shortHeaderSize + quint64{record} * 4);
}

std::optional<UnicodeKeyLayout::Transition>
UnicodeKeyLayout::stateZeroTransition(const KeyboardType &type, quint32 record) const
{
    const std::optional<quint32> start = recordOffset(type, record);
    if (!start)
        return std::nullopt;
    const std::optional<quint16> character = at16(*start);
    const std::optional<quint16> nextState = at16(quint64{*start} + 2);
    if (!character || !nextState)
        return std::nullopt;
    return Transition{*character, *nextState};
}

std::optional<quint16> UnicodeKeyLayout::stateZeroCharacter(const KeyboardType &type,
                                                            quint32 record) const
{
    const std::optional<quint32> start = recordOffset(type, record);
    return start ? at16(*start) : std::nullopt;
}

std::optional<UnicodeKeyLayout::Transition>
UnicodeKeyLayout::transition(const KeyboardType &type, quint32 record, quint16 state) const
{
    const std::optional<quint32> start = recordOffset(type, record);
    if (!start)
        return std::nullopt;
    const quint32 count = at16(quint64{*start} + 4).value_or(0);
    const quint16 format = at16(quint64{*start} + 6).value_or(0);
    const quint64 entries = quint64{*start} + recordHeaderSize;
    if (format != terminalEntries && format != rangeEntries)
        return std::nullopt;
    const quint32 entrySize = format == terminalEntries ? terminalEntrySize : rangeEntrySize;
    for (quint32 i = 0; i < count; ++i) {
        const quint64 entry = entries + quint64{i} * entrySize;
        const std::optional<quint16> first = at16(entry);
        const std::optional<quint16> second = at16(entry + 2);
        if (!first || !second)
            return std::nullopt;
        if (format == terminalEntries) {
            if (*first == state)
                return Transition{*second, 0};
            continue;
        }
        const quint32 moreStates = *second & 0xFFU;
        if (state < *first || state > *first + moreStates)
            continue;
        const std::optional<quint16> character = at16(entry + 4);
        const std::optional<quint16> next = at16(entry + 6);
        if (!character || !next)
            return std::nullopt;
        // A range steps through characters or states that lie in a row; "none" stays none.
        const quint32 step = (state - *first) * (*second >> 8);
        return Transition{static_cast<quint16>(isNone(*character) ? *character : *character + step),
                          static_cast<quint16>(*next == 0 ? 0 : *next + step)};
    }
    return std::nullopt;
}

std::optional<quint16> UnicodeKeyLayout::terminator(const KeyboardType &type, quint16 state) const
{
    const quint64 start = type.keyStateTerminators;
    if (state == 0 || !isPart(type.keyStateTerminators, terminatorsFormat) ||
        state > at16(start + 2).value_or(0))
        return std::nullopt;
    return at16(start + shortHeaderSize + (quint64{state} - 1) * 2);
}

bool UnicodeKeyLayout::appendCharacters(const KeyboardType &type, quint16 characterData,
                                        QString &text) const
{
    if (isNone(characterData))
        return true;
    if ((characterData & kindMask) != sequenceKind) {
        text.append(QChar(characterData));
        return true;
    }
    const quint64 start = type.keySequenceDataIndex;
    const quint32 index = characterData & indexMask;
    if (!isPart(type.keySequenceDataIndex, sequencesFormat) || index >= at16(start + 2).value_or(0))
        return false;
    const std::optional<quint16> from = at16(start + shortHeaderSize + quint64{index} * 2);
    const std::optional<quint16> to = at16(start + shortHeaderSize + quint64{index} * 2 + 2);
    if (!from || !to || *from > *to || start + *to > static_cast<quint64>(m_bytes.size()))
        return false;
    for (quint32 offset = *from; offset + 2 <= *to; offset += 2)
        text.append(QChar(at16(start + offset).value_or(0)));
    return true;
}

} // namespace tarnwell::foundation

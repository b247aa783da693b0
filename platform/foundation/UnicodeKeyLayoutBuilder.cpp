#include "foundation/UnicodeKeyLayoutBuilder.h"

#include "foundation/KeyCodes.h"
#include "foundation/UnicodeKeyLayoutFormat.h"

#include <QtEndian>

namespace tarnwell::foundation {

using namespace keylayout;

namespace {

/// Bytes that grow at their end, with numbers filled in later where an offset becomes known.
class Bytes
{
public:
    void put16(quint32 number) { put(static_cast<quint16>(number)); }
    void put32(quint32 number) { put(number); }
    void put8(quint8 number) { m_bytes.append(static_cast<char>(number)); }

    quint32 size() const { return static_cast<quint32>(m_bytes.size()); }
    void align()
    {
        while (m_bytes.size() % 4 != 0)
            m_bytes.append('\0');
    }
    void set32(quint32 position, quint32 number)
    {
        qToLittleEndian(number, m_bytes.data() + position);
    }
    const QByteArray &bytes() const { return m_bytes; }

private:
    template <typename Number>
    void put(Number number)
    {
        const Number stored = qToLittleEndian(number);
        m_bytes.append(reinterpret_cast<const char *>(&stored), sizeof stored);
    }

    QByteArray m_bytes;
};

class Writer
{
public:
    explicit Writer(const KeyLayoutDescription &description)
        : m_description(description)
    {}

    QByteArray write();

private:
    quint16 characterData(const QString &text, bool asOutput);
    quint16 recordFor(const KeyLayoutOutput &output);
    quint16 outputFor(const KeyLayoutOutput &output);
    bool combines(const QString &text) const;

    void writeModifiers();
    void writeTables(const std::vector<std::vector<quint16>> &tables);
    void writeRecords();
    void writeTerminators(const std::vector<quint16> &terminators);
    void writeSequences();
    void noteOffset(int part);

    struct Entry
    {
        quint16 state;
        quint16 character;
        quint16 nextState;
    };
    struct Record
    {
        quint16 character;
        quint16 nextState;
        std::vector<Entry> entries;
    };

    const KeyLayoutDescription &m_description;
    std::vector<Record> m_records;
    std::map<std::pair<QString, quint16>, quint16> m_recordNumbers;
    std::vector<QString> m_sequences;
    std::map<QString, quint16> m_sequenceNumbers;
    quint32 m_sequenceLength = 0;
    bool m_overflow = false;
    Bytes m_out;
};

/// One unit that stands for a text: itself if it can, else a sequence. Outputs have fewer units
/// that stand for themselves, because there the bits 01 mean a state record.
quint16 Writer::characterData(const QString &text, bool asOutput)
{
    if (text.isEmpty())
        return noCharacter;
    if (text.size() == 1) {
        const quint16 unit = text.front().unicode();
        const quint16 kind = unit & kindMask;
        if (kind != sequenceKind && !(asOutput && kind == recordKind) && !isNone(unit))
            return unit;
    }
    const auto [place, isNew] =
        m_sequenceNumbers.try_emplace(text, static_cast<quint16>(m_sequences.size()));
    if (isNew) {
        m_sequences.push_back(text);
        m_sequenceLength += static_cast<quint32>(text.size()) * 2;
        if (m_sequences.size() > indexMask)
            m_overflow = true;
    }
    return sequenceKind | (place->second & indexMask);
}

bool Writer::combines(const QString &text) const
{
    for (const KeyLayoutDeadKey &deadKey : m_description.deadKeys) {
        if (deadKey.combinations.contains(text))
            return true;
    }
    return false;
}

/// The record of a dead key, or of a text that some dead key combines with.
quint16 Writer::recordFor(const KeyLayoutOutput &output)
{
    const auto [place, isNew] = m_recordNumbers.try_emplace({output.text, output.deadKeyState},
                                                            static_cast<quint16>(m_records.size()));
    if (!isNew)
        return place->second;
    Record record{characterData(output.text, false), output.deadKeyState, {}};
    for (std::size_t i = 0; i < m_description.deadKeys.size() && !output.text.isEmpty(); ++i) {
        const auto &combinations = m_description.deadKeys[i].combinations;
        const auto combination = combinations.find(output.text);
        if (combination == combinations.end())
            continue;
        const KeyLayoutOutput &result = combination->second;
        record.entries.push_back(
            {static_cast<quint16>(i + 1), characterData(result.text, false), result.deadKeyState});
    }
    m_records.push_back(std::move(record));
    if (m_records.size() > indexMask)
        m_overflow = true;
    return place->second;
}

quint16 Writer::outputFor(const KeyLayoutOutput &output)
{
    if (output.deadKeyState != 0 || combines(output.text))
        return recordKind | (recordFor(output) & indexMask);
    return characterData(output.text, true);
}

/// Enters the place of the part that follows into the one keyboard type.
void Writer::noteOffset(int part)
{
    m_out.align();
    m_out.set32(headerSize + 8 + 4 * static_cast<quint32>(part), m_out.size());
}

void Writer::writeModifiers()
{
    noteOffset(0);
    m_out.put16(modifiersFormat);
    m_out.put16(m_description.tableForModifiers[0]);
    m_out.put32(static_cast<quint32>(m_description.tableForModifiers.size()));
    for (const quint8 table : m_description.tableForModifiers)
        m_out.put8(table);
}

void Writer::writeTables(const std::vector<std::vector<quint16>> &tables)
{
    noteOffset(1);
    m_out.put16(tableIndexFormat);
    m_out.put16(virtualKeyCodeCount);
    m_out.put32(static_cast<quint32>(tables.size()));
    const quint32 firstTable = m_out.size() + 4 * static_cast<quint32>(tables.size());
    for (quint32 i = 0; i < tables.size(); ++i)
        m_out.put32(firstTable + i * virtualKeyCodeCount * 2);
    for (const std::vector<quint16> &table : tables) {
        for (const quint16 output : table)
            m_out.put16(output);
    }
}

void Writer::writeRecords()
{
    noteOffset(2);
    m_out.put16(recordsIndexFormat);
    m_out.put16(static_cast<quint32>(m_records.size()));
    const quint32 offsets = m_out.size();
    for (std::size_t i = 0; i < m_records.size(); ++i)
        m_out.put32(0);
    for (quint32 i = 0; i < m_records.size(); ++i) {
        const Record &record = m_records[i];
        bool leadsOn = false;
        for (const Entry &entry : record.entries)
            leadsOn = leadsOn || entry.nextState != 0;
        m_out.set32(offsets + 4 * i, m_out.size());
        m_out.put16(record.character);
        m_out.put16(record.nextState);
        m_out.put16(static_cast<quint32>(record.entries.size()));
        m_out.put16(record.entries.empty() ? 0 : leadsOn ? rangeEntries : terminalEntries);
        for (const Entry &entry : record.entries) {
            m_out.put16(entry.state);
            if (leadsOn)
                m_out.put16(0);
            m_out.put16(entry.character);
            if (leadsOn)
                m_out.put16(entry.nextState);
        }
    }
}

void Writer::writeTerminators(const std::vector<quint16> &terminators)
{
    noteOffset(3);
    m_out.put16(terminatorsFormat);
    m_out.put16(static_cast<quint32>(terminators.size()));
    for (const quint16 terminator : terminators)
        m_out.put16(terminator);
}

void Writer::writeSequences()
{
    noteOffset(4);
    m_out.put16(sequencesFormat);
    m_out.put16(static_cast<quint32>(m_sequences.size()));
    quint32 offset = shortHeaderSize + 2 * (static_cast<quint32>(m_sequences.size()) + 1);
    if (offset + m_sequenceLength > 0xFFFF)
        m_overflow = true;
    m_out.put16(offset);
    for (const QString &sequence : m_sequences) {
        offset += static_cast<quint32>(sequence.size()) * 2;
        m_out.put16(offset);
    }
    for (const QString &sequence : m_sequences) {
        for (const QChar unit : sequence)
            m_out.put16(unit.unicode());
    }
}

QByteArray Writer::write()
{
    // Records and sequences are found while the outputs are made; the parts follow.
    std::vector<std::vector<quint16>> tables;
    for (const auto &described : m_description.tables) {
        std::vector<quint16> table(virtualKeyCodeCount, noCharacter);
        for (const auto &[keyCode, output] : described) {
            if (keyCode < virtualKeyCodeCount)
                table[keyCode] = outputFor(output);
        }
        tables.push_back(std::move(table));
    }
    std::vector<quint16> terminators;
    for (const KeyLayoutDeadKey &deadKey : m_description.deadKeys)
        terminators.push_back(characterData(deadKey.terminator, false));

    m_out.put16(headerFormat);
    m_out.put16(dataVersion);
    m_out.put32(0);
    m_out.put32(1);
    m_out.put32(0);
    m_out.put32(0xFFFFFFFF);
    for (int part = 0; part < 5; ++part)
        m_out.put32(0);
    writeModifiers();
    writeTables(tables);
    if (!m_records.empty())
        writeRecords();
    if (!terminators.empty())
        writeTerminators(terminators);
    if (!m_sequences.empty())
        writeSequences();
    return m_overflow ? QByteArray() : m_out.bytes();
}

} // namespace

QByteArray unicodeKeyLayoutData(const KeyLayoutDescription &description)
{
    return Writer(description).write();
}

} // namespace tarnwell::foundation

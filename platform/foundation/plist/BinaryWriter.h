#pragma once

#include "foundation/plist/Nodes.h"

#include <QByteArray>

#include <functional>
#include <unordered_map>
#include <vector>

namespace tarnwell::plist::detail {

/// Writes one binary property list, in which equal strings, data, numbers and dates of one type are
/// one object, and so are arrays and dictionaries that share what they hold.
class BinaryWriter
{
public:
    /// The value is not null, not deeper than maximumDepth and not without end when spread out.
    QByteArray write(const Value &value);

private:
    using Reference = quint32;

    enum class Kind : quint8 {
        Boolean,
        Integer,
        HugeInteger,
        Real,
        Float,
        Date,
        Uid,
        String,
        Data,
        Array,
        Dictionary
    };

    /// One object of the file. What it points to belongs to the value that is written.
    struct Object
    {
        Kind kind;
        Reference children = 0; // of a container: where its references begin
        union {
            quint64 bits;
            const QString *text;
            const QByteArray *data;
            const ContainerNode *container;
        };
    };

    /// An entry of the hash table over the objects that may be met again.
    struct Slot
    {
        quint32 hash = 0;
        Reference reference = 0; // one more than the object's number; 0 in a free entry
    };

    Reference collect(const Value &value);
    Reference collectContainer(const Object &object);
    /// Appends the references of the keys to those of the containers.
    void collectKeys(const KeyTable &table);
    /// The number of an object that equals this one; made if there is none. Tells which.
    std::pair<Reference, bool> intern(const Object &object);
    Reference add(const Object &object);
    void growTable();

    void writeObject(const Object &object);
    void writeString(const QString &text);
    void writeReferences(const Object &object);
    void writeHeader(uchar type, quint64 count);
    void writeInteger(quint64 value, bool isHuge);
    void writeBigEndian(quint64 value, int width);

    std::vector<Object> m_objects;
    std::vector<Reference> m_children; // the references of all containers, one after another
    std::vector<Slot> m_table;
    size_t m_tableUse = 0;
    std::unordered_map<const KeyTable *, std::vector<Reference>> m_keys;
    std::vector<char> m_out;
    int m_referenceWidth = 0;
};

} // namespace tarnwell::plist::detail

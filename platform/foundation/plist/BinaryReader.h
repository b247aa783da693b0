#pragma once

#include "foundation/plist/Nodes.h"

#include <QByteArrayView>
#include <QString>

#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarnwell::plist::detail {

/// Reads one binary property list, each of its objects once.
///
/// Trusts nothing: objects may neither overlap nor contain themselves, so that the work is linear
/// in the size of the input, whatever it says about itself.
class BinaryReader
{
public:
    explicit BinaryReader(QByteArrayView bytes);
    ~BinaryReader();
    Q_DISABLE_COPY_MOVE(BinaryReader)

    /// Null on an error. To be called once.
    Value read();
    QString errorMessage() const { return m_error; }

private:
    /// An object of the file, once it was met.
    struct Object
    {
        Value value;
        quint32 weight = 0; // expanded; 0 before it was met
        quint16 height = 0; // of the containers from here down
    };
    /// What dictionaries with the same list of references to keys have in common.
    struct Shape
    {
        KeyTable *keys = nullptr;
        std::vector<quint32> order; // where the value of each sorted key stands in the file
        quint64 weight = 0;         // of the keys
    };
    /// An unread stretch of one object.
    struct Span
    {
        const uchar *begin = nullptr;
        const uchar *end = nullptr;
        quint64 size() const { return quint64(end - begin); }
    };

    bool readTrailer();
    const Object *resolve(quint64 reference, int depth);
    bool decode(quint64 index, int depth);
    bool decodeSimple(uchar marker, Object &object);
    bool decodeInteger(uchar marker, Span rest, Object &object);
    bool decodeReal(uchar marker, Span rest, Object &object);
    bool decodeUid(uchar marker, Span rest, Object &object);
    bool decodeBytes(uchar marker, Span rest, Object &object);
    bool decodeArray(uchar marker, Span rest, Object &object, int depth);
    bool decodeDictionary(uchar marker, Span rest, Object &object, int depth);
    const Shape *shapeOf(const uchar *references, quint64 count, int depth);
    bool appendValue(ContainerNode *node, quint64 reference, int depth, Object &object,
                     quint64 &weight);
    bool finishContainer(Object &object, quint64 weight);

    bool readCount(uchar marker, Span &rest, quint64 &count);
    /// Takes so many units of so many bytes off the input: false if it has not that many, or if
    /// they were taken before.
    bool take(Span &rest, quint64 count, quint64 width)
    {
        if (count > rest.size() / width || count * width > m_untaken)
            return failTaking(rest, count, width);
        m_untaken -= count * width;
        rest.begin += count * width;
        return true;
    }
    bool failTaking(Span rest, quint64 count, quint64 width);
    /// Reports what is wrong with the object at hand.
    bool fail(const QString &problem);
    bool failAt(quint64 index, const QString &problem);
    quint64 offsetOf(quint64 index) const;

    const QByteArrayView m_bytes;
    const uchar *const m_start;
    quint64 m_tableOffset = 0;
    quint64 m_topObject = 0;
    quint64 m_weightLimit = 0;
    quint64 m_untaken = 0; // bytes of the object area that no object has claimed yet
    quint64 m_current = 0; // the object being decoded, for messages
    int m_offsetWidth = 0;
    int m_referenceWidth = 0;
    std::vector<Object> m_objects;
    std::unordered_map<std::string_view, Shape> m_shapes;
    QString m_error;
};

} // namespace tarnwell::plist::detail

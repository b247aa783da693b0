#pragma once

#include "foundation/plist/Value.h"

#include <QXmlStreamReader>

#include <utility>
#include <vector>

namespace tarnwell::plist::detail {

/// Reads one XML property list. Declarations of entities and the like are refused, so that a
/// document is never larger than it looks.
class XmlReader
{
public:
    explicit XmlReader(QByteArrayView bytes);

    /// Null on an error. To be called once.
    Value read();
    QString errorMessage() const { return m_error; }

private:
    /// An array or a dictionary whose end has not come yet.
    struct Level
    {
        bool isDictionary = false;
        bool hasKey = false;
        QString key;
        Array elements;
        std::vector<std::pair<QString, Value>> entries;
    };

    void startElement();
    void endElement();
    /// Takes a value that is complete to where it belongs.
    void place(Value value);
    void openLevel(bool isDictionary);
    void readKey();
    Value readLeaf(QStringView name);
    Value readInteger();
    Value readReal();
    Value readDate();
    Value readData();
    Value readBoolean(bool value);
    QString readText() { return m_xml.readElementText(); }
    void checkText();
    void fail(const QString &problem);
    bool hasTooManyAttributes() const;

    const QByteArrayView m_bytes;
    QXmlStreamReader m_xml;
    std::vector<Level> m_levels;
    Value m_top;
    bool m_isInsideRoot = false;
    QString m_error;
};

} // namespace tarnwell::plist::detail

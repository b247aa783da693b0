#include "foundation/plist/XmlWriter.h"

#include "foundation/plist/DateText.h"

#include <QLocale>
#include <QXmlStreamWriter>

#include <cmath>

namespace tarnwell::plist::detail {

using namespace Qt::StringLiterals;

namespace {

bool hasPlaceInXml(char16_t unit)
{
    return unit >= 0x20 ? unit < 0xfffe : unit == u'\t' || unit == u'\n' || unit == u'\r';
}

/// The text with U+FFFD for every code unit that XML cannot hold.
QString toXmlText(QStringView text)
{
    QString changed;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool beginsPair =
            c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const bool endsPair = c.isLowSurrogate() && i > 0 && text[i - 1].isHighSurrogate();
        if (c.isSurrogate() ? beginsPair || endsPair : hasPlaceInXml(c.unicode()))
            continue;
        if (changed.isEmpty())
            changed = text.toString();
        changed[i] = QChar::ReplacementCharacter;
    }
    return changed.isEmpty() ? text.toString() : changed;
}

QString realText(double real)
{
    if (std::isnan(real))
        return u"nan"_s;
    if (std::isinf(real))
        return real < 0 ? u"-inf"_s : u"inf"_s;
    if (real == 0.0 && std::signbit(real))
        return u"-0"_s; // the conversion drops the sign
    return QString::number(real, 'g', QLocale::FloatingPointShortest);
}

class Writer
{
public:
    explicit Writer(QByteArray *out)
        : m_xml(out)
    {
        m_xml.setAutoFormatting(true);
        m_xml.setAutoFormattingIndent(-1); // one tab
    }

    void writeDocument(const Value &value)
    {
        m_xml.writeStartDocument();
        m_xml.writeDTD(uR"(<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" )"
                       uR"("http://www.apple.com/DTDs/PropertyList-1.0.dtd">)"_s);
        m_xml.writeStartElement(u"plist"_s);
        m_xml.writeAttribute(u"version"_s, u"1.0"_s);
        write(value);
        m_xml.writeEndElement();
        m_xml.writeEndDocument();
    }

private:
    void write(const Value &value)
    {
        switch (value.type()) {
        case Value::Type::Null:
            break;
        case Value::Type::Boolean:
            m_xml.writeEmptyElement(value.toBool() ? u"true"_s : u"false"_s);
            break;
        case Value::Type::Integer:
            m_xml.writeTextElement(u"integer"_s, value.isHugeInteger()
                                                     ? QString::number(value.toUnsignedInteger())
                                                     : QString::number(value.toInteger()));
            break;
        case Value::Type::Real:
            m_xml.writeTextElement(u"real"_s, realText(value.toDouble()));
            break;
        case Value::Type::String:
            writeText(u"string"_s, value.toStringView());
            break;
        case Value::Type::Data:
            m_xml.writeTextElement(u"data"_s, QString::fromLatin1(value.toData().toBase64()));
            break;
        case Value::Type::Date:
            m_xml.writeTextElement(u"date"_s, dateText(value.toDate().absoluteTime));
            break;
        case Value::Type::Uid:
            write(Dictionary{{u"CF$UID"_s, value.toUid().value}});
            break;
        case Value::Type::Array:
            m_xml.writeStartElement(u"array"_s);
            for (const Value &element : value.toArray())
                write(element);
            m_xml.writeEndElement();
            break;
        case Value::Type::Dictionary:
            m_xml.writeStartElement(u"dict"_s);
            for (const auto &[key, element] : value.toDictionary()) {
                writeText(u"key"_s, key);
                write(element);
            }
            m_xml.writeEndElement();
            break;
        }
    }

    /// A carriage return has to be spelled out: readers turn a plain one into a line feed.
    void writeText(const QString &element, QStringView text)
    {
        m_xml.writeStartElement(element);
        const QString held = toXmlText(text);
        qsizetype start = 0;
        for (qsizetype end = held.indexOf(u'\r'); end >= 0; end = held.indexOf(u'\r', start)) {
            m_xml.writeCharacters(held.mid(start, end - start));
            m_xml.writeEntityReference(u"#13"_s);
            start = end + 1;
        }
        m_xml.writeCharacters(held.mid(start));
        m_xml.writeEndElement();
    }

    QXmlStreamWriter m_xml;
};

} // namespace

QByteArray writeXml(const Value &value)
{
    QByteArray bytes;
    Writer(&bytes).writeDocument(value);
    return bytes;
}

} // namespace tarnwell::plist::detail

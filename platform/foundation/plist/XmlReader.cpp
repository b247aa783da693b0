#include "foundation/plist/XmlReader.h"

#include "foundation/plist/DateText.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

namespace tarnwell::plist::detail {

using namespace Qt::StringLiterals;

namespace {

/// Property lists have one attribute, in the whole document.
constexpr int maximumAttributes = 500;

bool isBlank(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
}

/// What a message shows of something that may be megabytes long.
QString quoted(QStringView text)
{
    constexpr qsizetype shown = 60;
    return text.size() <= shown ? u"'%1'"_s.arg(text) : u"'%1…'"_s.arg(text.first(shown));
}

/// What stands for a reference into an archive, which XML has no element for.
Value uidOrDictionary(Dictionary dictionary)
{
    const Value &uid = dictionary.value("CF$UID"_L1);
    if (dictionary.size() == 1 && uid.isInteger() && (uid.isHugeInteger() || uid.toInteger() >= 0))
        return Uid{uid.toUnsignedInteger()};
    return dictionary;
}

} // namespace

XmlReader::XmlReader(QByteArrayView bytes)
    : m_bytes(bytes)
    , m_xml(QByteArray::fromRawData(bytes.data(), bytes.size()))
{
    m_xml.setNamespaceProcessing(false);
    m_xml.setEntityExpansionLimit(0);
}

Value XmlReader::read()
{
    if (isBlank(QString::fromLatin1(m_bytes.first(std::min<qsizetype>(m_bytes.size(), 4096)))) &&
        m_bytes.size() <= 4096) {
        m_error = u"The file is empty"_s;
        return {};
    }
    if (hasTooManyAttributes()) {
        m_error = u"An element has more than %1 attributes"_s.arg(maximumAttributes);
        return {};
    }
    while (m_error.isEmpty() && !m_xml.atEnd()) {
        switch (m_xml.readNext()) {
        case QXmlStreamReader::DTD:
            if (m_xml.text().contains(u'['))
                fail(u"the document type has declarations of its own"_s);
            break;
        case QXmlStreamReader::StartElement:
            startElement();
            break;
        case QXmlStreamReader::EndElement:
            endElement();
            break;
        case QXmlStreamReader::Characters:
            checkText();
            break;
        case QXmlStreamReader::EntityReference:
            fail(u"unknown entity %1"_s.arg(quoted(m_xml.name())));
            break;
        default:
            break;
        }
    }
    if (m_error.isEmpty() && m_xml.hasError())
        fail(m_xml.errorString());
    if (m_error.isEmpty() && m_top.isNull())
        fail(u"there is no value"_s);
    return m_error.isEmpty() ? m_top : Value();
}

void XmlReader::startElement()
{
    const QStringView name = m_xml.qualifiedName();
    if (name == "plist"_L1 && !m_isInsideRoot && m_top.isNull()) {
        m_isInsideRoot = true;
        return;
    }
    m_isInsideRoot = true;
    if (m_levels.empty() && !m_top.isNull())
        return fail(u"element %1 after the end of the value"_s.arg(quoted(name)));
    if (name == "key"_L1)
        return readKey();
    if (!m_levels.empty() && m_levels.back().isDictionary && !m_levels.back().hasKey)
        return fail(u"element %1 where a key should be"_s.arg(quoted(name)));
    if (name == "array"_L1 || name == "dict"_L1)
        return openLevel(name == "dict"_L1);
    Value value = readLeaf(name);
    if (m_error.isEmpty() && !m_xml.hasError())
        place(std::move(value));
}

void XmlReader::endElement()
{
    if (m_levels.empty())
        return; // of <plist>
    Level level = std::move(m_levels.back());
    m_levels.pop_back();
    if (level.hasKey)
        return fail(u"no value for the key %1"_s.arg(quoted(level.key)));
    if (level.isDictionary)
        place(uidOrDictionary(Dictionary::fromEntries(std::move(level.entries))));
    else
        place(std::move(level.elements));
}

void XmlReader::place(Value value)
{
    if (m_levels.empty()) {
        m_top = std::move(value);
        return;
    }
    Level &level = m_levels.back();
    if (level.isDictionary) {
        level.entries.emplace_back(std::move(level.key), std::move(value));
        level.hasKey = false;
    } else {
        level.elements.append(std::move(value));
    }
}

void XmlReader::openLevel(bool isDictionary)
{
    if (m_levels.size() >= size_t(maximumDepth))
        return fail(u"nested deeper than %1 levels"_s.arg(maximumDepth));
    m_levels.emplace_back().isDictionary = isDictionary;
}

void XmlReader::readKey()
{
    if (m_levels.empty() || !m_levels.back().isDictionary)
        return fail(u"a key outside of a dictionary"_s);
    Level &level = m_levels.back();
    if (level.hasKey)
        return fail(u"no value for the key %1"_s.arg(quoted(level.key)));
    level.key = readText();
    level.hasKey = true;
}

Value XmlReader::readLeaf(QStringView name)
{
    if (name == "string"_L1)
        return readText();
    if (name == "integer"_L1)
        return readInteger();
    if (name == "real"_L1)
        return readReal();
    if (name == "true"_L1 || name == "false"_L1)
        return readBoolean(name == "true"_L1);
    if (name == "date"_L1)
        return readDate();
    if (name == "data"_L1)
        return readData();
    fail(u"unknown element %1"_s.arg(quoted(name)));
    return {};
}

Value XmlReader::readInteger()
{
    const QString text = readText().trimmed();
    QStringView digits = text;
    const bool isNegative = digits.startsWith(u'-');
    if (isNegative || digits.startsWith(u'+'))
        digits = digits.sliced(1);
    int base = 10;
    if (digits.startsWith("0x"_L1, Qt::CaseInsensitive)) {
        base = 16;
        digits = digits.sliced(2);
    }
    // The number parser would let another sign or prefix pass.
    bool isNumber = !digits.isEmpty() && digits[0].digitValue() >= 0;
    if (base == 16 && !digits.isEmpty())
        isNumber = QStringView(u"0123456789abcdefABCDEF").contains(digits[0]);
    const quint64 magnitude = isNumber ? digits.toULongLong(&isNumber, base) : 0;
    constexpr quint64 largestNegative = quint64(1) << 63;
    if (!isNumber || (isNegative && magnitude > largestNegative)) {
        fail(u"%1 is no integer of 64 bits"_s.arg(quoted(text)));
        return {};
    }
    return isNegative ? Value(qint64(quint64(0) - magnitude)) : Value(magnitude);
}

Value XmlReader::readReal()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const QString text = readText().trimmed();
    QString name = text.toLower();
    const bool isNegative = name.startsWith(u'-');
    if (isNegative || name.startsWith(u'+'))
        name.remove(0, 1);
    if (name == "nan"_L1)
        return std::numeric_limits<double>::quiet_NaN();
    if (name == "inf"_L1 || name == "infinity"_L1)
        return isNegative ? -infinity : infinity;
    const QByteArray digits = name.toLatin1();
    double number = 0.0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), number);
    if (digits.startsWith('-') || end != digits.end() || error == std::errc::invalid_argument) {
        fail(u"%1 is no number"_s.arg(quoted(text)));
        return {};
    }
    // A number too large or too small for the type is still one: infinity, or nothing.
    if (error == std::errc::result_out_of_range)
        number = name.toDouble();
    return isNegative ? -number : number;
}

Value XmlReader::readDate()
{
    const QString text = readText().trimmed();
    const std::optional<double> date = parseDate(text);
    if (!date) {
        fail(u"%1 is no date"_s.arg(quoted(text)));
        return {};
    }
    return Date{*date};
}

Value XmlReader::readData()
{
    QByteArray text = readText().toUtf8();
    text.erase(std::remove_if(text.begin(), text.end(),
                              [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }),
               text.end());
    const auto decoded =
        QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) {
        fail(u"the data is not in Base64"_s);
        return {};
    }
    return *decoded;
}

Value XmlReader::readBoolean(bool value)
{
    if (!isBlank(readText()))
        fail(u"text within a boolean"_s);
    return value;
}

void XmlReader::checkText()
{
    if (!m_xml.isWhitespace())
        fail(u"text outside of a value"_s);
}

void XmlReader::fail(const QString &problem)
{
    if (m_error.isEmpty())
        m_error = u"Line %1: %2"_s.arg(QString::number(m_xml.lineNumber()), problem);
}

/// The XML reader compares every attribute of an element with every other. A megabyte of them would
/// keep it busy for minutes, so they are counted before.
bool XmlReader::hasTooManyAttributes() const
{
    int count = 0;
    bool isInTag = false;
    char before = 0;
    for (const char c : m_bytes) {
        if (c == 0)
            continue; // every second byte of a document in UTF-16
        if (before == '<')
            isInTag = c != '!' && c != '?';
        if (c == '>') {
            isInTag = false;
            count = 0;
        } else if (isInTag && c == '=' && ++count > maximumAttributes) {
            return true;
        }
        before = c;
    }
    return false;
}

} // namespace tarnwell::plist::detail

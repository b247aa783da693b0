#include "foundation/plist/DateText.h"
#include "foundation/plist/Value.h"

#include <QLocale>

#include <cmath>
#include <ostream>

namespace tarnwell::plist {

namespace {

using namespace Qt::StringLiterals;

/// In UTF-16 code units. Also what keeps lists that hold the same list over and over in bounds.
constexpr qsizetype descriptionLimit = 16'384;

class Describer
{
public:
    QString describe(const Value &value)
    {
        if (value.isString())
            appendEscaped(value.toStringView());
        else
            append(value, 0);
        if (m_text.size() > descriptionLimit) {
            m_text.truncate(descriptionLimit);
            if (m_text.back().isHighSurrogate())
                m_text.chop(1);
            m_text += u'…';
        }
        return m_text;
    }

private:
    bool isFull() const { return m_text.size() > descriptionLimit; }

    void append(const Value &value, int depth)
    {
        switch (value.type()) {
        case Value::Type::Null:
            m_text += "(null)"_L1;
            break;
        case Value::Type::Boolean:
            m_text += value.toBool() ? "true"_L1 : "false"_L1;
            break;
        case Value::Type::Integer:
            m_text += value.isHugeInteger() ? QString::number(value.toUnsignedInteger())
                                            : QString::number(value.toInteger());
            break;
        case Value::Type::Real:
            m_text += QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
            break;
        case Value::Type::String:
            m_text += u'"';
            appendEscaped(value.toStringView());
            m_text += u'"';
            break;
        case Value::Type::Data:
            appendData(value.toData());
            break;
        case Value::Type::Date:
            appendDate(value.toDate().absoluteTime);
            break;
        case Value::Type::Uid:
            m_text += "uid "_L1 + QString::number(value.toUid().value);
            break;
        case Value::Type::Array:
            appendArray(value.toArray(), depth);
            break;
        case Value::Type::Dictionary:
            appendDictionary(value.toDictionary(), depth);
            break;
        }
    }

    void appendArray(const Array &array, int depth)
    {
        m_text += u'(';
        QLatin1StringView separator;
        for (const Value &element : array) {
            if (isFull())
                return;
            m_text += separator;
            appendNested(element, depth);
            separator = ", "_L1;
        }
        m_text += u')';
    }

    void appendDictionary(const Dictionary &dictionary, int depth)
    {
        m_text += u'{';
        QLatin1StringView separator;
        for (const auto &[key, value] : dictionary) {
            if (isFull())
                return;
            m_text += separator;
            appendEscaped(key);
            m_text += " = "_L1;
            appendNested(value, depth);
            separator = "; "_L1;
        }
        m_text += u'}';
    }

    void appendNested(const Value &value, int depth)
    {
        if (depth < maximumDepth)
            append(value, depth + 1);
        else
            m_text += u'…';
    }

    void appendEscaped(QStringView text)
    {
        for (const QChar c : text.first(std::min(text.size(), descriptionLimit + 1))) {
            if (c == u'\n')
                m_text += "\\n"_L1;
            else if (c == u'\t')
                m_text += "\\t"_L1;
            else if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
                     c == QChar::ParagraphSeparator)
                m_text += u"\\u%1"_s.arg(uint(c.unicode()), 4, 16, QLatin1Char('0'));
            else
                m_text += c;
        }
    }

    void appendData(const QByteArray &data)
    {
        m_text += u'<' + QString::fromLatin1(data.left(descriptionLimit / 2).toHex()) + u'>';
    }

    void appendDate(double absoluteTime)
    {
        // Whole seconds within the calendar read better; the rest says what it is.
        const QString text = detail::dateText(absoluteTime);
        if (detail::parseDate(text) == std::floor(absoluteTime))
            m_text += text;
        else
            m_text += "date "_L1 + QString::number(absoluteTime);
    }

    QString m_text;
};

} // namespace

QString description(const Value &value)
{
    return Describer().describe(value);
}

std::ostream &operator<<(std::ostream &stream, const Value &value)
{
    return stream << description(value).toStdString();
}

} // namespace tarnwell::plist

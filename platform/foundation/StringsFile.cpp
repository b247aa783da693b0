#include "foundation/StringsFile.h"

#include "foundation/plist/PropertyList.h"

#include <QStringDecoder>

#include <optional>

namespace tarnwell::foundation {

namespace {

QString decode(const QByteArray &bytes)
{
    if (const auto encoding = QStringConverter::encodingForData(bytes, u'"'))
        return QStringDecoder(*encoding).decode(bytes);
    return QString::fromUtf8(bytes);
}

/// Walks the old table format: quoted or bare words, '=', ';' and two kinds of comment.
class Scanner
{
public:
    explicit Scanner(QStringView text)
        : m_text(text)
    {}

    bool atEnd()
    {
        skipBlanks();
        return m_at >= m_text.size();
    }

    bool take(QChar wanted)
    {
        if (atEnd() || m_text[m_at] != wanted)
            return false;
        ++m_at;
        return true;
    }

    std::optional<QString> word()
    {
        if (take(u'"'))
            return quoted();
        QString result;
        while (m_at < m_text.size() && isBare(m_text[m_at]))
            result.append(m_text[m_at++]);
        return result.isEmpty() ? std::nullopt : std::optional(result);
    }

private:
    static bool isBare(QChar c)
    {
        return c.isLetterOrNumber() || c == u'_' || c == u'.' || c == u'-' || c == u'$' ||
               c == u':';
    }

    void skipBlanks()
    {
        while (m_at < m_text.size()) {
            const QStringView rest = m_text.sliced(m_at);
            if (rest.front().isSpace())
                ++m_at;
            else if (rest.startsWith(u"//"))
                skipPast(u"\n");
            else if (rest.startsWith(u"/*"))
                skipPast(u"*/", 2);
            else
                return;
        }
    }

    void skipPast(QStringView end, qsizetype from = 0)
    {
        const qsizetype found = m_text.indexOf(end, m_at + from);
        m_at = found < 0 ? m_text.size() : found + end.size();
    }

    std::optional<QString> quoted()
    {
        QString result;
        while (m_at < m_text.size()) {
            const QChar c = m_text[m_at++];
            if (c == u'"')
                return result;
            if (c != u'\\') {
                result.append(c);
            } else if (m_at < m_text.size()) {
                result.append(escaped(m_text[m_at++]));
            }
        }
        return std::nullopt;
    }

    QChar escaped(QChar letter)
    {
        switch (letter.unicode()) {
        case 'n':
            return u'\n';
        case 'r':
            return u'\r';
        case 't':
            return u'\t';
        case 'u':
        case 'U': {
            bool isNumber = false;
            const ushort code = m_text.mid(m_at, 4).toUShort(&isNumber, 16);
            if (!isNumber)
                return letter;
            m_at = qMin(m_at + 4, m_text.size());
            return QChar(code);
        }
        default:
            return letter;
        }
    }

    QStringView m_text;
    qsizetype m_at = 0;
};

QHash<QString, QString> readTable(const QString &text)
{
    QHash<QString, QString> result;
    Scanner scanner(text);
    while (!scanner.atEnd()) {
        const std::optional<QString> key = scanner.word();
        if (!key)
            break;
        std::optional<QString> value = key;
        if (scanner.take(u'=')) {
            value = scanner.word();
            if (!value)
                break;
        }
        if (!scanner.take(u';'))
            break;
        result.insert(*key, *value);
    }
    return result;
}

bool looksLikePropertyList(const QByteArray &bytes)
{
    return bytes.startsWith("bplist") || bytes.left(256).contains("<?xml") ||
           bytes.left(256).contains("<plist");
}

} // namespace

QHash<QString, QString> readStringsFile(const QByteArray &bytes)
{
    if (!looksLikePropertyList(bytes))
        return readTable(decode(bytes));

    QHash<QString, QString> result;
    const plist::Value value = plist::read(bytes);
    for (const auto &[key, text] : value.toDictionary()) {
        if (text.isString())
            result.insert(key, text.toString());
    }
    return result;
}

} // namespace tarnwell::foundation

#include "compositions/script/ScriptSignature.h"

#include "compositions/Limits.h"

#include <array>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

bool isNameCharacter(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

/// Walks over a script, word by word and sign by sign; comments and texts count as blanks.
class Scanner
{
public:
    explicit Scanner(QStringView text)
        : m_text(text)
    {}

    qsizetype position() const { return m_position; }
    void setPosition(qsizetype position) { m_position = position; }

    /// The next word or sign; empty at the end.
    QStringView next()
    {
        skip();
        const qsizetype start = m_position;
        if (start >= m_text.size()) {
            return {};
        }
        while (m_position < m_text.size() && isNameCharacter(m_text[m_position])) {
            ++m_position;
        }
        if (m_position == start) {
            ++m_position;
        }
        return m_text.mid(start, m_position - start);
    }

private:
    void skip()
    {
        while (m_position < m_text.size()) {
            const QStringView rest = m_text.mid(m_position);
            if (rest.front().isSpace()) {
                ++m_position;
            } else if (rest.startsWith(u"//")) {
                const qsizetype end = rest.indexOf(u'\n');
                m_position = end < 0 ? m_text.size() : m_position + end;
            } else if (rest.startsWith(u"/*")) {
                const qsizetype end = rest.indexOf(u"*/", 2);
                m_position = end < 0 ? m_text.size() : m_position + end + 2;
            } else if (rest.front() == u'"' || rest.front() == u'\'') {
                skipText(rest.front());
            } else {
                return;
            }
        }
    }

    void skipText(QChar quote)
    {
        for (++m_position; m_position < m_text.size(); ++m_position) {
            const QChar c = m_text[m_position];
            if (c == u'\\') {
                ++m_position;
            } else if (c == quote || c == u'\n') {
                ++m_position;
                return;
            }
        }
        m_position = m_text.size();
    }

    QStringView m_text;
    qsizetype m_position = 0;
};

std::optional<PortType> typeOfWord(QStringView word)
{
    struct Entry
    {
        QLatin1StringView word;
        PortType type;
    };
    constexpr std::array entries{
        Entry{"__number"_L1, PortType::Number},       Entry{"__index"_L1, PortType::Index},
        Entry{"__boolean"_L1, PortType::Boolean},     Entry{"__string"_L1, PortType::String},
        Entry{"__structure"_L1, PortType::Structure}, Entry{"__image"_L1, PortType::Image},
        Entry{"__color"_L1, PortType::Color},         Entry{"__virtual"_L1, PortType::Virtual}};
    for (const Entry &entry : entries) {
        if (word == entry.word) {
            return entry.type;
        }
    }
    return std::nullopt;
}

/// What stands between two parentheses, the first of which has been read.
std::optional<std::vector<ScriptPort>> readPorts(Scanner &scanner)
{
    std::vector<ScriptPort> ports;
    qint64 count = 0;
    QStringView word = scanner.next();
    while (word != u")") {
        ScriptPort port;
        if (const auto type = typeOfWord(word)) {
            port.type = *type;
            word = scanner.next();
        }
        if (word.isEmpty() || !isNameCharacter(word.front()) || word.front().isDigit()) {
            return std::nullopt;
        }
        port.name = word.toString();
        word = scanner.next();
        if (word == u"[") {
            bool isNumber = false;
            port.count = scanner.next().toInt(&isNumber);
            if (!isNumber || port.count < 0 || scanner.next() != u"]") {
                return std::nullopt;
            }
            word = scanner.next();
        }
        count += std::max(port.count, 1);
        if (count > limits::countedPorts) {
            return std::nullopt;
        }
        ports.push_back(port);
        if (word == u",") {
            word = scanner.next();
        } else if (word != u")") {
            return std::nullopt;
        }
    }
    return ports;
}

} // namespace

std::optional<ScriptSignature> findSignature(const QString &script)
{
    Scanner scanner(script);
    for (QStringView word = scanner.next(); !word.isEmpty(); word = scanner.next()) {
        if (word != u"function") {
            continue;
        }
        const qsizetype afterWord = scanner.position();
        if (scanner.next() == u"(") {
            auto outputs = readPorts(scanner);
            if (outputs && scanner.next() == u"main" && scanner.next() == u"(") {
                auto inputs = readPorts(scanner);
                if (!inputs) {
                    return std::nullopt;
                }
                QStringList names;
                for (const ScriptPort &port : *inputs) {
                    names.append(port.name);
                }
                const QString plain = script.left(afterWord) + " main("_L1 + names.join(u',') +
                                      u')' + script.mid(scanner.position());
                return ScriptSignature{std::move(*inputs), std::move(*outputs), plain};
            }
        }
        scanner.setPosition(afterWord);
    }
    return std::nullopt;
}

} // namespace tarnwell::compositions

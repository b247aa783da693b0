#include "compositions/script/PatternCost.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnwell::compositions {

namespace {

constexpr double endless = std::numeric_limits<double>::infinity();
constexpr int deepestGroup = 32;
// What the engine makes of an expression grows with its length times its repeated groups.
constexpr qsizetype longestPattern = 4'000;
constexpr int mostRepeatedGroups = 64;
constexpr int mostRepeatedGroupsInLine = 500;

/// A part of an expression.
struct Part
{
    double ways = 1.0;    ///< to match some beginning of the text
    double choices = 0.0; ///< places where it may go on in more than one way
};

struct Repetition
{
    double least = 1.0;
    double most = 1.0;
};

class PatternReader
{
public:
    PatternReader(QStringView pattern, double length)
        : m_pattern(pattern)
        , m_length(length)
    {}

    double steps()
    {
        const Part whole = alternatives(0);
        // From every character on, and each way through the whole expression.
        return m_isTooLarge || m_position < m_pattern.size() ? endless
                                                             : (m_length + 1.0) * whole.ways;
    }

private:
    bool isAtEnd() const { return m_isTooLarge || m_position >= m_pattern.size(); }

    bool accept(QStringView text)
    {
        if (!m_pattern.sliced(m_position).startsWith(text)) {
            return false;
        }
        m_position += text.size();
        return true;
    }

    Part alternatives(int depth)
    {
        if (depth > deepestGroup) {
            m_isTooLarge = true;
            return {};
        }
        Part sum{.ways = 0.0, .choices = 0.0};
        int count = 0;
        do {
            const Part next = sequence(depth);
            sum.ways += next.ways;
            sum.choices += next.choices;
            ++count;
        } while (!isAtEnd() && accept(u"|"));
        sum.choices += count > 1 ? count : 0;
        return sum;
    }

    Part sequence(int depth)
    {
        Part product;
        while (!isAtEnd() && m_pattern[m_position] != u'|' && m_pattern[m_position] != u')') {
            const bool isGroup = m_pattern[m_position] == u'(';
            const Part next = repeated(atom(depth), isGroup);
            product.ways *= next.ways;
            product.choices += next.choices;
        }
        return product;
    }

    Part atom(int depth)
    {
        if (accept(u"(")) {
            // The marks of lookaheads and of groups that are not kept read as characters.
            accept(u"?");
            const Part inner = alternatives(depth + 1);
            if (!isAtEnd()) {
                ++m_position;
            }
            return inner;
        }
        if (accept(u"[")) {
            skipClass();
        } else if (accept(u"\\")) {
            // What a group has matched is looked for in one way, but as long as the text may be.
            const QChar escaped = isAtEnd() ? QChar() : m_pattern[m_position];
            const bool refersBack = (escaped >= u'1' && escaped <= u'9') || escaped == u'k';
            m_position = std::min(m_position + 1, m_pattern.size());
            return {.ways = refersBack ? m_length + 1.0 : 1.0, .choices = refersBack ? 1.0 : 0.0};
        } else {
            ++m_position;
        }
        return {};
    }

    void skipClass()
    {
        while (!isAtEnd() && !accept(u"]")) {
            m_position =
                std::min(m_position + (m_pattern[m_position] == u'\\' ? 2 : 1), m_pattern.size());
        }
    }

    Repetition repetition()
    {
        Repetition result;
        if (isAtEnd()) {
            return result;
        }
        if (accept(u"*")) {
            result = {.least = 0.0, .most = endless};
        } else if (accept(u"+")) {
            result = {.least = 1.0, .most = endless};
        } else if (accept(u"?")) {
            result = {.least = 0.0, .most = 1.0};
        } else if (m_pattern[m_position] == u'{') {
            result = countedRepetition();
        } else {
            return result;
        }
        if (!isAtEnd()) {
            accept(u"?");
        }
        return result;
    }

    Repetition countedRepetition()
    {
        const qsizetype end = m_pattern.indexOf(u'}', m_position);
        const QStringView inside =
            end < 0 ? QStringView() : m_pattern.sliced(m_position + 1, end - m_position - 1);
        const qsizetype comma = inside.indexOf(u',');
        bool isNumber = false;
        Repetition result;
        result.least = inside.left(comma < 0 ? inside.size() : comma).toDouble(&isNumber);
        result.most = comma < 0 ? result.least : endless;
        if (isNumber && comma >= 0 && comma + 1 < inside.size()) {
            result.most = inside.sliced(comma + 1).toDouble(&isNumber);
        }
        if (!isNumber) {
            return {}; // a plain brace
        }
        m_position = end + 1;
        return result;
    }

    Part repeated(const Part &once, bool isGroup)
    {
        const auto [least, most] = repetition();
        if (least == 1.0 && most == 1.0) {
            return once;
        }
        m_repeatedGroups += isGroup ? 1 : 0;
        m_isTooLarge = m_isTooLarge || m_repeatedGroups > mostRepeatedGroups;
        // As many steps as rounds, even where their number is fixed.
        const double counts = std::min(most, m_length) + 1.0;
        Part result{.ways = counts, .choices = once.choices + (most > least ? 1.0 : 0.0)};
        if (once.ways > 1.0) {
            // Either each round goes its own way, or every character may begin another round, in
            // each of the ways there are: whichever is less, both are bounds.
            const double byRounds = counts * std::pow(once.ways, std::min(most, m_length + 1.0));
            const double byCharacters = std::pow(2.0 * (once.choices + 1.0), m_length);
            result.ways = std::min(byRounds, byCharacters);
        }
        return result;
    }

    QStringView m_pattern;
    double m_length;
    qsizetype m_position = 0;
    int m_repeatedGroups = 0;
    bool m_isTooLarge = false;
};

} // namespace

double matchingSteps(QStringView pattern, double textLength)
{
    return pattern.size() > longestPattern ? endless : PatternReader(pattern, textLength).steps();
}

bool mayHoldHugePattern(QStringView script)
{
    int groups = 0;
    for (qsizetype i = 0; i + 1 < script.size(); ++i) {
        const char16_t next = script[i + 1].unicode();
        if (script[i] == u'\n' || script[i] == u'\r') {
            groups = 0; // no expression goes on in the next line
        } else if (script[i] == u')' &&
                   (next == u'*' || next == u'+' || next == u'?' ||
                    (next == u'{' && i + 2 < script.size() && script[i + 2].isDigit()))) {
            ++groups;
        }
        if (groups > mostRepeatedGroupsInLine) {
            return true;
        }
    }
    return false;
}

} // namespace tarnwell::compositions

#include "compositions/expression/Expression.h"

#include "compositions/Limits.h"
#include "compositions/expression/Operations.h"
#include "compositions/maths/Noise.h"

#include <QVarLengthArray>

#include <array>
#include <cmath>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using namespace expression;

namespace {

struct BinaryOperator
{
    QLatin1StringView text;
    Operation operation;
    int precedence;
};

// Longer texts stand before those they begin with.
constexpr std::array binaryOperators{
    BinaryOperator{"||"_L1, Or, 1},        BinaryOperator{"&&"_L1, And, 2},
    BinaryOperator{"=="_L1, Equal, 3},     BinaryOperator{"!="_L1, NotEqual, 3},
    BinaryOperator{"<="_L1, LessEqual, 4}, BinaryOperator{">="_L1, GreaterEqual, 4},
    BinaryOperator{"<"_L1, Less, 4},       BinaryOperator{">"_L1, Greater, 4},
    BinaryOperator{"+"_L1, Add, 5},        BinaryOperator{"-"_L1, Subtract, 5},
    BinaryOperator{"*"_L1, Multiply, 6},   BinaryOperator{"/"_L1, Divide, 6},
    BinaryOperator{"%"_L1, Remainder, 6},  BinaryOperator{"^"_L1, Power, 8},
};
constexpr int unaryPrecedence = 7;
constexpr int powerPrecedence = 8;

bool isNameStart(QChar c)
{
    return c.isLetter() || c == u'_' || c == u'$';
}

} // namespace

class ExpressionParser
{
public:
    explicit ExpressionParser(QStringView text)
        : m_text(text)
    {}

    std::optional<Expression> parse(QString *error)
    {
        parseChoice();
        skipBlanks();
        if (m_error.isEmpty() && m_position < m_text.size()) {
            fail(u"unexpected \"%1\""_s.arg(m_text[m_position]));
        }
        if (!m_error.isEmpty()) {
            if (error != nullptr) {
                *error = m_error;
            }
            return std::nullopt;
        }
        return std::move(m_result);
    }

private:
    // Every rule leaves one value on the stack of the running expression.

    void parseChoice()
    {
        if (++m_depth > limits::expressionDepth) {
            fail(u"nested too deeply"_s);
        } else {
            parseBinary(1);
            if (accept("?"_L1)) {
                parseChoice();
                if (!accept(":"_L1)) {
                    fail(u"\":\" expected"_s);
                } else {
                    parseChoice();
                    emitStep({.operation = Choose, .arguments = 3, .variable = 0, .constant = 0.0});
                }
            }
        }
        --m_depth;
    }

    void parseBinary(int leastPrecedence)
    {
        if (++m_depth > limits::expressionDepth) {
            fail(u"nested too deeply"_s);
        }
        parseUnary();
        while (m_error.isEmpty()) {
            const BinaryOperator *found = peekOperator();
            if (found == nullptr || found->precedence < leastPrecedence) {
                break;
            }
            m_position += found->text.size();
            // Powers group from the right: 2^3^2 is 2^9.
            parseBinary(found->precedence == powerPrecedence ? powerPrecedence
                                                             : found->precedence + 1);
            emitStep(
                {.operation = found->operation, .arguments = 2, .variable = 0, .constant = 0.0});
        }
        --m_depth;
    }

    void parseUnary()
    {
        if (!m_error.isEmpty()) {
            return;
        }
        if (accept("-"_L1)) {
            parseBinary(unaryPrecedence);
            emitStep({.operation = Negate, .arguments = 1, .variable = 0, .constant = 0.0});
        } else if (accept("!"_L1)) {
            parseBinary(unaryPrecedence);
            emitStep({.operation = Not, .arguments = 1, .variable = 0, .constant = 0.0});
        } else if (accept("+"_L1)) {
            parseBinary(unaryPrecedence);
        } else {
            parsePrimary();
        }
    }

    void parsePrimary()
    {
        skipBlanks();
        const QChar next = m_position < m_text.size() ? m_text[m_position] : QChar();
        if (accept("("_L1)) {
            parseChoice();
            if (!accept(")"_L1)) {
                fail(u"\")\" expected"_s);
            }
        } else if (next.isDigit() || next == u'.') {
            parseNumber();
        } else if (isNameStart(next)) {
            parseName();
        } else {
            fail(m_position < m_text.size() ? u"unexpected \"%1\""_s.arg(next)
                                            : u"the text ends too early"_s);
        }
    }

    void parseNumber()
    {
        const qsizetype start = m_position;
        const auto digits = [this] {
            while (m_position < m_text.size() && m_text[m_position] >= u'0' &&
                   m_text[m_position] <= u'9') {
                ++m_position;
            }
        };
        digits();
        if (m_position < m_text.size() && m_text[m_position] == u'.') {
            ++m_position;
            digits();
        }
        if (m_position < m_text.size() && m_text[m_position].toLower() == u'e') {
            const qsizetype mantissaEnd = m_position++;
            if (m_position < m_text.size() &&
                (m_text[m_position] == u'+' || m_text[m_position] == u'-')) {
                ++m_position;
            }
            const qsizetype exponentStart = m_position;
            digits();
            if (m_position == exponentStart) {
                m_position = mantissaEnd; // "2e" is the number 2 and something that starts with e
            }
        }
        bool isNumber = false;
        const double number = m_text.mid(start, m_position - start).toDouble(&isNumber);
        if (!isNumber) {
            fail(u"not a number: \"%1\""_s.arg(m_text.mid(start, m_position - start)));
            return;
        }
        emitStep({.operation = Constant, .arguments = 0, .variable = 0, .constant = number});
    }

    void parseName()
    {
        const qsizetype start = m_position;
        while (m_position < m_text.size() &&
               (isNameStart(m_text[m_position]) || m_text[m_position].isDigit())) {
            ++m_position;
        }
        const QStringView name = m_text.mid(start, m_position - start);
        if (accept("("_L1)) {
            parseCall(name);
            return;
        }
        const QString variable = name.toString();
        int index = int(m_result.m_variables.indexOf(variable));
        if (index < 0) {
            if (m_result.m_variables.size() >= limits::countedPorts) {
                fail(u"too many variables"_s);
                return;
            }
            index = int(m_result.m_variables.size());
            m_result.m_variables.append(variable);
        }
        emitStep({.operation = Variable, .arguments = 0, .variable = index, .constant = 0.0});
    }

    void parseCall(QStringView name)
    {
        int count = 0;
        if (!accept(")"_L1)) {
            do {
                parseChoice();
                ++count;
            } while (m_error.isEmpty() && count < 255 && accept(","_L1));
            if (!accept(")"_L1)) {
                fail(u"\")\" expected"_s);
                return;
            }
        }
        if (name == "rand"_L1) {
            emitStep(
                {.operation = Random, .arguments = quint8(count), .variable = 0, .constant = 0.0});
            return;
        }
        const auto table = functions();
        for (size_t i = 0; i < table.size(); ++i) {
            if (name == table[i].name) {
                if (count < table[i].leastArguments || count > table[i].mostArguments) {
                    fail(u"wrong number of arguments for %1()"_s.arg(name));
                    return;
                }
                emitStep({.operation = quint8(FirstFunction + i),
                          .arguments = quint8(count),
                          .variable = 0,
                          .constant = 0.0});
                return;
            }
        }
        fail(u"no function is called \"%1\""_s.arg(name));
    }

    void emitStep(const Expression::Step &step)
    {
        if (!m_error.isEmpty()) {
            return;
        }
        m_height = m_height + 1 - step.arguments;
        m_result.m_stackSize = std::max(m_result.m_stackSize, m_height);
        m_result.m_steps.push_back(step);
    }

    const BinaryOperator *peekOperator()
    {
        skipBlanks();
        for (const BinaryOperator &candidate : binaryOperators) {
            if (m_text.mid(m_position).startsWith(candidate.text)) {
                return &candidate;
            }
        }
        return nullptr;
    }

    bool accept(QLatin1StringView text)
    {
        skipBlanks();
        // "!=" never begins an operand, so "!" is safe to take alone.
        if (!m_error.isEmpty() || !m_text.mid(m_position).startsWith(text)) {
            return false;
        }
        m_position += text.size();
        return true;
    }

    void skipBlanks()
    {
        while (m_position < m_text.size() && m_text[m_position].isSpace()) {
            ++m_position;
        }
    }

    void fail(const QString &reason)
    {
        if (m_error.isEmpty()) {
            m_error = u"%1 at character %2"_s.arg(reason).arg(m_position);
        }
    }

    QStringView m_text;
    qsizetype m_position = 0;
    int m_depth = 0;
    size_t m_height = 0;
    QString m_error;
    Expression m_result;
};

std::optional<Expression> Expression::compile(QStringView text, QString *error)
{
    if (text.size() > limits::expressionLength) {
        if (error != nullptr) {
            *error = u"too long"_s;
        }
        return std::nullopt;
    }
    return ExpressionParser(text).parse(error);
}

double Expression::evaluate(std::span<const double> values, quint64 seed) const
{
    QVarLengthArray<double, 32> stack(qsizetype(m_stackSize) + 1);
    double *top = stack.data(); // one past the topmost value
    quint64 randomNumber = 0;
    for (const Step &step : m_steps) {
        switch (step.operation) {
        case Constant:
            *top++ = step.constant;
            continue;
        case Variable:
            *top++ = size_t(step.variable) < values.size() ? values[size_t(step.variable)] : 0.0;
            continue;
        default:
            break;
        }
        top -= step.arguments;
        double result = 0.0;
        if (step.operation == Negate) {
            result = -top[0];
        } else if (step.operation == Not) {
            result = top[0] == 0.0 ? 1.0 : 0.0;
        } else if (step.operation == Choose) {
            result = top[0] != 0.0 ? top[1] : top[2];
        } else if (step.operation == Random) {
            result = hashToUnit(seed, ++randomNumber);
        } else if (step.operation >= FirstFunction) {
            result = functions()[step.operation - FirstFunction].call({top, step.arguments});
        } else {
            result = applyBinary(Operation(step.operation), top[0], top[1]);
        }
        *top++ = result;
    }
    const double result = stack[0];
    return std::isfinite(result) ? result : 0.0;
}

} // namespace tarnwell::compositions

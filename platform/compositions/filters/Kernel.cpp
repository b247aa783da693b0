#include "compositions/filters/Kernel.h"

#include "compositions/Limits.h"
#include "compositions/filters/KernelTokens.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using kernel::Token;

namespace {

/// A function of the source: its tokens from the type it returns to the closing brace.
struct Function
{
    QByteArray name;
    size_t begin = 0;
    size_t parameters = 0; ///< the opening parenthesis
    size_t body = 0;       ///< the opening brace
    size_t end = 0;        ///< behind the closing brace
    bool isKernel = false;
};

class Translator
{
public:
    explicit Translator(std::vector<Token> tokens)
        : m_tokens(std::move(tokens))
    {}

    bool run()
    {
        if (!splitIntoFunctions() || !checkArrays() || !checkCalls()) {
            return false;
        }
        const auto found = std::ranges::find_if(m_functions, &Function::isKernel);
        if (found == m_functions.end()) {
            return fail(u"there is no kernel"_s);
        }
        if (std::ranges::count_if(m_functions, &Function::isKernel) > 1) {
            return fail(u"there is more than one kernel"_s);
        }
        if (!readArguments(*found)) {
            return false;
        }
        for (const Function &function : m_functions) {
            write(function);
        }
        writeCall(found->name);
        return true;
    }

    std::vector<Kernel::Argument> arguments;
    QByteArray functions;
    QByteArray call;
    QString error;

private:
    bool fail(const QString &reason)
    {
        error = reason;
        return false;
    }

    const Token &at(size_t index) const
    {
        static const Token none;
        return index < m_tokens.size() ? m_tokens[index] : none;
    }

    /// Behind the bracket that closes the one at a place; 0 when there is none.
    size_t behind(size_t open) const
    {
        int depth = 0;
        for (size_t i = open; i < m_tokens.size(); ++i) {
            const QByteArray &text = m_tokens[i].text;
            if (text == "(" || text == "{" || text == "[") {
                ++depth;
            } else if (text == ")" || text == "}" || text == "]") {
                if (--depth == 0) {
                    return i + 1;
                }
            }
        }
        return 0;
    }

    bool splitIntoFunctions()
    {
        for (size_t i = 0; i < m_tokens.size();) {
            if (at(i).is("const")) {
                const size_t end = std::min(semicolon(i, m_tokens.size()) + 1, m_tokens.size());
                writeRange(i, end);
                i = end;
                continue;
            }
            Function function;
            function.isKernel = at(i).is("kernel");
            i += function.isKernel ? 1 : 0;
            function.begin = i;
            if (at(i + 1).kind != Token::Kind::Word || !at(i + 2).is("(")) {
                return fail(u"there is something other than functions"_s);
            }
            if (function.isKernel && !at(i).is("vec4")) {
                return fail(u"the kernel gives no colour"_s);
            }
            function.name = at(i + 1).text;
            function.parameters = i + 2;
            function.body = behind(function.parameters);
            if (function.body == 0 || !at(function.body).is("{")) {
                return fail(u"a function has no body"_s);
            }
            function.end = behind(function.body);
            if (function.end == 0) {
                return fail(u"a brace is not closed"_s);
            }
            i = function.end;
            m_functions.push_back(std::move(function));
        }
        return true;
    }

    /// Only small arrays, and of a size that is written out.
    bool checkArrays()
    {
        constexpr int largestArray = 64;
        for (size_t i = 2; i < m_tokens.size(); ++i) {
            if (at(i).is("[") &&
                (kernel::isType(at(i - 1).text) || kernel::isType(at(i - 2).text)) &&
                (at(i + 1).kind != Token::Kind::Number || !at(i + 2).is("]") ||
                 at(i + 1).text.toInt() > largestArray)) {
                return fail(u"an array is too large"_s);
            }
        }
        return true;
    }

    /// Shaders have no calls: every function stands anew in each place that calls it. Written out
    /// that way the kernel must still be small, and no function may come to call itself.
    bool checkCalls()
    {
        constexpr qint64 largest = 10'000;
        QHash<QByteArray, qint64> weights;
        for (const Function &function : m_functions) {
            qint64 weight = qint64(function.end - function.begin);
            for (size_t i = function.body; i < function.end; ++i) {
                if (at(i).kind != Token::Kind::Word || !at(i + 1).is("(") || at(i - 1).is(".")) {
                    continue;
                }
                const QByteArray &name = at(i).text;
                // Whatever is called stands above, as in the shader language.
                if (const auto found = weights.constFind(name); found != weights.constEnd()) {
                    weight += *found;
                } else if (!kernel::isShaderWord(name) && kernel::shaderNameOf(name).isEmpty()) {
                    return fail(
                        u"the function \"%1\" is not known"_s.arg(QString::fromLatin1(name)));
                }
                if (weight > largest) {
                    return fail(u"the kernel is too large"_s);
                }
            }
            if (weights.contains(function.name)) {
                return fail(u"two functions have one name"_s);
            }
            weights.insert(function.name, weight);
        }
        return true;
    }

    bool readArguments(const Function &function)
    {
        static const QHash<QByteArray, Kernel::ArgumentType> types{
            {"sampler", Kernel::ArgumentType::Sampler}, {"float", Kernel::ArgumentType::Number},
            {"vec2", Kernel::ArgumentType::Vector2},    {"vec3", Kernel::ArgumentType::Vector3},
            {"vec4", Kernel::ArgumentType::Vector4},    {"__color", Kernel::ArgumentType::Color}};
        constexpr size_t mostArguments = 32;
        constexpr int mostSamplers = 8;
        int samplers = 0;
        size_t i = function.parameters + 1;
        while (!at(i).is(")")) {
            i += at(i).is("__table") || at(i).is("in") ? 1 : 0;
            const auto type = types.constFind(at(i).text);
            if (type == types.constEnd() || at(i + 1).kind != Token::Kind::Word) {
                return fail(u"an argument is of a type that is not known"_s);
            }
            samplers += *type == Kernel::ArgumentType::Sampler ? 1 : 0;
            arguments.push_back({QString::fromLatin1(at(i + 1).text), *type});
            i += 2;
            if (at(i).is(",")) {
                ++i;
            } else if (!at(i).is(")")) {
                return fail(u"an argument is of a type that is not known"_s);
            }
        }
        return arguments.size() <= mostArguments && samplers <= mostSamplers
                   ? true
                   : fail(u"there are too many arguments"_s);
    }

    /// Every name of the source gets a prefix, so that none meets a word of the shader language.
    QByteArray translated(size_t index) const
    {
        const Token &token = m_tokens[index];
        if (token.kind != Token::Kind::Word || (index > 0 && at(index - 1).is(".")) ||
            kernel::isShaderWord(token.text)) {
            return token.text;
        }
        const QByteArray name = kernel::shaderNameOf(token.text);
        return name.isEmpty() ? "k_" + token.text : name;
    }

    void write(const Function &function)
    {
        for (size_t i = function.begin; i < function.end; ++i) {
            const bool isLoop =
                i > function.body && (at(i).is("for") || at(i).is("while")) && at(i + 1).is("(");
            if (!isLoop) {
                functions += at(i).is("__table") ? QByteArray() : translated(i) + ' ';
                continue;
            }
            writeLoopHead(i);
            i = behind(i + 1) - 1;
        }
        functions += '\n';
    }

    /// A loop ends when its condition says so, or when all steps of the pixel are used up.
    void writeLoopHead(size_t loop)
    {
        const size_t end = behind(loop + 1) - 1;
        functions += m_tokens[loop].text + " (";
        size_t begin = loop + 2;
        size_t conditionEnd = end;
        if (at(loop).is("for")) {
            const size_t first = semicolon(begin, end);
            conditionEnd = semicolon(std::min(first + 1, end), end);
            writeRange(begin, std::min(first + 1, end));
            begin = std::min(first + 1, end);
        }
        if (begin < conditionEnd) {
            functions += '(';
            writeRange(begin, conditionEnd);
            functions += ") && ";
        }
        functions += "takeStep()";
        writeRange(conditionEnd, end + 1);
    }

    size_t semicolon(size_t begin, size_t end) const
    {
        while (begin < end && !at(begin).is(";")) {
            ++begin;
        }
        return begin;
    }

    void writeRange(size_t begin, size_t end)
    {
        for (size_t i = begin; i < end; ++i) {
            functions += translated(i) + ' ';
        }
    }

    void writeCall(const QByteArray &name)
    {
        QByteArrayList values;
        int samplers = 0;
        for (size_t i = 0; i < arguments.size(); ++i) {
            const QByteArray uniform = "argument[" + QByteArray::number(qsizetype(i)) + ']';
            switch (arguments[i].type) {
            case Kernel::ArgumentType::Sampler:
                values.append(QByteArray::number(samplers++));
                break;
            case Kernel::ArgumentType::Number:
                values.append(uniform + ".x");
                break;
            case Kernel::ArgumentType::Vector2:
                values.append(uniform + ".xy");
                break;
            case Kernel::ArgumentType::Vector3:
                values.append(uniform + ".xyz");
                break;
            default:
                values.append(uniform);
                break;
            }
        }
        call = "k_" + name + '(' + values.join(", ") + ')';
    }

    std::vector<Token> m_tokens;
    std::vector<Function> m_functions;
};

} // namespace

KernelRef Kernel::translate(const QString &source, QString *error)
{
    const auto fail = [error](const QString &reason) {
        if (error != nullptr) {
            *error = reason;
        }
        return KernelRef();
    };
    if (source.size() > limits::kernelLength) {
        return fail(u"the kernel is too large"_s);
    }
    auto tokens = kernel::tokenize(source);
    if (!tokens) {
        return fail(u"there is a character that does not belong there"_s);
    }
    Translator translator(std::move(*tokens));
    if (!translator.run()) {
        return fail(translator.error);
    }
    auto result = std::make_shared<Kernel>();
    result->m_arguments = std::move(translator.arguments);
    result->m_functions = translator.functions;
    result->m_call = translator.call;
    return result;
}

int Kernel::samplerCount() const
{
    return int(std::ranges::count(m_arguments, ArgumentType::Sampler, &Argument::type));
}

} // namespace tarnwell::compositions

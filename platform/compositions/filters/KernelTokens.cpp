#include "compositions/filters/KernelTokens.h"

#include <QHash>
#include <QSet>

namespace tarnwell::compositions::kernel {

namespace {

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Where the comment or blank at a place ends; the place itself when there is none.
qsizetype skip(const QByteArray &text, qsizetype place)
{
    if (text.mid(place, 2) == "//") {
        const qsizetype end = text.indexOf('\n', place);
        return end < 0 ? text.size() : end;
    }
    if (text.mid(place, 2) == "/*") {
        const qsizetype end = text.indexOf("*/", place + 2);
        return end < 0 ? text.size() : end + 2;
    }
    return QByteArrayView(" \t\r\n\f\v").contains(text[place]) ? place + 1 : place;
}

qsizetype endOfNumber(const QByteArray &text, qsizetype place)
{
    while (place < text.size() && (isDigit(text[place]) || text[place] == '.')) {
        ++place;
    }
    if (place < text.size() && (text[place] == 'e' || text[place] == 'E')) {
        qsizetype digits = place + 1;
        if (digits < text.size() && (text[digits] == '+' || text[digits] == '-')) {
            ++digits;
        }
        if (digits < text.size() && isDigit(text[digits])) {
            place = digits;
            while (place < text.size() && isDigit(text[place])) {
                ++place;
            }
        }
    }
    return place;
}

qsizetype lengthOfSign(const QByteArray &text, qsizetype place)
{
    static const QSet<QByteArray> pairs{"==", "!=", "<=", ">=", "&&", "||", "^^",
                                        "++", "--", "+=", "-=", "*=", "/="};
    if (pairs.contains(text.mid(place, 2))) {
        return 2;
    }
    return QByteArrayView("+-*/%<>=!?:;,.(){}[]&|^").contains(text[place]) ? 1 : 0;
}

} // namespace

std::optional<std::vector<Token>> tokenize(const QString &source)
{
    // Beyond ASCII there are only comments, in whatever encoding.
    const QByteArray text = source.toLatin1();
    std::vector<Token> tokens;
    for (qsizetype place = 0; place < text.size();) {
        if (const qsizetype next = skip(text, place); next != place) {
            place = next;
            continue;
        }
        const bool isNumber =
            isDigit(text[place]) ||
            (text[place] == '.' && place + 1 < text.size() && isDigit(text[place + 1]));
        qsizetype end = place;
        Token token;
        if (isNumber) {
            token.kind = Token::Kind::Number;
            end = endOfNumber(text, place);
        } else if (isLetter(text[place])) {
            token.kind = Token::Kind::Word;
            while (end < text.size() && (isLetter(text[end]) || isDigit(text[end]))) {
                ++end;
            }
        } else {
            end += lengthOfSign(text, place);
        }
        if (end == place) {
            return std::nullopt;
        }
        token.text = text.mid(place, end - place);
        if (isNumber && end < text.size() && (text[end] == 'f' || text[end] == 'F')) {
            ++end; // the mark of a number of single precision
        }
        tokens.push_back(std::move(token));
        place = end;
    }
    return tokens;
}

bool isShaderWord(const QByteArray &word)
{
    static const QSet<QByteArray> words{"void",          "float",       "int",
                                        "bool",          "vec2",        "vec3",
                                        "vec4",          "ivec2",       "ivec3",
                                        "ivec4",         "bvec2",       "bvec3",
                                        "bvec4",         "mat2",        "mat3",
                                        "mat4",          "if",          "else",
                                        "for",           "while",       "do",
                                        "return",        "break",       "continue",
                                        "const",         "in",          "out",
                                        "inout",         "true",        "false",
                                        "radians",       "degrees",     "sin",
                                        "cos",           "tan",         "asin",
                                        "acos",          "atan",        "pow",
                                        "exp",           "log",         "exp2",
                                        "log2",          "sqrt",        "inversesqrt",
                                        "abs",           "sign",        "floor",
                                        "ceil",          "fract",       "mod",
                                        "min",           "max",         "clamp",
                                        "mix",           "step",        "smoothstep",
                                        "length",        "distance",    "dot",
                                        "cross",         "normalize",   "reflect",
                                        "refract",       "faceforward", "lessThan",
                                        "lessThanEqual", "greaterThan", "greaterThanEqual",
                                        "equal",         "notEqual",    "any",
                                        "all",           "not",         "matrixCompMult"};
    return words.contains(word);
}

bool isType(const QByteArray &word)
{
    static const QSet<QByteArray> types{"float", "int",   "bool",  "vec2",  "vec3",
                                        "vec4",  "ivec2", "ivec3", "ivec4", "bvec2",
                                        "bvec3", "bvec4", "mat2",  "mat3",  "mat4"};
    return types.contains(word);
}

QByteArray shaderNameOf(const QByteArray &word)
{
    // The functions whose names end in a line promise less exactness, which nobody misses.
    static const QHash<QByteArray, QByteArray> names{{"sampler", "int"},
                                                     {"__color", "vec4"},
                                                     {"sample", "imageSample"},
                                                     {"samplerCoord", "imageCoord"},
                                                     {"samplerTransform", "imageTransform"},
                                                     {"samplerExtent", "imageExtent"},
                                                     {"samplerOrigin", "imageOrigin"},
                                                     {"samplerSize", "imageSize_"},
                                                     {"destCoord", "destinationCoord"},
                                                     {"premultiply", "premultiplied"},
                                                     {"unpremultiply", "unpremultiplied"},
                                                     {"compare", "chosen"},
                                                     {"cossin", "cosineSine"},
                                                     {"cossin_", "cosineSine"},
                                                     {"sincos", "sineCosine"},
                                                     {"sincos_", "sineCosine"},
                                                     {"sin_", "sin"},
                                                     {"cos_", "cos"},
                                                     {"tan_", "tan"}};
    return names.value(word);
}

} // namespace tarnwell::compositions::kernel

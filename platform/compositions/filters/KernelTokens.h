#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace tarnwell::compositions::kernel {

struct Token
{
    enum class Kind : quint8 { Word, Number, Sign };
    Kind kind = Kind::Sign;
    QByteArray text;

    bool is(const char *expected) const { return text == expected; }
};

/// The words, numbers and signs of a source without its comments; nothing when there is a character
/// that the language does not know.
std::optional<std::vector<Token>> tokenize(const QString &source);

/// Types, key words and functions that mean the same in both languages.
bool isShaderWord(const QByteArray &word);

bool isType(const QByteArray &word);

/// What a word of the kernel language is called in the shader; empty for all others.
QByteArray shaderNameOf(const QByteArray &word);

} // namespace tarnwell::compositions::kernel

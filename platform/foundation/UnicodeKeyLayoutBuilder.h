#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <map>
#include <vector>

namespace tarnwell::foundation {

/// What a key gives: a text, the beginning of a dead-key state, or nothing.
struct KeyLayoutOutput
{
    QString text;
    quint16 deadKeyState = 0; ///< from 1; 0 for a key that is not dead

    bool isEmpty() const { return text.isEmpty() && deadKeyState == 0; }
};

/// A dead key's state.
struct KeyLayoutDeadKey
{
    /// What is typed when the next key does not combine, usually the accent alone.
    QString terminator;
    /// What the state makes of a key that would type the text by itself: another text, or a
    /// further state.
    std::map<QString, KeyLayoutOutput> combinations;
};

/// A keyboard layout, ready to be written in the published Unicode keyboard-layout format.
struct KeyLayoutDescription
{
    /// A table for each set of modifier keys that matters; in each, a key's output under its
    /// virtual key code. Keys that a table leaves out type nothing.
    std::vector<std::map<quint16, KeyLayoutOutput>> tables;

    /// The number of the table for each modifier state: 1 Command, 2 Shift, 4 Caps Lock,
    /// 8 Option, 16 Control; 32, 64 and 128 are right Shift, Option and Control.
    std::array<quint8, 256> tableForModifiers{};

    /// The dead-key states, the first of which has the number 1.
    std::vector<KeyLayoutDeadKey> deadKeys;
};

/// The bytes of a layout, good for every keyboard type; empty when it has more records or
/// sequences than the format can number.
QByteArray unicodeKeyLayoutData(const KeyLayoutDescription &description);

} // namespace tarnwell::foundation

#include "foundation/UnicodeKeyLayout.h"
#include "foundation/UnicodeKeyLayoutFormat.h"

namespace tarnwell::foundation {

using namespace keylayout;

namespace {

/// A key whose output is a state record: what it types depends on the dead key before it, and it
/// may be a dead key itself. False when the record or its characters are not in the layout.
bool translateRecord(const UnicodeKeyLayout &layout, const UnicodeKeyLayout::KeyboardType &type,
                     quint32 record, bool deadKeys, quint32 &deadKeyState, QString &text)
{
    const auto fresh = layout.stateZeroTransition(type, record);
    if (!fresh)
        return false;

    if (deadKeyState != 0) {
        const auto state = static_cast<quint16>(deadKeyState);
        if (const auto combined = layout.transition(type, record, state)) {
            deadKeyState = combined->nextState;
            return layout.appendCharacters(type, combined->character, text);
        }
        const quint16 ending = layout.terminator(type, state).value_or(noCharacter);
        if (!layout.appendCharacters(type, ending, text))
            return false;
        deadKeyState = 0;
    }
    if (fresh->nextState == 0)
        return layout.appendCharacters(type, fresh->character, text);
    if (!deadKeys) {
        const quint16 own = layout.terminator(type, fresh->nextState).value_or(fresh->character);
        return layout.appendCharacters(type, own, text);
    }
    deadKeyState = fresh->nextState;
    // Some layouts write 0 where a dead key has no character of its own.
    return fresh->character == 0 || layout.appendCharacters(type, fresh->character, text);
}

} // namespace

std::optional<QString> UCKeyTranslate(QByteArrayView layoutData, quint16 virtualKeyCode,
                                      KeyAction action, quint32 modifierState, quint32 keyboardType,
                                      quint32 options, quint32 &deadKeyState, qsizetype maxLength)
{
    const std::optional<UnicodeKeyLayout> layout = UnicodeKeyLayout::fromBytes(layoutData);
    if (!layout)
        return std::nullopt;
    const auto type = layout->keyboardTypeFor(keyboardType);
    if (!type)
        return std::nullopt;
    const std::optional<quint32> table = layout->tableForModifiers(*type, modifierState);
    if (!table)
        return std::nullopt;
    if (action == KeyAction::Up || virtualKeyCode >= layout->tableSize(*type))
        return QString();
    const std::optional<quint16> output = layout->output(*type, *table, virtualKeyCode);
    if (!output)
        return std::nullopt;
    if (isNone(*output))
        return QString();

    const bool deadKeys = (options & keyTranslateNoDeadKeys) == 0;
    if (!deadKeys)
        deadKeyState = 0;
    QString text;
    bool isWhole = true;
    if ((*output & kindMask) == recordKind) {
        isWhole =
            translateRecord(*layout, *type, *output & indexMask, deadKeys, deadKeyState, text);
    } else {
        if (deadKeyState != 0) {
            const auto state = static_cast<quint16>(deadKeyState);
            const quint16 ending = layout->terminator(*type, state).value_or(noCharacter);
            isWhole = layout->appendCharacters(*type, ending, text);
            deadKeyState = 0;
        }
        isWhole = isWhole && layout->appendCharacters(*type, *output, text);
    }
    if (!isWhole)
        return std::nullopt;
    text.truncate(qMax<qsizetype>(maxLength, 0));
    return text;
}

} // namespace tarnwell::foundation

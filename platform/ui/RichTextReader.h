#pragma once

#include "ui/RichText.h"
#include "ui/RichTextTokens.h"

#include <QHash>

#include <vector>

namespace tarnwell::ui {

/// Turns the tokens of one RTF text into paragraphs.
class RichTextReader
{
public:
    RichText read(QByteArrayView rtf);

private:
    /// Where the text of a group goes.
    enum class Destination { Body, Skipped, ColorTable, FontTable, FieldInstruction, PictureName };

    /// What a group inherits and its end takes back.
    struct State
    {
        Destination destination = Destination::Body;
        bool opensDestination = false; ///< rather than lying in one
        bool isHidden = false;
        int substitutes = 1; ///< characters that stand beside each \u for readers without Unicode
        RichTextStyle style;
        RichTextParagraphStyle paragraph;
    };

    /// A control word, and what it does with its number.
    struct Word
    {
        const char *name;
        void (*take)(RichTextReader &reader, std::optional<int> number);
    };
    static const Word *wordOfName(QLatin1StringView name);

    bool takeToken(const RichTextToken &token);
    void takeWord(const RichTextToken &token);
    void takeSymbol(char symbol);
    void takeBytes(QByteArrayView bytes);
    void openGroup();
    void closeGroup();

    State &state() { return m_states.back(); }
    void setDestination(Destination destination);
    void setColorComponent(int shift, int value);
    void setMonospaced();
    void useFont(int number);
    void appendCharacter(char16_t character);
    void appendText(QStringView text);
    void appendBodyText(QStringView text);
    void appendPicture();
    void endParagraph();
    void endLink();

    RichText m_result;
    RichTextParagraph m_paragraph;
    qsizetype m_runCount = 0;
    int m_pictureCount = 0;

    std::vector<State> m_states{State()};
    int m_ignoredGroups = 0; ///< open ones that lie too deep
    int m_substitutes = 0;   ///< characters that are still to be skipped after a \u
    bool m_isOptional = false;

    QHash<int, bool> m_isMonospaced; ///< by font number
    int m_definedFont = 0;
    QString m_fontName;
    QList<std::optional<QRgb>> m_colors;
    std::optional<QRgb> m_definedColor;
    QString m_name; ///< the field's instruction, or the picture's name
    QSizeF m_pictureSize;
};

} // namespace tarnwell::ui

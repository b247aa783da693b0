#pragma once

#include "ui/RichText.h"
#include "ui/RichTextCodePages.h"
#include "ui/RichTextTokens.h"
#include "ui/RichTextWords.h"

#include <QHash>

#include <vector>

namespace tarnwell::ui {

/// Turns the tokens of one RTF text into paragraphs.
class RichTextParser
{
public:
    RichText parse(QByteArrayView rtf);

private:
    enum class Destination {
        Body,
        Skipped,
        ColorTable,
        FontTable,
        FieldInstruction,
        Picture,
        PictureName,
    };

    /// What a group inherits and its end takes back.
    struct State
    {
        Destination destination = Destination::Body;
        bool opensDestination = false; ///< rather than lying in one
        bool isHidden = false;
        int font = 0;
        int unicodeSkip = 1;
        RichTextStyle style;
        RichTextParagraphStyle paragraph;
        RichTextTab::Kind nextTab = RichTextTab::Kind::Left;
    };

    struct Font
    {
        int codePage = 0;
        bool isMonospaced = false;
        QString name;
    };

    enum class PictureFormat { Unknown, Png, Jpeg };

    // RichTextParser.cpp
    bool takeToken(const RichTextToken &token);
    void openGroup();
    void closeGroup();
    void takeSymbol(char symbol);
    void takeBytes(QByteArrayView bytes);
    void takePictureDigits(QByteArrayView bytes);
    void flushBytes();
    int codePage() const;

    // RichTextParser_Words.cpp
    void takeWord(RichTextWord word, std::optional<int> parameter);
    bool takeDestinationWord(RichTextWord word);
    bool takeTableWord(RichTextWord word, int parameter);
    bool takeStyleWord(RichTextWord word, std::optional<int> parameter);
    bool takeParagraphWord(RichTextWord word, int parameter);
    bool takeTextWord(RichTextWord word, int parameter);
    bool takePictureWord(RichTextWord word, int parameter);
    void takeUnicode(int unit);
    void setDestination(Destination destination);
    void useFont(int number);
    std::optional<QRgb> color(int index) const;

    // RichTextParser_Output.cpp
    void appendText(const QString &text);
    void appendBodyText(const QString &text);
    void appendTableText(const QString &text);
    void appendPicture();
    void endParagraph();
    void finish();
    bool isFull() const;

    CodePageDecoder m_decoder;
    RichText m_result;
    RichTextParagraph m_paragraph;
    qsizetype m_runCount = 0;
    int m_pictureCount = 0;

    std::vector<State> m_states{State()};
    int m_ignoredGroups = 0; ///< open ones that lie too deep
    QByteArray m_bytes;      ///< text that waits for its code page
    int m_unicodeSkip = 0;   ///< substitutes that the last \u left to be skipped
    bool m_isOptional = false;
    int m_documentCodePage = westernCodePage;

    QHash<int, Font> m_fonts;
    int m_definedFont = 0;
    QList<std::optional<QRgb>> m_colors;
    std::optional<QRgb> m_definedColor;
    QString m_instruction; ///< of the field, or the name of the picture
    RichTextPicture m_picture;
    PictureFormat m_pictureFormat = PictureFormat::Unknown;
    std::optional<int> m_halfByte;
};

} // namespace tarnwell::ui

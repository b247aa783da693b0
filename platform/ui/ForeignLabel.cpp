#include "ui/ForeignLabel.h"

#include <QFontMetrics>
#include <QLabel>
#include <QTextBoundaryFinder>

namespace tarnwell::ui {

namespace {

constexpr QChar zeroWidthSpace(0x200B);
constexpr int charactersOfAWord = 30;

} // namespace

QString breakableText(const QString &text, const QFontMetrics &metrics, int width)
{
    QString result;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    int wordWidth = 0;
    for (qsizetype start = 0, end = 0; (end = characters.toNextBoundary()) >= 0; start = end) {
        const QString character = text.sliced(start, end - start);
        const int characterWidth = metrics.horizontalAdvance(character);
        wordWidth = character.front().isSpace() ? 0 : wordWidth + characterWidth;
        if (wordWidth > width) {
            result += zeroWidthSpace;
            wordWidth = characterWidth;
        }
        result += character;
    }
    return result;
}

void showInLabel(QLabel *label, const QString &text)
{
    const QFontMetrics metrics = label->fontMetrics();
    label->setTextFormat(Qt::PlainText);
    label->setText(breakableText(text, metrics, metrics.averageCharWidth() * charactersOfAWord));
}

} // namespace tarnwell::ui

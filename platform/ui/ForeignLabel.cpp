#include "ui/ForeignLabel.h"

#include "foundation/ForeignText.h"

#include <QAbstractItemView>
#include <QFileDialog>
#include <QFontMetrics>
#include <QLabel>
#include <QStyledItemDelegate>
#include <QTextBoundaryFinder>
#include <QTreeView>

namespace tarnwell::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr QChar zeroWidthSpace(0x200B);
constexpr int charactersOfAWord = 30;
constexpr qsizetype longestFileName = 200;

class FileNameDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale &locale) const override
    {
        return value.metaType().id() == QMetaType::QString
                   ? foundation::shownText(value.toString(), longestFileName)
                   : QStyledItemDelegate::displayText(value, locale);
    }
};

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

void showFileNamesHonestly(QFileDialog *dialog)
{
    for (QAbstractItemView *view : dialog->findChildren<QAbstractItemView *>()) {
        if (qobject_cast<QTreeView *>(view) || view->objectName() == "listView"_L1)
            view->setItemDelegate(new FileNameDelegate(view));
    }
}

} // namespace tarnwell::ui

#include "tutorial/Page.h"

#include <QDate>
#include <QEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QTextCursor>

namespace tarnwell::tutorial {

using namespace Qt::StringLiterals;

namespace {

constexpr int zoomSteps = 6;

// Like paper of that colour, in light and in dark surroundings.
const QColor lightPaper(0xff, 0xf3, 0xd6);
const QColor darkPaper(0x3b, 0x33, 0x1f);

} // namespace

Page::Page(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(true);
}

bool Page::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // A text view claims some keys, and a menu item with such a shortcut would never see it.
        event->ignore();
        return true;
    }
    return QPlainTextEdit::event(event);
}

bool Page::perform(const QString &name)
{
    return performOnText(name) || performOnLook(name);
}

bool Page::performOnText(const QString &name)
{
    if (name == "newPage"_L1)
        replaceText({});
    else if (name == "sampleText"_L1)
        replaceText(tr("The quick brown fox jumps over the lazy dog.\n"
                       "Pack my box with five dozen liquor jugs."));
    else if (name == "undo"_L1)
        document()->undo();
    else if (name == "redo"_L1)
        document()->redo();
    else if (name == "upperCase"_L1)
        replaceText(locale().toUpper(toPlainText()));
    else if (name == "lowerCase"_L1)
        replaceText(locale().toLower(toPlainText()));
    else if (name == "insertDate"_L1)
        insertText(locale().toString(QDate::currentDate(), QLocale::ShortFormat) + u' ');
    else if (name == "insertStar"_L1)
        insertText(u"\u2605"_s);
    else if (name == "insertHeart"_L1)
        insertText(u"\u2665"_s);
    else if (name == "insertNote"_L1)
        insertText(u"\u266A"_s);
    else
        return false;
    return true;
}

bool Page::performOnLook(const QString &name)
{
    QFont font = this->font();
    const qreal normal = parentWidget() ? parentWidget()->font().pointSizeF() : font.pointSizeF();
    if (name == "bigger"_L1) {
        font.setPointSizeF(std::min(font.pointSizeF() + 2, normal + 2 * zoomSteps));
    } else if (name == "smaller"_L1) {
        font.setPointSizeF(std::max(font.pointSizeF() - 2, normal / 2));
    } else if (name == "normalSize"_L1) {
        font.setPointSizeF(normal);
    } else if (name == "colouredPaper"_L1) {
        m_isColoured = !m_isColoured;
        QPalette colours;
        if (m_isColoured) {
            const bool isDark = palette().color(QPalette::Text).lightnessF() > 0.5F;
            colours.setColor(QPalette::Base, isDark ? darkPaper : lightPaper);
        }
        setPalette(colours);
        return true;
    } else {
        return false;
    }
    setFont(font);
    return true;
}

void Page::replaceText(const QString &text)
{
    // By an edit, which can be undone.
    QTextCursor cursor(document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
}

void Page::insertText(const QString &text)
{
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(text);
}

} // namespace tarnwell::tutorial

#include "host/PaneText.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextDocumentFragment>
#include <QWidget>

namespace tarnwell::host {

using namespace Qt::StringLiterals;

namespace {

QString withoutMnemonic(QString text)
{
    static const QString doubled = u"&&"_s;
    const auto parts = text.split(doubled);
    QStringList cleaned;
    for (QString part : parts)
        cleaned.append(part.remove(u'&'));
    return cleaned.join(u'&');
}

QString rowText(const QAbstractItemModel &model, int row, const QModelIndex &parent)
{
    QStringList cells;
    for (int column = 0; column < model.columnCount(parent); ++column)
        cells.append(model.index(row, column, parent).data().toString().replace(u'\n', u' '));
    return cells.join(u'\t');
}

QString modelText(const QAbstractItemModel &model)
{
    QStringList headings;
    for (int column = 0; column < model.columnCount(); ++column)
        headings.append(model.headerData(column, Qt::Horizontal).toString());
    QString text = headings.join(u'\t') + u'\n';
    for (int row = 0; row < model.rowCount(); ++row)
        text += rowText(model, row, {}) + u'\n';
    return text;
}

/// What one widget says by itself.
QString ownText(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        if (label->textFormat() == Qt::RichText)
            return QTextDocumentFragment::fromHtml(label->text()).toPlainText();
        return label->buddy() ? withoutMnemonic(label->text()) : label->text();
    }
    if (const auto *box = qobject_cast<const QCheckBox *>(widget))
        return (box->isChecked() ? u"[x] "_s : u"[ ] "_s) + withoutMnemonic(box->text());
    if (const auto *popup = qobject_cast<const QComboBox *>(widget))
        return popup->currentText();
    if (const auto *field = qobject_cast<const QLineEdit *>(widget))
        return field->text();
    if (const auto *text = qobject_cast<const QPlainTextEdit *>(widget))
        return text->toPlainText();
    return {};
}

void appendText(const QWidget *widget, const QWidget *view, QString &text)
{
    const auto own = ownText(widget);
    if (!own.isEmpty())
        text += own + u'\n';
    const auto *items = qobject_cast<const QAbstractItemView *>(widget);
    if (items && items->model()) {
        text += modelText(*items->model());
        return;
    }
    if (qobject_cast<const QComboBox *>(widget) || qobject_cast<const QLineEdit *>(widget))
        return;
    for (const QObject *child : widget->children()) {
        const auto *childWidget = qobject_cast<const QWidget *>(child);
        if (childWidget && !childWidget->isWindow() && childWidget->isVisibleTo(view))
            appendText(childWidget, view, text);
    }
}

} // namespace

QString textOf(const QWidget *view)
{
    QString text;
    appendText(view, view, text);
    return text;
}

} // namespace tarnwell::host

#include "ui/WidgetSheets.h"

#include "foundation/ForeignText.h"
#include "ui/ForeignLabel.h"

#include <QAbstractButton>
#include <QEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QWindow>

#include <algorithm>

namespace tarnwell::ui {

using ports::Alert;
using ports::AlertStyle;

struct WidgetSheets::Entry
{
    QPointer<QWidget> sheet;
    QPointer<QWidget> window; ///< the one below; null when the sheet stands alone
    DidEnd didEnd;
    bool owned = false; ///< an alert, which goes away with its answer
    bool shown = false;
    bool ended = false;
};

namespace {

constexpr int charactersOfALine = 52;
constexpr qsizetype longestMessage = 1000;
constexpr qsizetype mostLinesOfAMessage = 16;

QAbstractButton *escapeButton(const QWidget *sheet)
{
    const auto buttons = sheet->findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons) {
        if (button->shortcut() == QKeySequence(Qt::Key_Escape) && button->isEnabled())
            return button;
    }
    return nullptr;
}

void placeOver(QWidget *sheet, const QWidget *window)
{
    const QSize size = sheet->size();
    const QRect below = window->frameGeometry();
    // High on the window, where a sheet would come out of its title bar, but never above its top.
    sheet->move(below.x() + (below.width() - size.width()) / 2,
                below.y() + std::max(0, (below.height() - size.height()) / 3));
}

/// The texts come from other applications' menus: they must not be taken for markup, nor push the
/// buttons off the screen.
void setPlainText(QMessageBox &box, const Alert &alert)
{
    const QString message =
        foundation::shownLines(alert.message, longestMessage, mostLinesOfAMessage);
    box.setAccessibleDescription(message);
    box.setTextFormat(Qt::PlainText);
    box.setText(alert.title);
    box.setInformativeText(message);
    for (QLabel *label : box.findChildren<QLabel *>()) {
        if (label->text() == message) {
            label->setTextFormat(Qt::PlainText);
            // Left to itself, the box makes a column of it that is as narrow as its title.
            const QFontMetrics metrics(label->font());
            const int width = metrics.averageCharWidth() * charactersOfALine;
            label->setMinimumWidth(std::min(width, metrics.horizontalAdvance(message)));
            label->setText(breakableText(message, metrics, width));
        }
        if (label->text() == alert.title) {
            QFont font = label->font();
            font.setBold(true);
            label->setFont(font);
        }
    }
}

} // namespace

WidgetSheets::WidgetSheets(QObject *parent)
    : QObject(parent)
{}

WidgetSheets::~WidgetSheets()
{
    for (const auto &entry : m_entries) {
        if (!entry->sheet)
            continue;
        entry->sheet->removeEventFilter(this);
        entry->sheet->hide();
        if (entry->owned)
            delete entry->sheet;
    }
}

void WidgetSheets::beginAlert(const Alert &alert, QWidget *onWindowOf, DidEnd didEnd)
{
    auto *box = new QMessageBox;
    box->setIcon(alert.style == AlertStyle::Critical ? QMessageBox::Warning
                                                     : QMessageBox::Information);
    box->setWindowTitle(alert.title);
    box->setAccessibleName(alert.title);
    setPlainText(*box, alert);

    const auto add = [box](const QString &title, QMessageBox::ButtonRole role) {
        return title.isEmpty() ? nullptr : box->addButton(title, role);
    };
    auto *defaultButton = add(alert.defaultButton, QMessageBox::AcceptRole);
    auto *alternateButton = add(alert.alternateButton, QMessageBox::RejectRole);
    auto *otherButton = add(alert.otherButton, QMessageBox::ActionRole);
    if (defaultButton)
        box->setDefaultButton(defaultButton);
    if (alternateButton)
        box->setEscapeButton(alternateButton);
    // Where something is about to be lost, a careless Return must not lose it.
    if (alert.style == AlertStyle::Critical && alternateButton)
        alternateButton->setFocus();
    connect(box, &QMessageBox::buttonClicked, this,
            [this, box, defaultButton, otherButton](QAbstractButton *clicked) {
                endSheet(box, clicked == defaultButton ? 1 : clicked == otherButton ? -1 : 0);
            });
    this->add(box, onWindowOf, std::move(didEnd), true);
}

void WidgetSheets::beginSheet(QWidget *sheet, QWidget *onWindowOf, DidEnd didEnd)
{
    if (!find(sheet))
        add(sheet, onWindowOf, std::move(didEnd), false);
}

void WidgetSheets::endSheet(QWidget *sheet, int returnCode)
{
    if (Entry *entry = find(sheet))
        finish(*entry, returnCode);
}

void WidgetSheets::add(QWidget *sheet, QWidget *onWindowOf, DidEnd didEnd, bool owned)
{
    auto entry = std::make_unique<Entry>();
    entry->sheet = sheet;
    entry->window = onWindowOf ? onWindowOf->window() : nullptr;
    entry->didEnd = std::move(didEnd);
    entry->owned = owned;
    sheet->installEventFilter(this);
    // Whoever destroys a sheet has gone away itself, so nobody is there to hear of its end.
    connect(sheet, &QObject::destroyed, this, [this](QObject *gone) {
        std::erase_if(m_entries, [gone](const auto &known) {
            return known->sheet.isNull() || known->sheet.data() == gone;
        });
        showNext();
    });
    QWidget *window = entry->window;
    Entry &added = *m_entries.emplace_back(std::move(entry));
    if (window) {
        window->installEventFilter(this);
        connect(window, &QObject::destroyed, sheet, [this, sheet] {
            if (Entry *orphan = find(sheet))
                finish(*orphan, 0);
            sheet->hide();
        });
        if (!window->isVisible()) {
            finish(added, 0);
            return;
        }
    }
    showNext();
}

/// Shows the first sheet of every window that has none up.
void WidgetSheets::showNext()
{
    QList<QWidget *> busy;
    std::vector<Entry *> due;
    for (const auto &entry : m_entries) {
        if (busy.contains(entry->window))
            continue;
        busy.append(entry->window);
        if (!entry->shown && !entry->ended)
            due.push_back(entry.get());
    }
    for (Entry *entry : due) {
        entry->shown = true;
        QWidget *sheet = entry->sheet;
        sheet->setWindowModality(entry->window ? Qt::WindowModal : Qt::ApplicationModal);
        sheet->ensurePolished();
        if (entry->window) {
            // The native window below is made the owner, not the widget: the caller of
            // beginSheet() keeps the sheet, also when that window dies.
            sheet->winId();
            sheet->windowHandle()->setTransientParent(entry->window->windowHandle());
            if (entry->owned)
                sheet->adjustSize();
            placeOver(sheet, entry->window);
        }
        sheet->show();
    }
}

void WidgetSheets::finish(Entry &entry, int returnCode)
{
    if (entry.ended)
        return;
    entry.ended = true;
    const QPointer<QWidget> sheet = entry.sheet;
    const auto deliver = [this, sheet, returnCode] {
        const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const auto &known) {
            return sheet && known->sheet == sheet;
        });
        if (found == m_entries.end())
            return;
        const auto ended = std::move(*found);
        m_entries.erase(found);
        sheet->removeEventFilter(this);
        sheet->disconnect(this);
        if (ended->window)
            disconnect(ended->window, nullptr, sheet, nullptr);
        if (ended->owned) {
            sheet->hide();
            sheet->deleteLater();
        }
        const QPointer<WidgetSheets> self(this);
        if (ended->didEnd)
            ended->didEnd(returnCode);
        if (self)
            showNext();
    };
    QMetaObject::invokeMethod(this, deliver, Qt::QueuedConnection);
}

WidgetSheets::Entry *WidgetSheets::find(const QObject *sheet) const
{
    for (const auto &entry : m_entries) {
        if (entry->sheet == sheet)
            return entry.get();
    }
    return nullptr;
}

bool WidgetSheets::eventFilter(QObject *watched, QEvent *event)
{
    if (Entry *entry = find(watched); entry && entry->shown && !entry->ended) {
        const bool isKey =
            event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
        const bool escape = isKey && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Cancel);
        if (escape && event->type() == QEvent::ShortcutOverride) {
            // As a shortcut it would press its button with an animation, and only in a window
            // that the toolkit holds to be active.
            event->accept();
            return true;
        }
        if (event->type() == QEvent::Close || escape) {
            auto *box = qobject_cast<QMessageBox *>(entry->sheet);
            if (QAbstractButton *button = box ? box->escapeButton() : escapeButton(entry->sheet))
                button->click();
            else
                entry->sheet->hide();
            event->setAccepted(escape);
            return true;
        }
        if (event->type() == QEvent::Hide && !event->spontaneous())
            finish(*entry, 0);
    } else if (event->type() == QEvent::Hide && !event->spontaneous()) {
        std::vector<QPointer<QWidget>> sheets;
        for (const auto &known : m_entries) {
            if (known->window == watched) {
                finish(*known, 0);
                sheets.emplace_back(known->sheet);
            }
        }
        for (const auto &sheet : sheets) {
            if (sheet)
                sheet->hide();
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace tarnwell::ui

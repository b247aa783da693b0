#include "tutorial/TutorialWindow.h"

#include "tutorial/Page.h"

#include <QAccessible>
#include <QFrame>
#include <QLabel>
#include <QVBoxLayout>

namespace tarnwell::tutorial {

using namespace Qt::StringLiterals;

void TutorialWindow::buildContents()
{
    auto *contents = new QWidget(this);
    auto *layout = new QVBoxLayout(contents);

    auto *title = new QLabel(tr("Your own shortcut in three steps"), contents);
    title->setObjectName("title"_L1);
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    title->setFont(font);
    layout->addWidget(title);

    // A label each, so that a screen reader reads them one by one.
    const QStringList steps{
        tr("1. Open a menu: File, Edit or View."),
        tr("2. Point at an item, or move to it with the arrow keys."),
        tr("3. While it is highlighted, press the new keys: any key together with Ctrl, Alt or the "
           "Super key, or a function key."),
    };
    for (int i = 0; i < steps.size(); ++i) {
        auto *step = new QLabel(steps.at(i), contents);
        step->setObjectName(u"step%1"_s.arg(i + 1));
        step->setWordWrap(true);
        layout->addWidget(step);
    }
    auto *hint = new QLabel(
        tr("Backspace gives an item its own shortcut back. Keep the Tarnwell settings open beside "
           "this window: what you change here appears there, and what you restore there changes "
           "here."),
        contents);
    hint->setObjectName("hint"_L1);
    hint->setWordWrap(true);
    layout->addWidget(hint);

    m_page = new Page(contents);
    m_page->setObjectName("page"_L1);
    m_page->setAccessibleName(tr("Page"));
    m_page->setAccessibleDescription(tr("Shows what the menu items do"));
    m_page->setPlaceholderText(tr("The menu items write here."));
    layout->addWidget(m_page, 1);

    m_status = new QLabel(contents);
    m_status->setObjectName("status"_L1);
    m_status->setWordWrap(true);
    m_status->setFrameShape(QFrame::StyledPanel);
    m_status->setMargin(6);
    // Room for two lines, so that the page does not jump when one gets long.
    m_status->setMinimumHeight(2 * fontMetrics().lineSpacing() + 16);
    m_status->setAccessibleDescription(tr("What happened last"));
    layout->addWidget(m_status);

    setCentralWidget(contents);
    m_page->setFocus();
    resize(560, 480);
}

void TutorialWindow::say(const QString &text)
{
    m_status->setText(text);
    QAccessibleEvent event(m_status, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace tarnwell::tutorial

#include "host/ErrorPage.h"

#include "foundation/ForeignText.h"
#include "host/PaneLoader.h"
#include "ui/ForeignLabel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace tarnwell::host {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestMessage = 600;
constexpr qsizetype mostLinesOfAMessage = 6;

} // namespace

ErrorPage::ErrorPage(const QString &title, const PaneFailure &failure, QWidget *parent)
    : QWidget(parent)
    , m_text(u"%1\n\n%2\n\n%3"_s.arg(title, failure.message, failure.details))
{
    setObjectName("errorPage"_L1);

    auto *icon = new QLabel;
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    icon->setPixmap(style()
                        ->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this)
                        .pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));

    auto *titleLabel = new QLabel;
    titleLabel->setObjectName("errorTitle"_L1);
    titleLabel->setWordWrap(true);
    QFont titleFont = font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.3);
    titleLabel->setFont(titleFont);
    ui::showInLabel(titleLabel, title);

    const QString shownMessage =
        foundation::shownLines(failure.message, longestMessage, mostLinesOfAMessage);
    auto *message = new QLabel;
    message->setObjectName("errorMessage"_L1);
    message->setWordWrap(true);
    ui::showInLabel(message, shownMessage);
    message->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    auto *detailsLabel = new QLabel(u"&Details:"_s);
    auto *details = new QPlainTextEdit(failure.details);
    details->setObjectName("errorDetails"_L1);
    details->setReadOnly(true);
    details->setTabChangesFocus(true);
    details->setAccessibleName(u"Details"_s);
    details->setAccessibleDescription(u"What to tell whoever is asked for help"_s);
    detailsLabel->setBuddy(details);

    auto *copy = new QPushButton(u"&Copy Details"_s);
    copy->setObjectName("copyDetailsButton"_L1);
    copy->setAccessibleDescription(u"Puts the message and the details on the clipboard"_s);
    connect(copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_text); });
    auto *close = new QPushButton(u"C&lose"_s);
    close->setObjectName("closeButton"_L1);
    close->setAccessibleDescription(u"Closes the window"_s);
    connect(close, &QPushButton::clicked, this, [this] { window()->close(); });

    auto *texts = new QVBoxLayout;
    texts->addWidget(titleLabel);
    texts->addWidget(message);
    auto *top = new QHBoxLayout;
    top->addWidget(icon, 0, Qt::AlignTop);
    top->addLayout(texts, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(copy);
    buttons->addWidget(close);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(detailsLabel);
    layout->addWidget(details, 1);
    layout->addLayout(buttons);

    setAccessibleName(title);
    setAccessibleDescription(shownMessage);
    setFocusProxy(copy);
}

} // namespace tarnwell::host

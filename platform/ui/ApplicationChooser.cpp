#include "ui/ApplicationChooser.h"

#include "foundation/ForeignText.h"
#include "foundation/PlainToolTip.h"
#include "ui/ApplicationBrowser.h"
#include "ui/ApplicationChooserModel.h"
#include "ui/StyledTextDelegate.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace tarnwell::ui {

namespace {

constexpr QSize iconSize(32, 32);
constexpr qsizetype longestSummary = 1000;

/// Lets through the rows that hold every word of the search, in any order.
class SearchFilter final : public QSortFilterProxyModel
{
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setSearch(const QString &text)
    {
        m_words = text.split(u' ', Qt::SkipEmptyParts);
        invalidateFilter();
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override
    {
        const QString text = sourceModel()
                                 ->index(row, 0, parent)
                                 .data(ApplicationChooserModel::SearchTextRole)
                                 .toString();
        return std::all_of(m_words.begin(), m_words.end(), [&text](const QString &word) {
            return text.contains(word, Qt::CaseInsensitive);
        });
    }

private:
    QStringList m_words;
};

/// Tells of a double-click on a row, but of none on its check box: there it is two quick clicks.
class RowDelegate final : public StyledTextDelegate
{
public:
    RowDelegate(QObject *parent, std::function<void()> doubleClicked)
        : StyledTextDelegate(parent)
        , m_doubleClicked(std::move(doubleClicked))
    {}

protected:
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override
    {
        if (StyledTextDelegate::editorEvent(event, model, option, index))
            return true;
        if (event->type() != QEvent::MouseButtonDblClick)
            return false;
        m_doubleClicked();
        return true;
    }

private:
    std::function<void()> m_doubleClicked;
};

} // namespace

ApplicationChooser::ApplicationChooser(const ports::ApplicationPanel &panel,
                                       const ports::Workspace &workspace)
    : m_panel(panel)
    , m_model(new ApplicationChooserModel(workspace, panel.allowsMultipleSelection, this))
    , m_filter(new SearchFilter(this))
    , m_searchField(new QLineEdit)
    , m_list(new QListView)
    , m_nothingFound(new QLabel(tr("No application matches the search.")))
    , m_summary(new QLabel)
    , m_confirmButton(new QPushButton(panel.prompt))
{
    setObjectName(u"applicationChooser"_s);
    setWindowTitle(panel.title);
    setAccessibleName(panel.title);
    m_filter->setSourceModel(m_model);

    m_searchField->setObjectName(u"applicationSearch"_s);
    m_searchField->setPlaceholderText(tr("Search"));
    m_searchField->setAccessibleName(tr("Search applications"));
    m_searchField->setClearButtonEnabled(true);
    m_searchField->installEventFilter(this);
    connect(m_searchField, &QLineEdit::textChanged, this, &ApplicationChooser::search);
    // What was searched for is meant, too. The default button then confirms.
    connect(m_searchField, &QLineEdit::returnPressed, this, [this] {
        if (!m_searchField->text().isEmpty())
            tickSelected();
    });

    m_list->setObjectName(u"applicationList"_s);
    m_list->setAccessibleName(tr("Applications"));
    m_list->setModel(m_filter);
    m_list->setItemDelegate(new RowDelegate(m_list, [this] {
        tickSelected();
        confirm();
    }));
    m_list->setIconSize(iconSize);
    m_list->setUniformItemSizes(true);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setAlternatingRowColors(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ApplicationChooser::updateControls);
    connect(m_model, &QAbstractItemModel::dataChanged, this, &ApplicationChooser::updateControls);

    m_nothingFound->setAlignment(Qt::AlignCenter);
    m_nothingFound->setWordWrap(true);
    auto *inList = new QVBoxLayout(m_list->viewport());
    inList->addWidget(m_nothingFound);

    m_summary->setObjectName(u"chosenApplications"_s);
    m_summary->setTextFormat(Qt::PlainText);
    // One line, so that the list does not move under the pointer when something is ticked.
    m_summary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);

    auto *browseButton = new QPushButton(tr("&Browse…"));
    browseButton->setObjectName(u"browseButton"_s);
    browseButton->setAccessibleDescription(
        tr("Chooses a bundle, a desktop entry or a program that is not in the list"));
    browseButton->setAutoDefault(false);
    browseButton->setEnabled(panel.canChooseFiles);
    connect(browseButton, &QPushButton::clicked, this, &ApplicationChooser::browse);
    auto *cancelButton = new QPushButton(tr("Cancel"));
    cancelButton->setObjectName(u"cancelButton"_s);
    cancelButton->setAutoDefault(false);
    connect(cancelButton, &QPushButton::clicked, this, &QDialog::hide);
    m_confirmButton->setObjectName(u"confirmButton"_s);
    m_confirmButton->setDefault(true);
    connect(m_confirmButton, &QPushButton::clicked, this, &ApplicationChooser::confirm);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(browseButton);
    buttons->addStretch();
    buttons->addWidget(cancelButton);
    buttons->addWidget(m_confirmButton);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_searchField);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_summary);
    layout->addLayout(buttons);
    resize(fontMetrics().averageCharWidth() * 64, fontMetrics().lineSpacing() * 28);
    updateControls();
}

void ApplicationChooser::setApplications(const QList<ports::InstalledApplication> &applications,
                                         const QSet<QString> &running)
{
    m_model->setApplications(applications, running);
    search(m_searchField->text());
}

void ApplicationChooser::search(const QString &text)
{
    static_cast<SearchFilter *>(m_filter)->setSearch(text);
    // So that typing and Return are enough.
    if (!text.isEmpty() && !m_list->selectionModel()->hasSelection())
        m_list->setCurrentIndex(m_filter->index(0, 0));
    m_nothingFound->setVisible(m_filter->rowCount() == 0);
    updateControls();
}

QStringList ApplicationChooser::chosenPaths() const
{
    QStringList ticked = m_model->tickedPaths();
    const QModelIndexList selected = m_list->selectionModel()->selectedRows();
    if (!ticked.isEmpty() || selected.isEmpty())
        return ticked;
    return {selected.first().data(ApplicationChooserModel::PathRole).toString()};
}

void ApplicationChooser::updateControls()
{
    m_confirmButton->setEnabled(!chosenPaths().isEmpty());
    const QStringList ticked = m_model->tickedNames();
    const QString summary =
        ticked.isEmpty()
            ? tr("Nothing is chosen yet.")
            : tr("Chosen: %1").arg(foundation::shownText(ticked.join(", "_L1), longestSummary));
    const int room = isVisible() ? m_list->width() : QWIDGETSIZE_MAX;
    m_summary->setText(fontMetrics().elidedText(summary, Qt::ElideRight, room));
    m_summary->setAccessibleName(summary);
    m_summary->setToolTip(foundation::plainToolTip(summary));
}

void ApplicationChooser::tickSelected()
{
    for (const QModelIndex &row : m_list->selectionModel()->selectedRows())
        m_filter->setData(row, Qt::Checked, Qt::CheckStateRole);
}

void ApplicationChooser::confirm()
{
    const QStringList paths = chosenPaths();
    if (paths.isEmpty())
        return;
    Q_EMIT chosen(paths);
    hide();
}

void ApplicationChooser::browse()
{
    if (m_browser)
        return;
    auto *browser = new ApplicationBrowser(m_panel, this);
    m_browser = browser;
    browser->setAttribute(Qt::WA_DeleteOnClose);
    connect(browser, &ApplicationBrowser::chosen, this, [this](const QStringList &paths) {
        Q_EMIT chosen(m_model->tickedPaths() + paths);
        hide();
    });
    browser->open();
}

bool ApplicationChooser::eventFilter(QObject *watched, QEvent *event)
{
    // From the search field the arrows walk the list, without a way there by Tab.
    if (watched == m_searchField && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Up || key == Qt::Key_PageDown ||
            key == Qt::Key_PageUp) {
            const bool hasCurrent = m_list->currentIndex().isValid();
            m_list->setFocus();
            if (hasCurrent)
                QCoreApplication::sendEvent(m_list, event);
            else
                m_list->setCurrentIndex(m_filter->index(0, 0));
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace tarnwell::ui

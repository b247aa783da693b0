#pragma once

#include "ports/OpenPanel.h"

#include <QDialog>
#include <QPointer>
#include <QSet>

class QFileDialog;
class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class QSortFilterProxyModel;

namespace tarnwell::ports {
class Workspace;
struct InstalledApplication;
} // namespace tarnwell::ports

namespace tarnwell::ui {

class ApplicationChooserModel;

/// Shows the installed applications with a search field. What is ticked is chosen, else what is
/// selected; a double-click and Return in the search field tick what they point at. With browsing,
/// a bundle, a desktop entry or a program from anywhere.
class ApplicationChooser final : public QDialog
{
    Q_OBJECT

public:
    /// The workspace outlives the chooser.
    ApplicationChooser(const ports::ApplicationPanel &panel, const ports::Workspace &workspace);

    void setApplications(const QList<ports::InstalledApplication> &applications,
                         const QSet<QString> &running);

Q_SIGNALS:
    /// The user confirmed; at least one path.
    void chosen(const QStringList &paths);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void search(const QString &text);
    void browse();
    void tickSelected();
    void confirm();
    QStringList chosenPaths() const;
    void updateControls();

    ports::ApplicationPanel m_panel;
    ApplicationChooserModel *m_model;
    QSortFilterProxyModel *m_filter;
    QLineEdit *m_searchField;
    QListView *m_list;
    QLabel *m_nothingFound;
    QLabel *m_summary;
    QPushButton *m_confirmButton;
    QPointer<QFileDialog> m_browser;
};

} // namespace tarnwell::ui

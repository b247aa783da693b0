#pragma once

#include "ports/Applications.h"

#include <QAbstractListModel>
#include <QIcon>
#include <QSet>

#include <optional>
#include <vector>

namespace tarnwell::ports {
class Workspace;
}

namespace tarnwell::ui {

/// The applications that a chooser offers: those that run now first, then by name. Icons are asked
/// for when a row is first painted, so that hundreds of rows cost nothing.
class ApplicationChooserModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        /// What the search looks at: name and identifier.
        SearchTextRole = Qt::UserRole + 2,
        PathRole,
    };

    /// With several to be chosen the rows have check boxes. The workspace outlives the model.
    ApplicationChooserModel(const ports::Workspace &workspace, bool severalMayBeChosen,
                            QObject *parent = nullptr);

    void setApplications(const QList<ports::InstalledApplication> &applications,
                         const QSet<QString> &running);

    /// The paths of the ticked rows, in the order of the rows.
    QStringList tickedPaths() const;
    QStringList tickedNames() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    struct Row
    {
        ports::InstalledApplication application;
        bool isRunning = false;
        bool isTicked = false;
        mutable std::optional<QIcon> icon;
    };

    QString secondLine(const Row &row) const;
    QIcon iconOf(const Row &row) const;

    const ports::Workspace &m_workspace;
    bool m_severalMayBeChosen;
    std::vector<Row> m_rows;
};

} // namespace tarnwell::ui

#pragma once

#include "foundation/plist/Value.h"

#include <QAbstractTableModel>
#include <QIcon>
#include <QList>
#include <QStringList>

#include <optional>

namespace tarnwell::ports {
class FileManager;
class Workspace;
} // namespace tarnwell::ports

namespace tarnwell::exclude {

/// The columns of the exclude table, by the identifiers that the interface file gives them: one of
/// icons, all others of text.
inline constexpr int iconColumn = 13;

/// Presents the records of the exclude list. Names and icons are asked for when a row is painted.
class ExcludeTableModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role {
        /// A cell's StyledString; what views and screen readers take is derived from it.
        StyledStringRole = Qt::UserRole + 1,
    };

    /// The services outlive the model. The icon stands for every predefined application.
    ExcludeTableModel(const QStringList &columnIdentifiers, const QStringList &headings,
                      const ports::FileManager &fileManager, const ports::Workspace &workspace,
                      const QIcon &predefinedIcon, QObject *parent = nullptr);

    /// Shows other records. Those that show already leave the table untouched.
    void setRecords(const plist::Array &records);
    const plist::Array &records() const { return m_records; }

    /// Where an equal record stands, or else one of the same application; -1 for none.
    int indexOf(const plist::Value &record) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QVariant textData(const plist::Dictionary &dictionary, int role) const;
    QVariant iconData(const plist::Dictionary &dictionary, int role) const;

    QList<int> m_columns;
    QStringList m_headings;
    const ports::FileManager &m_fileManager;
    const ports::Workspace &m_workspace;
    QIcon m_predefinedIcon;
    plist::Array m_records;
};

} // namespace tarnwell::exclude

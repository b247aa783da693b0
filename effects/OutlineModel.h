#pragma once

#include "effects/Outline.h"

#include <QAbstractItemModel>

#include <functional>

namespace tarnwell::effects {

/// Presents an outline: groups with their compositions, a name and a check box in each row. A check
/// box that is switched changes nothing here: whoever stores the choice shows what results.
class OutlineModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    using Switch = std::function<void(const OutlineItem &item, bool on)>;

    /// The file manager outlives the model.
    OutlineModel(const QStringList &columnIdentifiers, const QStringList &headings,
                 const ports::FileManager &fileManager, Switch switchItem,
                 QObject *parent = nullptr);

    /// Shows another outline. If it has the same rows, they stay where they are, and only what
    /// stands in them changes.
    void setOutline(const Outline &outline);
    const Outline &outline() const { return m_outline; }

    /// The root for no index.
    OutlineItem itemAt(const QModelIndex &index) const;
    /// The place of an item in the first column; none if it isn't shown.
    QModelIndex indexOf(const OutlineItem &item) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QVariant switchData(const OutlineItem &item, int role) const;
    /// What a screen reader says of a row, whose other cell it doesn't get to.
    QString spokenRow(const QString &name, const OutlineItem &item) const;
    Qt::CheckState stateOf(const OutlineItem &item) const;

    QStringList m_columns;
    QStringList m_headings;
    const ports::FileManager &m_fileManager;
    Switch m_switch;
    Outline m_outline;
};

} // namespace tarnwell::effects

#pragma once

#include <QTreeView>

namespace tarnwell::effects {

/// An outline whose rows are switched by the space bar whichever of their cells is the current one.
/// It tells screen readers when what they said of that one has changed.
class OutlineView final : public QTreeView
{
    Q_OBJECT

public:
    explicit OutlineView(QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;

protected Q_SLOTS:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override;

private:
    QString m_spoken; ///< of the current cell
};

} // namespace tarnwell::effects

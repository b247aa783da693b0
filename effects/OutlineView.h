#pragma once

#include <QTreeView>

namespace tarnwell::effects {

/// An outline whose rows are switched by the space bar whichever of their cells is the current one.
class OutlineView final : public QTreeView
{
    Q_OBJECT

public:
    explicit OutlineView(QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace tarnwell::effects

#pragma once

#include "ports/OpenPanel.h"

#include <QFileDialog>

namespace tarnwell::ui {

/// Looks for an application in the folders. Bundles of the panel's types, desktop entries of
/// applications and programs can be chosen, and nothing else: a bundle as one item, as if it were a
/// file, while any other folder is entered.
class ApplicationBrowser final : public QFileDialog
{
    Q_OBJECT

public:
    explicit ApplicationBrowser(const ports::ApplicationPanel &panel, QWidget *parent = nullptr);

    void accept() override;

Q_SIGNALS:
    /// The user confirmed; at least one path.
    void chosen(const QStringList &paths);

private:
    bool isItem(const QString &path) const;
    void choose(const QStringList &paths);
    void refuse(const QString &path);

    ports::ApplicationPanel m_panel;
    QString m_current;
};

} // namespace tarnwell::ui

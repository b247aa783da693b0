#pragma once

#include "ports/OpenPanel.h"

#include <QFileDialog>

namespace tarnwell::ui {

/// Looks for an application in the folders: folders, bundles, desktop entries and programs are
/// shown. A bundle is chosen as one item, as if it were a file.
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

    ports::ApplicationPanel m_panel;
    QString m_current;
};

} // namespace tarnwell::ui

#pragma once

#include "ports/Sheets.h"

#include <QObject>
#include <QPointer>

#include <memory>
#include <vector>

class QDialog;

namespace tarnwell::ui {

/// Sheets as window-modal dialogs.
///
/// One sheet at a time is shown on a window; one that is begun meanwhile waits for its turn. Escape
/// and the window's close button press the sheet's button with the shortcut Escape, or else end
/// the sheet with 0. Callbacks come from the event loop; those that are still due when this object
/// is destroyed are dropped, and what is shown is hidden.
class WidgetSheets final : public QObject, public ports::Sheets
{
    Q_OBJECT

public:
    explicit WidgetSheets(QObject *parent = nullptr);
    ~WidgetSheets() override;

    void beginAlert(const ports::Alert &alert, QWidget *onWindowOf, DidEnd didEnd) override;
    /// A sheet that is already up or waiting stays as it is; the second request is dropped.
    void beginSheet(QWidget *sheet, QWidget *onWindowOf, DidEnd didEnd) override;
    void endSheet(QWidget *sheet, int returnCode) override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Entry;

    void add(QWidget *sheet, QWidget *onWindowOf, DidEnd didEnd, bool owned);
    void showNext();
    void finish(Entry &entry, int returnCode);
    Entry *find(const QObject *sheet) const;

    std::vector<std::unique_ptr<Entry>> m_entries; ///< in the order in which they were begun
};

} // namespace tarnwell::ui

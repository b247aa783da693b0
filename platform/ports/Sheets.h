#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace tarnwell::ports {

enum class AlertStyle { Informational, Critical };

/// A question in a sheet. Buttons without a title are left out.
struct Alert
{
    AlertStyle style = AlertStyle::Informational;
    QString title;
    QString message;
    QString defaultButton;   ///< ends the alert with 1
    QString alternateButton; ///< ends the alert with 0, as the Escape key does
    QString otherButton;     ///< ends the alert with -1
};

/// Window-modal questions and panels. Nothing waits: the answer comes through a callback, from the
/// event loop, also (with 0) when the window below goes away first.
class Sheets
{
public:
    using DidEnd = std::function<void(int returnCode)>;

    virtual ~Sheets() = default;

    /// Asks a question on the window that holds a widget.
    virtual void beginAlert(const Alert &alert, QWidget *onWindowOf, DidEnd didEnd) = 0;

    /// Shows a window as a sheet on the window that holds a widget. The caller keeps the sheet.
    /// The sheet stays visible until the callback hides it.
    virtual void beginSheet(QWidget *sheet, QWidget *onWindowOf, DidEnd didEnd) = 0;

    /// Ends a sheet with a return code, which its callback receives.
    virtual void endSheet(QWidget *sheet, int returnCode) = 0;
};

} // namespace tarnwell::ports

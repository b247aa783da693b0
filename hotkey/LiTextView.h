#pragma once

#include "hotkey/KeyEvent.h"

#include <QPlainTextEdit>

namespace tarnwell::hotkey {

/// A text view that logs the keys it is offered.
class LiTextView : public QPlainTextEdit
{
    Q_OBJECT

public:
    using QPlainTextEdit::QPlainTextEdit;

    /// Logs the event, and leaves it to others.
    bool performKeyEquivalent(const KeyEvent &event) const;

    /// A field editor stands in for the fields of a window while they are edited.
    bool isFieldEditor() const { return m_isFieldEditor; }
    void setFieldEditor(bool on) { m_isFieldEditor = on; }

private:
    bool m_isFieldEditor = false;
};

} // namespace tarnwell::hotkey

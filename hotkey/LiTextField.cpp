#include "hotkey/LiTextField.h"

namespace tarnwell::hotkey {

LiTextField::LiTextField(QWidget *parent)
    : QLineEdit(parent)
    , m_cell(*this)
{}

void LiTextField::focusInEvent(QFocusEvent *event)
{
    // A line edit is its own editor.
    m_cell.setUpFieldEditorAttributes(this);
    QLineEdit::focusInEvent(event);
}

} // namespace tarnwell::hotkey

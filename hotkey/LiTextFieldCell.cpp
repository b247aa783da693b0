#include "hotkey/LiTextFieldCell.h"

#include "foundation/Logging.h"
#include "hotkey/LiTextView.h"

using namespace Qt::StringLiterals;

namespace tarnwell::hotkey {

QWidget *TextFieldCell::setUpFieldEditorAttributes(QWidget *editor)
{
    if (editor && editor != &m_controlView) {
        editor->setFont(m_controlView.font());
        editor->setPalette(m_controlView.palette());
    }
    return editor;
}

QWidget *LiTextFieldCell::setUpFieldEditorAttributes(QWidget *editor)
{
    TARNWELL_SYSTEM_LOG(u"Yo!"_s);
    QWidget *const result = TextFieldCell::setUpFieldEditorAttributes(editor);
    LiTextView view;
    view.setGeometry(controlView().geometry());
    view.setFieldEditor(true);
    return result;
}

} // namespace tarnwell::hotkey

#pragma once

class QWidget;

namespace tarnwell::hotkey {

/// What a text field does to the widget that edits its text.
class TextFieldCell
{
public:
    /// The control is borrowed and lives longer.
    explicit TextFieldCell(QWidget &controlView)
        : m_controlView(controlView)
    {}
    virtual ~TextFieldCell() = default;

    /// Gives an editor the control's looks. Returns the editor to use.
    virtual QWidget *setUpFieldEditorAttributes(QWidget *editor);

protected:
    QWidget &controlView() const { return m_controlView; }

private:
    QWidget &m_controlView;
};

/// The cell of the hot-key field.
class LiTextFieldCell : public TextFieldCell
{
public:
    using TextFieldCell::TextFieldCell;

    /// Logs that it was called, and returns the editor that every field gets: the one that it makes
    /// itself is not used. Both are kept, for whoever watches the log.
    QWidget *setUpFieldEditorAttributes(QWidget *editor) override;
};

} // namespace tarnwell::hotkey

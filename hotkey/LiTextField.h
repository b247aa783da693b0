#pragma once

#include "hotkey/LiTextFieldCell.h"

#include <QLineEdit>

namespace tarnwell::hotkey {

/// The field of the hot-key sheet.
class LiTextField : public QLineEdit
{
    Q_OBJECT

public:
    explicit LiTextField(QWidget *parent = nullptr);

protected:
    void focusInEvent(QFocusEvent *event) override;

private:
    LiTextFieldCell m_cell;
};

} // namespace tarnwell::hotkey

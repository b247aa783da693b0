#pragma once

#include <QLineEdit>

namespace tarnwell::hotkey {

/// The field of the hot-key sheet.
class LiTextField : public QLineEdit
{
    Q_OBJECT

public:
    explicit LiTextField(QWidget *parent = nullptr);
};

} // namespace tarnwell::hotkey

#include "hotkey/LiTextField.h"

namespace tarnwell::hotkey {

LiTextField::LiTextField(QWidget *parent)
    : QLineEdit(parent)
{}

} // namespace tarnwell::hotkey

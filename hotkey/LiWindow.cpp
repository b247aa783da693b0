#include "hotkey/LiWindow.h"

namespace tarnwell::hotkey {

LiWindow::LiWindow(QWidget *parent)
    : QDialog(parent)
{}

} // namespace tarnwell::hotkey

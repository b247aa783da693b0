#pragma once

class QWidget;

namespace tarnwell::ui {

/// Has a screen reader read the widget's text now, wherever the focus is.
void announce(QWidget *widget);

} // namespace tarnwell::ui

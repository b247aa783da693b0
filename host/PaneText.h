#pragma once

#include <QString>

class QWidget;

namespace tarnwell::host {

/// What a view and the shown widgets below it say, as text: a line for each label, field, button
/// and chosen item, and a table's heading and rows as lines with tabs. Tabs show their current
/// page.
QString textOf(const QWidget *view);

} // namespace tarnwell::host

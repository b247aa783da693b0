#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace tarnwell::ui {

/// Tells when a widget is painted for the first time from now on, which is later than its being
/// shown: only then there is something to see on the screen.
class FirstPaint final : public QObject
{
    Q_OBJECT

public:
    /// The callback comes from within the painting, so it must not paint or wait itself.
    FirstPaint(QWidget *widget, std::function<void()> painted);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void()> m_painted;
};

} // namespace tarnwell::ui

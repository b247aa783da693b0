#include "host/PaneWindow.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using tarnwell::host::LoadedPane;
using tarnwell::host::PaneWindow;

namespace {

/// Counts how often the user came back.
class CountingPane final : public tarnwell::ui::PreferencePane
{
public:
    explicit CountingPane(int &returns)
        : m_returns(returns)
    {}

    QWidget *loadMainView(QString *) override { return new QWidget; }
    void mainViewDidLoad() override {}
    void willSelect() override {}
    void willUnselect() override {}
    void hostDidBecomeActive() override { ++m_returns; }

private:
    int &m_returns;
};

} // namespace

TEST(PaneWindow, TellsOfEveryActivationButTheOneOfItsFirstShowing)
{
    int returns = 0;
    LoadedPane loaded;
    loaded.pane = std::make_unique<CountingPane>(returns);
    loaded.view.reset(loaded.pane->loadMainView(nullptr));
    PaneWindow window;
    window.setPane(std::move(loaded));
    bool appeared = false;
    QObject::connect(&window, &PaneWindow::appeared, [&] {
        window.becomeActive();
        appeared = true;
    });
    window.show();
    window.becomeActive();
    while (!appeared)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(returns, 0);
    // The window was opened without the focus: its first activation is the user's.
    QCoreApplication::processEvents();
    window.becomeActive();
    EXPECT_EQ(returns, 1);
}

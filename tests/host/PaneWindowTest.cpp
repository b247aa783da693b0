#include "host/PaneWindow.h"

#include "host/PaneLoader.h"
#include "support/StrangersNames.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using tarnwell::host::LoadedPane;
using tarnwell::host::PaneWindow;

namespace {

/// What a test sees of its pane.
struct PaneRecord
{
    int returns = 0; ///< how often the user came back
    int ends = 0;    ///< how often the pane was told that the program ends
    QList<std::function<void(bool)>> questions; ///< whether the window may be closed
};

class RecordingPane final : public tarnwell::ui::PreferencePane
{
public:
    explicit RecordingPane(PaneRecord &record)
        : m_record(record)
    {}

    QWidget *loadMainView(QString *) override { return new QWidget; }
    void mainViewDidLoad() override {}
    void willSelect() override {}
    void willUnselect() override {}
    void hostDidBecomeActive() override { ++m_record.returns; }
    void askToClose(std::function<void(bool)> reply) override { m_record.questions += reply; }
    void willEnd() override { ++m_record.ends; }

private:
    PaneRecord &m_record;
};

LoadedPane loadedPane(PaneRecord &record)
{
    LoadedPane loaded;
    loaded.pane = std::make_unique<RecordingPane>(record);
    loaded.view.reset(loaded.pane->loadMainView(nullptr));
    return loaded;
}

} // namespace

TEST(PaneWindow, KeepsItsSizeWhateverAPaneIsCalled)
{
    for (const QString &name : tarnwell::tests::strangersNames()) {
        PaneWindow window;
        window.setPane(LoadedPane{name, std::make_unique<QWidget>(), nullptr});
        EXPECT_TRUE(tarnwell::tests::isHonest(window.windowTitle()));
        window.setPane(tarnwell::host::PaneFailure{name + u" cannot be loaded"_s, name});
        EXPECT_LE(window.minimumSizeHint().width(), 400);
        EXPECT_LE(window.minimumSizeHint().height(), 600);
    }
}

TEST(PaneWindow, TellsOfEveryActivationButTheOneOfItsFirstShowing)
{
    PaneRecord record;
    const int &returns = record.returns;
    PaneWindow window;
    window.setPane(loadedPane(record));
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

TEST(PaneWindow, ClosesWhenThePaneAllowsIt)
{
    PaneRecord record;
    PaneWindow window;
    window.setPane(loadedPane(record));
    window.show();
    EXPECT_FALSE(window.close());
    EXPECT_FALSE(window.close()) << "while the pane thinks about it";
    ASSERT_EQ(record.questions.size(), 1);
    record.questions.takeFirst()(false);
    QCoreApplication::processEvents();
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(window.close());
    ASSERT_EQ(record.questions.size(), 1);
    record.questions.takeFirst()(true);
    QCoreApplication::processEvents();
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(record.ends, 0);

    window.show();
    window.prepareForEnd();
    EXPECT_EQ(record.ends, 1);
    EXPECT_TRUE(window.close());
    EXPECT_TRUE(record.questions.isEmpty()) << "nobody is asked at the end";
}

#include "RealSheet.h"

#include "desktop/TestBus.h"
#include "hotkey/LiWindow.h"

#include <QApplication>
#include <QFile>
#include <QPushButton>
#include <QSignalSpy>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

void RealSheet::SetUp()
{
    home.makeFolder(u"~/Library/Preferences"_s);
}

void RealSheet::TearDown()
{
    pane.reset();
    view.reset();
}

void RealSheet::showPane()
{
    const auto bundle = foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE));
    ASSERT_TRUE(bundle);
    desktop = std::make_unique<pane::PaneDesktop>(
        ui::PaneContext{bundle->path(), home.home(), home.root(), icon});
    pane =
        std::make_unique<pane::TarnwellPref>(desktop->ports(), desktop->identityCache(), *bundle);
    QString error;
    view.reset(pane->loadMainView(&error));
    ASSERT_TRUE(view) << qPrintable(error);
    pane->mainViewDidLoad();
    view->show();
}

void RealSheet::openSheet()
{
    pane->setMenuAccHKButton()->click();
    ASSERT_TRUE(waitUntil([this] {
        const QWindow *const window = pane->hotkeySheet()->windowHandle();
        return window && window->isExposed();
    }));
    // Under X11 there is no window manager that would give it the focus.
    pane->hotkeySheet()->activateWindow();
    ASSERT_TRUE(waitUntil([this] { return QApplication::activeWindow() == pane->hotkeySheet(); }));
}

void RealSheet::waitForVerdictAfter(const std::function<void()> &press)
{
    QSignalSpy accepted(pane->hotkeySheet(), &hotkey::LiWindow::keyAccepted);
    QSignalSpy refused(pane->hotkeySheet(), &hotkey::LiWindow::keyRefused);
    press();
    ASSERT_TRUE(waitUntil([&] { return accepted.count() + refused.count() > 0; }));
}

void RealSheet::waitForEndAfter(const std::function<void()> &press)
{
    press();
    ASSERT_TRUE(waitUntil([this] { return !pane->hotkeySheet()->isVisible(); }));
    view->activateWindow();
    ASSERT_TRUE(waitUntil([this] { return QApplication::activeWindow() == view.get(); }));
}

void RealSheet::expectStored(int keyCode, quint32 modifiers) const
{
    QFile file(home.path(u"~/Library/Preferences/com.varnit.tarnwell.plist"_s));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const plist::Dictionary domain = plist::read(file.readAll()).toDictionary();
    EXPECT_EQ(domain.value(u"MenuAccKeyCode"_s), plist::Value(keyCode));
    EXPECT_EQ(domain.value(u"MenuAccMods"_s), plist::Value(qint64{modifiers}));
}

} // namespace tarnwell::tests

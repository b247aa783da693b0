// What is odd about the classes of the sheet, and is to stay so.

#include "desktop/CapturedLog.h"
#include "fakes/FakeKeyboardLayouts.h"
#include "fakes/FakeWindowServer.h"
#include "hotkey/LiTextField.h"
#include "hotkey/LiTextFieldCell.h"
#include "hotkey/LiWindow.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace tarnwell::hotkey {
namespace {

class Pane final : public HotKeyPane
{
public:
    Pane(LiTextField *field, const ports::KeyboardLayouts &layouts)
        : m_field(field)
        , m_layouts(layouts)
    {}

    LiTextField *hotKeyField() const override { return m_field; }
    const ports::KeyboardLayouts &keyboardLayouts() const override { return m_layouts; }
    ports::WindowServer &windowServer() const override { return m_windowServer; }

private:
    LiTextField *m_field;
    const ports::KeyboardLayouts &m_layouts;
    mutable fakes::FakeWindowServer m_windowServer;
};

TEST(LiWindow, SharesThePaneOrBorrowsIt)
{
    fakes::FakeKeyboardLayouts keyboard;
    auto shared = std::make_shared<Pane>(nullptr, keyboard.port());
    const std::weak_ptr<Pane> watched = shared;
    Pane borrowed(nullptr, keyboard.port());
    {
        LiWindow window;
        EXPECT_FALSE(window.performKeyEquivalent({0x2E, controlFlag})) << "no pane yet";
        window.setPrefpane(shared);
        shared.reset();
        EXPECT_FALSE(watched.expired()) << "the window keeps it";
        EXPECT_EQ(window.prefPane(), watched.lock().get());
        window.setPrefPane(&borrowed);
        EXPECT_TRUE(watched.expired());
        EXPECT_EQ(window.prefPane(), &borrowed);
    }
    // The window's end leaves it alone.
}

TEST(LiTextFieldCell, UsesTheEditorOfEveryField)
{
    QLineEdit control;
    QFont font = control.font();
    font.setPointSize(font.pointSize() + 7);
    control.setFont(font);
    QLineEdit editor;
    LiTextFieldCell cell(control);
    const auto widgets = QApplication::allWidgets().size();
    const tests::CapturedLog log; // it greets
    EXPECT_EQ(cell.setUpFieldEditorAttributes(&editor), &editor);
    EXPECT_EQ(editor.font().pointSize(), font.pointSize());
    EXPECT_EQ(QApplication::allWidgets().size(), widgets) << "its own editor is gone again";
    EXPECT_EQ(cell.setUpFieldEditorAttributes(nullptr), nullptr);
}

} // namespace
} // namespace tarnwell::hotkey

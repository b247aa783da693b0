#pragma once

#include "fakes/FakeHostApplication.h"
#include "foundation/plist/PropertyList.h"
#include "pane/PaneDesktop.h"
#include "pane/TarnwellPref.h"
#include "support/TemporaryHome.h"

#include <QWidget>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace tarnwell::tests {

/// The pane on a real display with a home of its own, and its hot-key sheet under real keys.
class RealSheet : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    void showPane();

    /// Opens the sheet and waits until it has the keyboard.
    void openSheet();
    /// Does something, and waits until the sheet has decided about a key.
    void waitForVerdictAfter(const std::function<void()> &press);
    /// Does something that ends the sheet, and waits until the window below is back.
    void waitForEndAfter(const std::function<void()> &press);

    void expectStored(int keyCode, quint32 modifiers) const;

    TemporaryHome home;
    fakes::FakeHostApplication icon;
    std::unique_ptr<pane::PaneDesktop> desktop;
    std::unique_ptr<QWidget> view;
    std::unique_ptr<pane::TarnwellPref> pane;
};

} // namespace tarnwell::tests

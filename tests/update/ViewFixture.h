#pragma once

#include "desktop/CapturedLog.h"
#include "support/PaneFixture.h"
#include "support/TemporaryHome.h"
#include "update/QXVCUpdateViewController_V102.h"

#include <QComboBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarnwell::tests {

/// The update view in a window of a test, on a home with the plug-in in it.
class ViewFixture : public PaneFixture
{
protected:
    void SetUp() override
    {
        home = fakes::FakeHome(disk.home(), disk.root());
        writePlugin(QStringLiteral("~/Library/Hullforges/Tarnwell.zok"));
        home.addApplication(updaterPath(), QStringLiteral("com.varnit.updater"));
        QVBoxLayout *layout = new QVBoxLayout(&window);
        layout->addWidget(placeholder = new QWidget);
    }

    void writePlugin(const QString &name, const QString &version = QStringLiteral("1.0"))
    {
        disk.writeInfo(name + QStringLiteral("/Contents/Info.plist"),
                       {{QStringLiteral("CFBundleName"), QStringLiteral("Tarnwell")},
                        {QStringLiteral("CFBundleShortVersionString"), version},
                        {QStringLiteral("ZOKModuleID"), QStringLiteral("com.varnit.tarnwell")}});
        disk.makeFolder(name + QStringLiteral("/Contents/Resources/Varnit Updater.app"));
    }

    QString pluginPath() const
    {
        return disk.path(QStringLiteral("~/Library/Hullforges/Tarnwell.zok"));
    }
    QString updaterPath() const
    {
        return pluginPath() + QStringLiteral("/Contents/Resources/Varnit Updater.app");
    }

    QString lockPath() const
    {
        return disk.path(QStringLiteral("/tmp/com.varnit.tarnwell.updater.lock"));
    }

    update::UpdateViewServices services()
    {
        return {desktop(), *foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE)), state};
    }

    /// As the pane makes it.
    void openView()
    {
        controller = update::QXVCUpdateViewController_V102::initWithSacrificialView(
            services(), placeholder, std::nullopt, prefs::pluginDomain);
        ASSERT_TRUE(controller);
        window.show();
    }

    /// A view that has nothing to do by itself.
    void openIdleView()
    {
        storeLastCheck(60.0);
        openView();
    }
    void storeLastCheck(double secondsAgo)
    {
        store(QStringLiteral("SULastCheckDate"), plist::Date{clock.absoluteTime() - secondsAgo});
    }

    bool isIdle() const
    {
        return controller->checkNow()->property("tag").toInt() == 0 &&
               controller->checkNow()->isEnabled() &&
               controller->checkNow()->text() == controller->oldCheckNowTitle() &&
               controller->progessBar()->isHidden();
    }
    bool isChecking() const
    {
        return controller->checkNow()->property("tag").toInt() == 1 &&
               controller->checkNow()->isEnabled() &&
               controller->checkNow()->text() == QLatin1StringView("Cancel") &&
               !controller->progessBar()->isHidden() && controller->progessBar()->maximum() == 0;
    }
    QString status() const { return controller->lastStatus()->text(); }

    void post(const QString &name, const plist::Value &userInfo = {},
              const QString &object = QString(prefs::pluginDomain))
    {
        distributedCenter.control().deliver(
            {QStringLiteral("com.varnit.updater.") + name, object, userInfo});
    }

    TemporaryHome disk;
    update::UpdateProcessState state;
    QWidget window;
    QWidget *placeholder = nullptr; ///< a child of the window
    std::unique_ptr<update::QXVCUpdateViewController_V102> controller;
    CapturedLog log;
};

} // namespace tarnwell::tests

// The programs of a user with a home of their own, opened the way the rest of the desktop opens
// them. GIO reads the environment once, so this is a program of its own.

#include "desktop/ApplicationRegistry.h"
#include "desktop/DesktopWorkspace.h"
#include "support/ArgumentReport.h"
#include "support/TemporaryHome.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

namespace tarnwell::desktop {
namespace {

using namespace Qt::StringLiterals;
using tests::ArgumentReport;
using tests::TemporaryHome;

const TemporaryHome *home = nullptr;

class OpeningThroughDesktop : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        // Before GIO looks around first: later on it hears of changes when it pleases.
        install(u"browser"_s, "%u\nMimeType=x-scheme-handler/https;\n");
        home->write(u"~/.config/mimeapps.list"_s,
                    "[Default Applications]\nx-scheme-handler/https=browser.desktop\n");
    }

    /// Installs a program with a desktop entry; its arguments come through the report.
    static QString install(const QString &name, const QByteArray &lines)
    {
        const QString program =
            home->write(u"~/bin/"_s + name, ArgumentReport(*home, name).script(), true);
        return home->write(u"~/.local/share/applications/"_s + name + ".desktop"_L1,
                           "[Desktop Entry]\nType=Application\nName=Pens\nExec=\"" +
                               program.toUtf8() + "\" " + lines);
    }

    Places places = Places::ofThisUser();
    BundleCache bundles;
    ApplicationRegistry registry{places, bundles};
    DesktopWorkspace workspace{places};
};

TEST_F(OpeningThroughDesktop, FindsAndStartsADesktopEntry)
{
    ASSERT_TRUE(places.areReal());
    const QString entry = install(u"pens"_s, "--open %f\n");
    ASSERT_EQ(registry.applicationForIdentifier(u"pens"_s), entry);
    const QString document = home->write(u"~/my letter.txt"_s, "x");
    ASSERT_EQ(registry.openApplication(entry, document), 0);
    EXPECT_EQ(ArgumentReport(*home, u"pens"_s).read(), "2|--open|" + document.toUtf8() + '|');
}

TEST_F(OpeningThroughDesktop, ReportsAnEntryWhoseProgramIsGone)
{
    const QString entry = install(u"gone"_s, "%f\n");
    home->remove(u"~/bin/gone"_s);
    EXPECT_EQ(registry.openApplication(entry, {}), -10810);
}

TEST_F(OpeningThroughDesktop, OpensAnAddressWithItsDefaultApplication)
{
    ASSERT_TRUE(workspace.openUrl(QUrl(u"https://www.varnit.example/a?b=c%20d"_s)));
    EXPECT_EQ(ArgumentReport(*home, u"browser"_s).read(),
              "1|https://www.varnit.example/a?b=c%20d|");
}

} // namespace
} // namespace tarnwell::desktop

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    const tarnwell::tests::TemporaryHome temporaryHome;
    tarnwell::desktop::home = &temporaryHome;
    qputenv("HOME", QFile::encodeName(temporaryHome.home()));
    for (const char *variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "DBUS_SESSION_BUS_ADDRESS"})
        qunsetenv(variable);
    qputenv("XDG_DATA_DIRS", QFile::encodeName(temporaryHome.path(QStringLiteral("/usr/share"))));
    qputenv("XDG_CONFIG_DIRS", QFile::encodeName(temporaryHome.path(QStringLiteral("/etc/xdg"))));
    QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

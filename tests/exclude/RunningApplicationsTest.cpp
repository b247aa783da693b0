#include "desktop/ProcRunningApplications.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

using desktop::RunningProcess;

TEST(RunningApplications, AreNamedByTheirUnits)
{
    const struct
    {
        const char *cgroup;
        QString identifier;
    } rows[] = {
        {"0::/user.slice/app.slice/app-gnome-org.example.Pens-1234.scope", u"org.example.Pens"_s},
        {"0::/a/app-flatpak-org.example.Pens\\x2dWriter-7.scope", u"org.example.Pens-Writer"_s},
        {"0::/a/app-pens@0123abcd.service", u"pens"_s},
        {"0::/a/app-", QString()},
        {"0::/a/app-gnome-x\\xZZ\\x-1.scope", u"x\\xZZ\\x"_s},
        {"", QString()},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.cgroup);
        EXPECT_EQ(desktop::applicationIdentifierOfCgroup(QString::fromLatin1(row.cgroup)),
                  row.identifier);
    }
}

TEST(RunningApplications, AreToldApartByProgramAndArguments)
{
    const desktop::ApplicationProgram writer{
        u"/apps/writer.desktop"_s, u"org.example.Writer"_s, u"/usr/bin/office"_s, {u"--writer"_s}};
    const QString office = u"/usr/bin/office"_s;
    const struct
    {
        const char *name;
        RunningProcess process;
        bool runs;
    } rows[] = {
        {"its program", {office, {}, {u"office"_s, u"--writer"_s, u"a.txt"_s}, {}, {}}, true},
        {"the program for another entry", {office, {}, {u"office"_s, u"--calc"_s}, {}, {}}, false},
        {"a script",
         {u"/usr/bin/python3"_s, office, {u"python3"_s, office, u"--writer"_s}, {}, {}},
         true},
        {"its unit", {u"/usr/bin/soffice"_s, {}, {}, u"org.example.writer"_s, {}}, true},
        {"its entry", {u"/usr/bin/soffice"_s, {}, {}, {}, u"/apps/writer.desktop"_s}, true},
        {"another program", {u"/usr/bin/pens"_s, {}, {u"pens"_s, u"--writer"_s}, {}, {}}, false},
        {"nothing known", {}, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(desktop::isProcessOf(row.process, writer), row.runs);
    }
    EXPECT_FALSE(desktop::isProcessOf({}, {u"/apps/gone.desktop"_s, {}, {}, {}}));
}

TEST(RunningApplications, AreFoundInTheProcessFiles)
{
    TemporaryHome disk;
    const QString pens = disk.makeApplication(u"/Applications/Pens.app"_s, u"pens"_s);
    const QString inks = disk.makeApplication(u"/Applications/Inks.app"_s, u"inks"_s);
    const QString program = pens + u"/Contents/Linux/run"_s;
    disk.makeFolder(u"/proc/77"_s);
    ASSERT_TRUE(QFile::link(program, disk.path(u"/proc/77/exe"_s)));
    disk.write(u"/proc/77/cmdline"_s, QFile::encodeName(program) + '\0');
    disk.makeFolder(u"/proc/78"_s); // it ended while it was looked at
    disk.write(u"/proc/notanumber/cmdline"_s, QFile::encodeName(inks));
    const QString entry =
        disk.write(u"/usr/share/applications/nibs.desktop"_s,
                   "[Desktop Entry]\nType=Application\nName=Nibs\nExec=env A=b nibs\n");
    disk.write(u"/proc/79/environ"_s, "GIO_LAUNCHED_DESKTOP_FILE=" + QFile::encodeName(entry) +
                                          '\0' + "GIO_LAUNCHED_DESKTOP_FILE_PID=79");
    disk.write(u"/proc/80/environ"_s, "GIO_LAUNCHED_DESKTOP_FILE=" + QFile::encodeName(inks) +
                                          '\0' + "GIO_LAUNCHED_DESKTOP_FILE_PID=79");

    const desktop::BundleCache bundles;
    const desktop::ProcRunningApplications running(bundles, disk.path(u"/proc"_s));
    EXPECT_EQ(running.running({{pens, u"pens"_s, {}},
                               {inks, u"inks"_s, {}},
                               {entry, u"nibs"_s, {}},
                               {u"/gone.app"_s, {}, {}}}),
              (QSet<QString>{pens, entry}));
    EXPECT_TRUE(desktop::ProcRunningApplications(bundles, disk.path(u"/none"_s))
                    .running({{pens, u"pens"_s, {}}})
                    .isEmpty());
}

} // namespace tarnwell::tests

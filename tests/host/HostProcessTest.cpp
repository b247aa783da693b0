// The host as its user meets it: a process with a command line, what it prints, what it draws, and
// how it ends.

#include "desktop/SilentBus.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

struct HostRun
{
    int status = -1;
    bool crashed = true;
    QString output;
    QString errors;
};

/// A folder with a pane bundle in it, and runs of the host on that bundle.
class Host
{
public:
    void writeInfo(const QString &principalClass, const QString &executable = u"Pane.so"_s)
    {
        QString entries;
        if (!principalClass.isEmpty())
            entries += u"<key>NSPrincipalClass</key><string>%1</string>"_s.arg(principalClass);
        if (!executable.isEmpty())
            entries += u"<key>CFBundleExecutable</key><string>%1</string>"_s.arg(executable);
        write(u"Info.plist"_s,
              u"<plist version=\"1.0\"><dict><key>CFBundleName</key><string>Fake</string>"_s
                      .toUtf8() +
                  entries.toUtf8() + "</dict></plist>");
    }

    void write(const QString &name, const QByteArray &bytes)
    {
        const QString path = contents() + name;
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    void putExecutable(const QString &name)
    {
        QDir().mkpath(contents() + u"Linux"_s);
        ASSERT_TRUE(QFile::copy(qEnvironmentVariable("FAKE_PANES") + u'/' + name,
                                contents() + u"Linux/Pane.so"_s));
    }

    void putInterface()
    {
        QDir().mkpath(contents() + u"Resources"_s);
        ASSERT_TRUE(QFile::copy(qEnvironmentVariable("INTERFACE_FILES") + u"/Main.ui"_s,
                                contents() + u"Resources/Main.ui"_s));
    }

    /// An environment's changed variables; a null value takes one away.
    using Variables = QList<std::pair<QString, QString>>;

    HostRun run(const QStringList &further = {}, const Variables &changes = {},
                const std::function<void()> &prepareChild = {}) const
    {
        QProcess process;
        if (prepareChild)
            process.setChildProcessModifier(prepareChild);
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"DISPLAY"_s);
        environment.remove(u"WAYLAND_DISPLAY"_s);
        for (const auto &[name, value] : changes) {
            environment.remove(name);
            if (!value.isNull())
                environment.insert(name, value);
        }
        process.setProcessEnvironment(environment);
        process.start(qEnvironmentVariable("TARNWELL_SETTINGS"),
                      QStringList{u"--pane"_s, bundle()} + further);
        process.waitForFinished(-1);
        return {process.exitCode(), process.exitStatus() != QProcess::NormalExit,
                QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    HostRun runShots(const QStringList &further = {}) const
    {
        return run(QStringList{u"--shots"_s, shots()} + further);
    }

    QString folder() const { return m_folder.path(); }
    QString bundle() const { return m_folder.filePath(u"Fake.prefPane"_s); }
    QString shots() const { return m_folder.filePath(u"shots"_s); }
    QStringList shotNames() const { return QDir(shots()).entryList(QDir::Files, QDir::Name); }

private:
    QString contents() const { return bundle() + u"/Contents/"_s; }

    QTemporaryDir m_folder;
};

QStringList steps(const QString &output)
{
    QStringList result;
    const auto lines = output.split(u'\n');
    for (const QString &line : lines) {
        if (line.startsWith(u"pane: "_s))
            result.append(line.mid(6));
    }
    return result;
}

} // namespace

TEST(HostProcess, TakesAPaneThroughItsLife)
{
    Host host;
    host.writeInfo(u"Good"_s);
    host.putExecutable(u"right_pane.so"_s);
    const HostRun run = host.runShots({u"--home"_s, u"/some/home"_s, u"--root"_s, u"/some/root"_s});
    EXPECT_EQ(run.status, 0) << qPrintable(run.errors);
    EXPECT_EQ(steps(run.output),
              (QStringList{u"loaded"_s, u"mainViewDidLoad"_s, u"willSelect, hidden"_s,
                           u"willUnselect"_s, u"destroyed before its view"_s}));
    EXPECT_TRUE(run.output.contains(u"home /some/home\nroot /some/root"_s));
    EXPECT_EQ(host.shotNames(), (QStringList{u"01-page-dark.png"_s, u"01-page-light.png"_s}));
}

TEST(HostProcess, DrawsEveryPageInLightAndDark)
{
    Host host;
    host.writeInfo(u"Interface"_s);
    host.putExecutable(u"right_pane.so"_s);
    host.putInterface();
    const HostRun run = host.runShots();
    EXPECT_EQ(run.status, 0) << qPrintable(run.errors);
    EXPECT_EQ(host.shotNames(),
              (QStringList{u"01-shortcuts-dark.png"_s, u"01-shortcuts-light.png"_s,
                           u"02-exclude-list-dark.png"_s, u"02-exclude-list-light.png"_s,
                           u"03-effects-dark.png"_s, u"03-effects-light.png"_s,
                           u"04-menu-accelerator-dark.png"_s, u"04-menu-accelerator-light.png"_s,
                           u"05-updates-about-dark.png"_s, u"05-updates-about-light.png"_s}));
    const QImage dark(host.shots() + u"/01-shortcuts-dark.png"_s);
    const QImage light(host.shots() + u"/01-shortcuts-light.png"_s);
    ASSERT_FALSE(dark.isNull() || light.isNull());
    EXPECT_LT(dark.pixelColor(dark.width() / 2, dark.height() / 2).lightness(), 64);
    EXPECT_GT(light.pixelColor(light.width() / 2, light.height() / 2).lightness(), 192);
    EXPECT_TRUE(run.output.contains(host.shots()));
}

TEST(HostProcess, ShowsWhyAPaneCannotBeShown)
{
    struct Row
    {
        const char *name;
        QString principalClass; ///< no Info.plist when null
        QString executable;     ///< a fake pane's file, or "text" for none that could run
        QString message;        ///< part of what is printed
    };
    const Row rows[] = {
        {"no description", {}, u"right_pane.so"_s, u"or its description is damaged"_s},
        {"no executable", u"Good"_s, {}, u"The pane’s program is missing"_s},
        {"text as executable", u"Good"_s, u"text"_s, u"damaged, or no program at all"_s},
        {"older interface", u"Good"_s, u"older_pane.so"_s,
         u"its interface is number 1, this program’s is number 2"_s},
        {"other plug-in", u"Good"_s, u"other_plugin.so"_s, u"a plug-in of another kind"_s},
        {"no class named", u""_s, u"right_pane.so"_s, u"does not say which class"_s},
        {"no such class", u"Absent"_s, u"right_pane.so"_s, u"lacks the class “Absent”"_s},
        {"damaged interface file", u"Viewless"_s, u"right_pane.so"_s,
         u"Main.ui cannot be read: it is damaged"_s},
        {"throws when made", u"ThrowingInConstructor"_s, u"right_pane.so"_s,
         u"Exception: ThrowingInConstructor"_s},
        {"throws while loading", u"ThrowingInLoadMainView"_s, u"right_pane.so"_s,
         u"Exception: ThrowingInLoadMainView"_s},
        {"throws when loaded", u"ThrowingInMainViewDidLoad"_s, u"right_pane.so"_s,
         u"Exception: ThrowingInMainViewDidLoad"_s},
        {"throws when selected", u"ThrowingInWillSelect"_s, u"right_pane.so"_s,
         u"Exception: ThrowingInWillSelect"_s},
        {"throws from an event", u"ThrowingLater"_s, u"right_pane.so"_s, u"Exception: later"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Host host;
        if (!row.principalClass.isNull())
            host.writeInfo(row.principalClass);
        if (row.executable == "text"_L1)
            host.write(u"Linux/Pane.so"_s, "This is no program.\n");
        else if (!row.executable.isEmpty())
            host.putExecutable(row.executable);
        const HostRun run = host.runShots();
        EXPECT_FALSE(run.crashed);
        EXPECT_EQ(run.status, 1);
        EXPECT_TRUE(run.errors.contains(row.message)) << qPrintable(run.errors);
        EXPECT_EQ(host.shotNames(), (QStringList{u"01-error-dark.png"_s, u"01-error-light.png"_s}));
    }
}

TEST(HostProcess, SaysThatThereIsNoPane)
{
    const Host host;
    const HostRun run = host.runShots();
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.errors.contains(u"There is no settings pane where one should be."_s));
    EXPECT_TRUE(run.errors.contains(host.bundle()));
}

TEST(HostProcess, RunsNothingOfAPaneOfAnotherInterface)
{
    for (const QString &executable : {u"older_pane.so"_s, u"other_plugin.so"_s}) {
        Host host;
        host.writeInfo(u"Good"_s);
        host.putExecutable(executable);
        EXPECT_EQ(steps(host.runShots().output), QStringList()) << qPrintable(executable);
    }
}

TEST(HostProcess, LoadsOnlyWhatRootAloneCanChange)
{
    if (::geteuid() != 0) {
        Host host;
        host.writeInfo(u"Good"_s);
        host.putExecutable(u"right_pane.so"_s);
        EXPECT_EQ(host.runShots({u"--home"_s, u"/"_s}).status, 1) << "that is root's home";
        EXPECT_EQ(host.runShots({u"--home"_s, host.folder()}).status, 0);
        GTEST_SKIP() << "the rest is for root alone";
    }
    const QString program = u"/Fake.prefPane/Contents/Linux/Pane.so"_s;
    struct Row
    {
        QString item; ///< in the host's folder
        mode_t mode;
        uid_t owner;
        QString message; ///< part of what is printed; empty for a pane that loads
    };
    const Row rows[] = {
        {{}, 01777, 0, {}},
        {{}, 0777, 0, u"Others than root can write the folder"_s},
        {{}, 0755, 4711, u"belongs to the user number 4711, and not to root"_s},
        {u"/Fake.prefPane"_s, 01777, 0, u"Others than root can write the folder"_s},
        {program, 0664, 0, u"Others than root can write the file"_s},
        {u"/target"_s, 0644, 4711, u"target” belongs to the user number 4711"_s},
        {u"/target"_s, 0644, 0, {}},
    };
    for (const Row &row : rows) {
        Host host;
        host.writeInfo(u"Good"_s);
        host.putExecutable(u"right_pane.so"_s);
        if (row.item == "/target"_L1) {
            QFile::rename(host.folder() + program, host.folder() + row.item);
            QFile::link(host.folder() + row.item, host.folder() + program);
        }
        const QByteArray item = QFile::encodeName(host.folder() + row.item);
        ASSERT_TRUE(::chmod(item.constData(), row.mode) == 0 &&
                    ::chown(item.constData(), row.owner, 0) == 0);
        const HostRun run = host.runShots();
        EXPECT_EQ(run.status, row.message.isEmpty() ? 0 : 1) << qPrintable(run.errors);
        EXPECT_TRUE(run.errors.contains(row.message)) << qPrintable(run.errors);
        EXPECT_EQ(steps(run.output).isEmpty(), !row.message.isEmpty());
    }
}

TEST(HostProcess, WorksWithoutADisplay)
{
    Host host;
    host.writeInfo(u"Good"_s);
    host.putExecutable(u"right_pane.so"_s);
    const QString platform = u"QT_QPA_PLATFORM"_s;
    const std::pair<QString, QString> deadX{u"DISPLAY"_s, u":60321"_s};
    const std::pair<QString, QString> deadWayland{u"WAYLAND_DISPLAY"_s, u"wayland-6"_s};
    const std::pair<QString, QString> noFolder{u"XDG_RUNTIME_DIR"_s, {}};
    const QStringList drawing{u"--shots"_s, host.shots()};
    const QStringList forX{u"-platform"_s, u"xcb"_s};
    const QString none = u"There is no display to show a window on."_s;
    struct Row
    {
        const char *name;
        QStringList arguments;
        Host::Variables changes; ///< of an environment without any platform
        int status;
        QString error; ///< what is printed first; with status 1, in the only line
    };
    const Row rows[] = {
        {"help", {u"--help"_s}, {deadX, deadWayland}, 0, {}},
        {"version", {u"--version"_s}, {deadX, {platform, u"xcb"_s}}, 0, {}},
        {"a mistake", {u"--shot"_s}, {deadX}, 2, u"--shot is not an option"_s},
        {"pictures, no display", drawing, {}, 0, {}},
        {"pictures, dead displays", drawing, {deadX, deadWayland}, 0, {}},
        {"pictures, a platform", drawing, {deadX, {platform, u"xcb"_s}}, 0, {}},
        {"no display", {}, {}, 1, none},
        {"no display of a platform", {}, {{platform, u"xcb;wayland"_s}}, 1, none},
        {"a dead X server", {}, {deadX}, 1, u"The display “:60321” cannot be opened."_s},
        {"the same by option", forX, {deadX}, 1, u"The display “:60321” cannot be opened."_s},
        {"a dead compositor", {}, {deadWayland}, 1, u"The display “wayland-6” cannot"_s},
        {"one in no folder", {}, {deadWayland, noFolder}, 1, u"The display “wayland-6” cannot"_s},
        {"both", {}, {deadX, deadWayland}, 1, u"The displays “wayland-6” and “:60321” cannot"_s},
        {"not even the toolkit's", drawing + QStringList{u"-frob"_s}, {}, 2, u"-frob is not an"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const HostRun run = host.run(row.arguments, Host::Variables{{platform, {}}} + row.changes);
        EXPECT_FALSE(run.crashed);
        EXPECT_EQ(run.status, row.status);
        EXPECT_TRUE(run.errors.startsWith(row.error)) << qPrintable(run.errors);
        EXPECT_TRUE(row.status != 1 || run.errors.count(u'\n') == 1) << qPrintable(run.errors);
    }
}

TEST(HostProcess, TakesTheAccountsHomeWhereNoneIsNamed)
{
    Host host;
    host.writeInfo(u"Good"_s);
    host.putExecutable(u"right_pane.so"_s);
    const passwd *account = ::getpwuid(::getuid());
    if (!account)
        GTEST_SKIP() << "this user has no account";
    const QString home = QFile::decodeName(account->pw_dir);
    for (const QString &named : {QString(), u""_s}) {
        const HostRun run = host.run({u"--shots"_s, host.shots()}, {{u"HOME"_s, named}});
        EXPECT_TRUE(run.output.contains(u"\nhome "_s + home + u'\n')) << qPrintable(run.output);
    }
}

TEST(HostProcess, LetsThePaneStoreBeforeASignalEndsIt)
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(signal);
        Host host;
        host.writeInfo(u"Good"_s);
        host.putExecutable(u"right_pane.so"_s);
        QProcess process;
        process.start(qEnvironmentVariable("TARNWELL_SETTINGS"), {u"--pane"_s, host.bundle()});
        QByteArray said;
        while (!said.contains("willSelect")) {
            ASSERT_TRUE(process.waitForReadyRead(-1));
            said += process.readAllStandardOutput();
        }
        ::kill(pid_t(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished(-1));
        EXPECT_EQ(steps(QString::fromUtf8(process.readAllStandardOutput())),
                  QStringList{u"willEnd"_s});
        EXPECT_EQ(process.exitStatus(), QProcess::CrashExit) << "the signal still ends it";
    }
}

TEST(HostProcess, ReportsPicturesThatCannotBeWritten)
{
    Host host;
    host.writeInfo(u"Good"_s);
    host.putExecutable(u"right_pane.so"_s);
    host.write(u"file"_s, "in the way");
    const HostRun run = host.run({u"--shots"_s, host.bundle() + u"/Contents/file"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.errors.contains(u"Cannot write"_s));
}

TEST(HostProcess, OutlivesWhoeverShouldReadItsLog)
{
    Host host;
    host.writeInfo(u"Talkative"_s);
    host.putExecutable(u"right_pane.so"_s);
    int nobodyReads[2], stalled[2];
    ASSERT_EQ(::pipe2(nobodyReads, O_CLOEXEC), 0);
    ASSERT_EQ(::pipe2(stalled, O_CLOEXEC), 0);
    ::close(nobodyReads[0]);
    const auto errorsTo = [](int descriptor) {
        return [descriptor] { ::dup2(descriptor, STDERR_FILENO); };
    };
    struct Row
    {
        const char *name;
        std::function<void()> prepareChild;
    };
    const Row rows[] = {
        {"nobody reads", errorsTo(nobodyReads[1])},
        {"a reader that stalls", errorsTo(stalled[1])},
        {"a full disk", [] { ::dup2(::open("/dev/full", O_WRONLY), STDERR_FILENO); }},
        {"closed", [] { ::close(STDERR_FILENO); }},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const HostRun run = host.run({u"--shots"_s, host.shots()}, {}, row.prepareChild);
        EXPECT_FALSE(run.crashed);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(host.shotNames().size(), 2);
    }
    for (const int descriptor : {nobodyReads[1], stalled[0], stalled[1]})
        ::close(descriptor);
}

TEST(HostProcess, DoesWithoutABusThatDoesNotAnswer)
{
    Host host;
    host.writeInfo(u"WantingABus"_s);
    host.putExecutable(u"right_pane.so"_s);
    const tarnwell::tests::SilentBus silent;
    ASSERT_TRUE(silent.listens());
    const HostRun run =
        host.run({u"--shots"_s, host.shots()}, {{u"DBUS_SESSION_BUS_ADDRESS"_s, silent.address()}});
    EXPECT_TRUE(run.output.contains(u"pane: no bus\npane: "_s + silent.address()));
    EXPECT_TRUE(run.errors.contains(u"The session bus does not answer"_s));
}

TEST(HostProcess, LogsOneBoundedLineAMessage)
{
    Host host;
    host.writeInfo(u"Talkative"_s);
    host.putExecutable(u"right_pane.so"_s);
    const QStringList lines = host.runShots().errors.split(u'\n');
    EXPECT_TRUE(lines.contains(u"shown as \\nforged: \\u{001B}[2Jname"_s)) << qPrintable(lines[0]);
    for (const QString &line : lines)
        EXPECT_LE(line.size(), 2100);
}

TEST(HostProcess, RefusesACommandLineItDoesNotKnow)
{
    const Host host;
    const HostRun run = host.run({u"--frobnicate"_s});
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.errors.contains(u"--frobnicate is not an option"_s));
}

// Who holds a combination: the desktops' own programs are played on a bus of the test's.

#include "desktop/DesktopGlobalShortcuts.h"
#include "desktop/GlobalShortcutKeys.h"
#include "desktop/SilentBus.h"
#include "desktop/TestBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

/// One entry of KDE's answers.
struct KdeShortcut
{
    QStringList names = QStringList(6); // the signature is made of an empty entry
};
QDBusArgument &operator<<(QDBusArgument &argument, const KdeShortcut &shortcut)
{
    argument.beginStructure();
    for (const QString &name : shortcut.names)
        argument << name;
    argument << QList<int>{1} << QList<int>{};
    argument.endStructure();
    return argument;
}
const QDBusArgument &operator>>(const QDBusArgument &argument, KdeShortcut &)
{
    return argument;
}

} // namespace tarnwell::tests

Q_DECLARE_METATYPE(tarnwell::tests::KdeShortcut)

namespace tarnwell::tests {
namespace {

using desktop::DesktopGlobalShortcuts;
using ports::GlobalShortcutHolder;
using ports::KeyCombination;

const KeyCombination controlAltT{0x11, 8 | 4 | 2, u"T"_s};

// --- names of keys ----------------------------------------------------------------------------

TEST(Accelerators, AreTheCombinationOrNot)
{
    struct Row
    {
        const char *name;
        QString accelerator;
        KeyCombination combination;
        bool isTheSame;
    };
    const Row rows[] = {
        {"letter", u"<Primary><Alt>t"_s, controlAltT, true},
        {"capital letter", u"<Control><Alt>T"_s, controlAltT, true},
        {"other order and case", u"<alt><ctrl>t"_s, controlAltT, true},
        {"other key", u"<Primary><Alt>u"_s, controlAltT, false},
        {"one modifier less", u"<Primary>t"_s, controlAltT, false},
        {"one modifier more", u"<Primary><Alt><Super>t"_s, controlAltT, false},
        {"Super", u"<Super>Left"_s, {0x7B, 0, {}}, true},
        {"Mod4", u"<Mod4>Left"_s, {0x7B, 0, {}}, true},
        {"key with two names", u"<Super>Print"_s, {0x69, 0, {}}, true},
        {"its other name", u"<Super>F13"_s, {0x69, 0, {}}, true},
        {"old name of Page Up", u"<Super>Prior"_s, {0x74, 0, {}}, true},
        {"no modifier", u"F5"_s, {0x60, 8, {}}, true},
        {"Shift", u"<Shift><Super>a"_s, {0x00, 1, u"A"_s}, true},
        {"key above Tab", u"<Super>Above_Tab"_s, {0x32, 0, u"`"_s}, true},
        {"keypad", u"<Super>KP_7"_s, {0x59, 0, u"7"_s}, true},
        {"digit above the letters", u"<Super>7"_s, {0x59, 0, u"7"_s}, false},
        {"accented letter", u"<Super>adiaeresis"_s, {0x27, 0, u"Ä"_s}, true},
        {"punctuation", u"<Super>semicolon"_s, {0x29, 0, u";"_s}, true},
        {"key that types nothing", u"<Super>F17"_s, {0x40, 0, {}}, false},
        {"empty", u""_s, controlAltT, false},
        {"switched off", u"disabled"_s, controlAltT, false},
        {"modifiers alone", u"<Primary><Alt>"_s, controlAltT, false},
        {"open bracket", u"<Primary"_s, controlAltT, false},
        {"unknown modifier", u"<Fancy>t"_s, controlAltT, false},
        {"endless", QString(100000, u'<'), controlAltT, false},
        {"endless name", u"<Super>"_s + QString(100000, u't'), controlAltT, false},
    };
    for (const Row &row : rows)
        EXPECT_EQ(desktop::isAccelerator(row.accelerator, row.combination), row.isTheSame)
            << row.name;
}

TEST(Accelerators, HaveANumberInTheToolkit)
{
    EXPECT_EQ(desktop::toolkitKey(controlAltT), (Qt::CTRL | Qt::ALT | Qt::Key_T).toCombined());
    EXPECT_EQ(desktop::toolkitKey({0x7B, 1, {}}),
              (Qt::META | Qt::SHIFT | Qt::Key_Left).toCombined());
    EXPECT_EQ(desktop::toolkitKey({0x40, 0, {}}), 0);
    EXPECT_EQ(desktop::toolkitKey({0x27, 8, u"SS"_s}), 0);
}

// --- programs on the bus ----------------------------------------------------------------------

/// A program that answers every call of some methods, and keeps what it was asked.
class Program : public QDBusVirtualObject
{
public:
    Program(const QString &address, const QString &service, const QString &path)
        : m_connection(QDBusConnection::connectToBus(address, service))
    {
        m_connection.registerVirtualObject(path, this, QDBusConnection::SingleNode);
        m_connection.registerService(service);
        m_service = service;
    }
    ~Program() override { QDBusConnection::disconnectFromBus(m_service); }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (!answers.contains(message.member()))
            return connection.send(message.createErrorReply(QDBusError::UnknownMethod, u"?"_s));
        questions.append(message);
        return connection.send(message.createReply(answers.value(message.member())));
    }

    QMap<QString, QVariant> answers;
    QList<QDBusMessage> questions;

private:
    QDBusConnection m_connection;
    QString m_service;
};

class GlobalShortcutsOnBus : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(bus.isRunning());
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
        qDBusRegisterMetaType<KdeShortcut>();
        qDBusRegisterMetaType<QList<KdeShortcut>>();
    }
    void TearDown() override { qunsetenv("DBUS_SESSION_BUS_ADDRESS"); }

    /// "action of owner"; "nobody" when nobody does.
    QString ask(const KeyCombination &combination)
    {
        std::optional<std::optional<GlobalShortcutHolder>> answer;
        shortcuts.findHolder(combination, [&](const auto &holder) { answer = holder; });
        EXPECT_FALSE(answer) << "no answer comes before its time";
        EXPECT_TRUE(waitUntil([&] { return answer.has_value(); }));
        if (!answer || !*answer)
            return u"nobody"_s;
        return (*answer)->action + u" of "_s + (*answer)->owner;
    }

    static QVariant kdeAnswer(const QList<QStringList> &entries)
    {
        QList<KdeShortcut> list;
        for (const QStringList &names : entries)
            list.append({names});
        return QVariant::fromValue(list);
    }

    TestBus bus;
    DesktopGlobalShortcuts shortcuts;
};

const QStringList lockSession{u"Lock Session"_s,       u"Sitzung sperren"_s, u"ksmserver"_s,
                              u"Sitzungsverwaltung"_s, u"default"_s,         u"Default"_s};

TEST_F(GlobalShortcutsOnBus, NobodyHoldsAnythingOnAnEmptyBus)
{
    EXPECT_EQ(ask(controlAltT), u"nobody"_s);
    bus.die();
    EXPECT_EQ(ask(controlAltT), u"nobody"_s);
    bus.start();
    EXPECT_EQ(ask(controlAltT), u"nobody"_s);
}

TEST_F(GlobalShortcutsOnBus, NobodyWaitsForABusThatDoesNotAnswer)
{
    const SilentBus silent;
    ASSERT_TRUE(silent.listens());
    qputenv("DBUS_SESSION_BUS_ADDRESS", silent.address().toUtf8());
    EXPECT_EQ(ask(controlAltT), u"nobody"_s);
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
    EXPECT_EQ(ask(controlAltT), u"nobody"_s);
}

TEST_F(GlobalShortcutsOnBus, KdeNamesTheActionAndItsProgram)
{
    Program kde(bus.address(), u"org.kde.kglobalaccel"_s, u"/kglobalaccel"_s);
    kde.answers.insert(u"getGlobalShortcutsByKey"_s, kdeAnswer({lockSession}));
    EXPECT_EQ(ask(controlAltT), u"Sitzung sperren of Sitzungsverwaltung"_s);
    EXPECT_EQ(kde.questions.first().arguments(),
              QVariantList{(Qt::CTRL | Qt::ALT | Qt::Key_T).toCombined()});
    QStringList nameless = lockSession;
    nameless[1].clear();
    nameless[3].clear();
    kde.answers.insert(u"getGlobalShortcutsByKey"_s, kdeAnswer({nameless}));
    EXPECT_EQ(ask(controlAltT), u"Lock Session of ksmserver"_s);
    kde.answers.insert(u"getGlobalShortcutsByKey"_s, kdeAnswer({}));
    EXPECT_EQ(ask(controlAltT), u"nobody"_s);
    kde.answers.insert(u"getGlobalShortcutsByKey"_s, u"of another type"_s);
    EXPECT_EQ(ask(controlAltT), u"nobody"_s);
}

TEST_F(GlobalShortcutsOnBus, LaterVersionsOfKdeAreAskedInTheirWords)
{
    Program kde(bus.address(), u"org.kde.kglobalaccel"_s, u"/kglobalaccel"_s);
    kde.answers.insert(u"globalShortcutsByKey"_s, kdeAnswer({lockSession}));
    EXPECT_EQ(ask(controlAltT), u"Sitzung sperren of Sitzungsverwaltung"_s);
    ASSERT_EQ(kde.questions.size(), 1);
    EXPECT_EQ(kde.questions.first().signature(), u"(ai)(i)"_s);
}

TEST_F(GlobalShortcutsOnBus, XfceNamesCommandsAndWindowActions)
{
    Program xfce(bus.address(), u"org.xfce.Xfconf"_s, u"/org/xfce/Xfconf"_s);
    const QVariantMap properties{
        {u"/commands/custom/<Primary><Alt>t"_s, u"exo-open --launch TerminalEmulator"_s},
        {u"/commands/custom/override"_s, true},
        {u"/commands/default/<Super>r"_s, u"xfce4-appfinder"_s},
        {u"/xfwm4/default/<Alt>F4"_s, u"close_window_key"_s},
        {u"/xfwm4/custom/<Super>Up"_s, u""_s},
        {u"/providers"_s, QStringList{u"xfwm4"_s, u"commands"_s}},
        {u"odd"_s, 1},
    };
    xfce.answers.insert(u"GetAllProperties"_s, properties);
    EXPECT_EQ(ask(controlAltT), u"exo-open --launch TerminalEmulator of "_s);
    EXPECT_EQ(xfce.questions.first().arguments(),
              (QVariantList{u"xfce4-keyboard-shortcuts"_s, u"/"_s}));
    EXPECT_EQ(ask({0x76, 8 | 2, {}}), u"close window of Xfwm4"_s);
    EXPECT_EQ(ask({0x0F, 0, u"R"_s}), u"nobody"_s) << "the user's own replaced the defaults";
    EXPECT_EQ(ask({0x7E, 0, {}}), u"nobody"_s) << "an emptied shortcut";
}

TEST_F(GlobalShortcutsOnBus, ANewQuestionTakesThePlaceOfTheOld)
{
    Program kde(bus.address(), u"org.kde.kglobalaccel"_s, u"/kglobalaccel"_s);
    kde.answers.insert(u"getGlobalShortcutsByKey"_s, kdeAnswer({lockSession}));
    int olderAnswers = 0;
    shortcuts.findHolder({0x00, 0, u"A"_s}, [&](const auto &) { ++olderAnswers; });
    EXPECT_EQ(ask(controlAltT), u"Sitzung sperren of Sitzungsverwaltung"_s);
    EXPECT_EQ(olderAnswers, 0);
}

// --- GNOME's settings -------------------------------------------------------------------------

const char *const gnomeSchemas = R"(<schemalist>
 <schema id="org.gnome.desktop.wm.keybindings" path="/org/gnome/desktop/wm/keybindings/">
  <key name="close" type="as"><default>['&lt;Alt&gt;F4','&lt;Super&gt;q']</default>
   <summary>Close window</summary></key>
  <key name="show-desktop" type="as"><default>['&lt;Primary&gt;&lt;Alt&gt;d']</default></key>
  <key name="number" type="i"><default>3</default></key>
 </schema>
 <schema id="org.gnome.settings-daemon.plugins.media-keys" path="/org/gnome/media-keys/">
  <key name="custom-keybindings" type="as">
   <default>['no path', '/a//b/', '/org/gnome/media-keys/custom0/']</default></key>
  <key name="terminal" type="s"><default>'&lt;Primary&gt;&lt;Alt&gt;t'</default>
   <summary>Launch terminal</summary></key>
 </schema>
 <schema id="org.gnome.settings-daemon.plugins.media-keys.custom-keybinding">
  <key name="name" type="s"><default>'My script'</default></key>
  <key name="command" type="s"><default>'script'</default></key>
  <key name="binding" type="s"><default>'&lt;Super&gt;F9'</default></key>
 </schema>
</schemalist>)";

TEST_F(GlobalShortcutsOnBus, GnomesSettingsAreReadWhereItRuns)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"test.gschema.xml"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(gnomeSchemas);
    file.close();
    ASSERT_EQ(QProcess::execute(u"glib-compile-schemas"_s, {folder.path()}), 0);
    qputenv("GSETTINGS_SCHEMA_DIR", folder.path().toUtf8());

    qputenv("XDG_CURRENT_DESKTOP", "XFCE");
    EXPECT_EQ(ask(controlAltT), u"nobody"_s) << "its settings are there, but it isn't";
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    EXPECT_EQ(ask(controlAltT), u"Launch terminal of "_s);
    EXPECT_EQ(ask({0x0C, 0, u"Q"_s}), u"Close window of "_s);
    EXPECT_EQ(ask({0x02, 8 | 4 | 2, u"D"_s}), u"show desktop of "_s);
    EXPECT_EQ(ask({0x65, 0, {}}), u"My script of "_s);
    EXPECT_EQ(ask({0x00, 0, u"A"_s}), u"nobody"_s);
    bus.die();
    EXPECT_EQ(ask({0x65, 0, {}}), u"My script of "_s) << "no bus is needed for it";
    qunsetenv("XDG_CURRENT_DESKTOP");
}

} // namespace
} // namespace tarnwell::tests

#include "foundation/Bundle.h"
#include "foundation/plist/PropertyList.h"
#include "prefs/PreferenceKeys.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>

#include <functional>

// What the demo promises to show, and the benchmarks count on: if a kind of record were missing,
// nobody would notice that the pane no longer copes with it.

using namespace Qt::StringLiterals;

namespace tarnwell::tests {
namespace {

const QString demoHome = QStringLiteral(TARNWELL_DEMO_HOME);
const QString domainName = u"/Library/Preferences/com.varnit.tarnwell.plist"_s;

plist::Dictionary readDomain(const QString &home)
{
    QFile file(home + domainName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return plist::read(file.readAll()).toDictionary();
}

struct Record
{
    QString application;
    plist::Dictionary group;
    plist::Dictionary item;

    plist::Dictionary original() const { return item.value(u"OriginalKeyCommands").toDictionary(); }
    plist::Dictionary changed() const { return item.value(u"NewKeyCommands").toDictionary(); }
    QString title() const { return item.value(u"MenuItemTitle").toString(); }
    bool hasBoth() const { return !original().isEmpty() && !changed().isEmpty(); }
};

QList<Record> records(const plist::Dictionary &domain)
{
    QList<Record> result;
    for (const auto &[application, groups] : domain.value(u"MenuShortcuts").toDictionary()) {
        for (const plist::Value &group : groups.toArray()) {
            for (const plist::Value &item : group.toDictionary().value(u"Keys").toArray())
                result.append({application, group.toDictionary(), item.toDictionary()});
        }
    }
    return result;
}

bool isCleared(const plist::Dictionary &command)
{
    return command.value(u"kc") == plist::Value(-1) && command.value(u"mod") == plist::Value(0);
}

bool hasScript(const QString &title, QChar::Script script)
{
    return std::any_of(title.begin(), title.end(),
                       [&](QChar character) { return character.script() == script; });
}

bool usesKey(const Record &record, std::initializer_list<int> keyCodes)
{
    return std::any_of(keyCodes.begin(), keyCodes.end(), [&](int code) {
        return record.changed().value(u"kc") == plist::Value(code);
    });
}

struct Kind
{
    const char *name;
    std::function<bool(const Record &)> matches;
};

const Kind kinds[] = {
    {"cleared", [](const Record &r) { return r.hasBoth() && isCleared(r.changed()); }},
    {"had_none", [](const Record &r) { return r.hasBoth() && isCleared(r.original()); }},
    {"no_original", [](const Record &r) { return r.original().isEmpty(); }},
    {"no_new", [](const Record &r) { return r.changed().isEmpty(); }},
    {"unchanged", [](const Record &r) { return r.hasBoth() && r.original() == r.changed(); }},
    {"no_title", [](const Record &r) { return r.hasBoth() && r.title().isEmpty(); }},
    {"no_path", [](const Record &r) { return !r.item.contains(u"MenuPath"); }},
    {"deep_path", [](const Record &r) { return r.item.value(u"MenuPath").toArray().size() > 3; }},
    {"character_only",
     [](const Record &r) { return !r.changed().contains(u"kc") && r.changed().contains(u"cK"); }},
    {"no_modifiers_stored",
     [](const Record &r) { return r.hasBoth() && !r.changed().contains(u"mod"); }},
    {"function_key",
     [](const Record &r) {
         return usesKey(r, {0x7A, 0x63, 0x65});
     }},
    {"arrow",
     [](const Record &r) {
         return usesKey(r, {0x7B, 0x7C, 0x7D, 0x7E});
     }},
    {"cyrillic", [](const Record &r) { return hasScript(r.title(), QChar::Script_Cyrillic); }},
    {"greek", [](const Record &r) { return hasScript(r.title(), QChar::Script_Greek); }},
    {"japanese", [](const Record &r) { return hasScript(r.title(), QChar::Script_Katakana); }},
    {"hebrew", [](const Record &r) { return hasScript(r.title(), QChar::Script_Hebrew); }},
    {"foreign_keys",
     [](const Record &r) {
         return r.group.contains(u"MenuIdentifier") && r.item.contains(u"Tag") &&
                r.changed().contains(u"g");
     }},
};

class DemoKinds : public testing::TestWithParam<Kind>
{};

TEST_P(DemoKinds, AreThere)
{
    const QList<Record> all = records(readDomain(demoHome));
    EXPECT_TRUE(std::any_of(all.begin(), all.end(), GetParam().matches));
}

INSTANTIATE_TEST_SUITE_P(All, DemoKinds, testing::ValuesIn(kinds),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(DemoHome, HoldsEveryKeyAsThePaneReadsIt)
{
    namespace keys = prefs::keys;
    const plist::Dictionary domain = readDomain(demoHome);
    // Of another type, a value would read like an absent one.
    for (const prefs::PreferenceKey &key :
         {keys::disabled, keys::menuAcceleratorEnabled, keys::menuAccKeyCode, keys::menuAccMods,
          keys::menuShortcuts, keys::customSettings, keys::excludeList,
          keys::hidePredefinedExcludeListItems, keys::excludeListNoInternetSync,
          keys::excludeListLastInternetCheck, keys::stopEffects, keys::includeBundledQTZs,
          keys::seQTZStatusList, keys::suCheckForUpdates, keys::suCheckInterval,
          keys::suLastCheckDate, keys::suLastCheckStatus, keys::suLastRunSystemVersion})
        EXPECT_EQ(domain.value(key.name).type(), key.type) << key.name.data();
}

TEST(DemoHome, HoldsSixtyRecordsOfEightApplications)
{
    const plist::Dictionary domain = readDomain(demoHome);
    EXPECT_GE(records(domain).size(), 60);
    EXPECT_GE(domain.value(u"MenuShortcuts").toDictionary().size(), 8);
}

TEST(DemoHome, HasConflictsAndEqualTitles)
{
    QSet<QString> originals, groupsOfTitle, applicationsOfTitle;
    bool conflict = false, equalInTwoGroups = false, equalInTwoApplications = false;
    const QList<Record> all = records(readDomain(demoHome));
    const auto fingerprint = [](const Record &record, const plist::Dictionary &command) {
        return record.application + plist::description(command.value(u"kc")) + u'/' +
               plist::description(command.value(u"mod"));
    };
    for (const Record &record : all) {
        if (!isCleared(record.original()))
            originals.insert(fingerprint(record, record.original()));
        const QString here = record.application + u'/' + record.title();
        equalInTwoGroups |= groupsOfTitle.contains(here);
        equalInTwoApplications |= applicationsOfTitle.contains(record.title());
        groupsOfTitle.insert(here);
        applicationsOfTitle.insert(record.title());
    }
    for (const Record &record : all) {
        conflict |= !(record.original() == record.changed()) &&
                    originals.contains(fingerprint(record, record.changed()));
    }
    EXPECT_TRUE(conflict);
    EXPECT_TRUE(equalInTwoGroups);
    EXPECT_TRUE(equalInTwoApplications);
}

TEST(DemoHome, ApplicationsCanBeIdentified)
{
    QSet<QString> identifiers;
    for (const QString &place : {u"/Applications"_s, u"/.local/share/applications"_s}) {
        const QDir folder(demoHome + place);
        for (const QString &name : folder.entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
            const auto bundle = foundation::Bundle::open(folder.filePath(name));
            ASSERT_TRUE(bundle) << name.toStdString();
            EXPECT_FALSE(bundle->displayName().isEmpty()) << name.toStdString();
            EXPECT_FALSE(bundle->executablePath().isEmpty()) << name.toStdString();
            const QString creator = QString::number(bundle->signature(), 16).toUpper();
            identifiers.insert(bundle->identifier().isEmpty()
                                   ? u"com.unknown.by-creator.0x4150504C.0x"_s +
                                         creator.rightJustified(8, u'0')
                                   : bundle->identifier());
        }
    }
    QStringList missing;
    for (const QString &key : readDomain(demoHome).value(u"MenuShortcuts").toDictionary().keys()) {
        if (!identifiers.contains(key))
            missing.append(key);
    }
    EXPECT_EQ(missing, QStringList{u"example.lostharbour.Driftwood"_s});
}

TEST(DemoHome, PluginIsInstalled)
{
    const auto plugin = foundation::Bundle::open(demoHome + u"/Library/Hullforges/Tarnwell.zok"_s);
    ASSERT_TRUE(plugin);
    EXPECT_EQ(plugin->infoValue(u"ZOKModuleID"_s).toString(), u"com.varnit.tarnwell"_s);
    const QString effect = plugin->resourcePath(u"SillyEffect"_s, u"bundle"_s);
    ASSERT_TRUE(foundation::Bundle::open(effect));
    EXPECT_EQ(foundation::Bundle::open(effect)->identifier(), u"com.varnit.tawl.SillyEffect"_s);
}

TEST(DemoHome, HasCompositionsOfEachOriginWithOneSwitchedOff)
{
    const QString plugin = u"/Library/Hullforges/Tarnwell.zok/Contents/Resources/"
                           "SillyEffect.bundle/Contents/Resources"_s;
    for (const QString &place :
         {u"/Library/Application Support/Varnit/Tarnwell"_s, plugin, u"/Library/Screen Savers"_s}) {
        EXPECT_FALSE(QDir(demoHome + place).entryList({u"*.qtz"_s}, QDir::Files).isEmpty())
            << qPrintable(place);
    }
    const plist::Dictionary choices = readDomain(demoHome).value(u"SEQTZStatusList").toDictionary();
    EXPECT_FALSE(choices.isEmpty());
    for (const auto &[path, isOn] : choices)
        EXPECT_TRUE(QFile::exists(path)) << qPrintable(path);
}

TEST(PluginSimulation, ChangesOneRecordAndKeepsTheRest)
{
    QTemporaryDir home;
    QDir().mkpath(home.filePath(u"Library/Preferences"_s));
    ASSERT_TRUE(QFile::copy(demoHome + domainName, home.path() + domainName));
    const plist::Dictionary before = readDomain(home.path());

    const QString application = u"example.marlow.Copperquill"_s;
    for (const QString &item : {u"File > Print…"_s, u"Edit > Complete"_s}) {
        const int status = QProcess::execute(
            QStringLiteral(TARNWELL_PYTHON),
            {u"-B"_s, QStringLiteral(TARNWELL_SAMPLES "/plugin_sim.py"), u"--home"_s, home.path(),
             u"--quiet"_s, u"set"_s, application, item, u"⌃⌥F4"_s});
        ASSERT_EQ(status, 0);
    }

    const plist::Dictionary after = readDomain(home.path());
    const QList<Record> changed = records(after);
    EXPECT_EQ(changed.size(), records(before).size() + 1);
    EXPECT_EQ(std::count_if(changed.begin(), changed.end(),
                            [&](const Record &record) {
                                return record.application == application &&
                                       record.changed().value(u"kc") == plist::Value(0x76) &&
                                       record.changed().value(u"mod") == plist::Value(0x1800);
                            }),
              2);
    plist::Dictionary restBefore = before, restAfter = after;
    restBefore.remove(u"MenuShortcuts");
    restAfter.remove(u"MenuShortcuts");
    EXPECT_EQ(plist::Value(restAfter), plist::Value(restBefore));
}

} // namespace
} // namespace tarnwell::tests

#include "fakes/FakeFileManager.h"
#include "fakes/FakePreferences.h"
#include "prefs/CFPreferencesWrapper_Tarnwell.h"
#include "prefs/PreferenceKeys.h"
#include "prefs/RecordSorting.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::prefs {

class PreferencesWrapper : public testing::Test
{
protected:
    std::unique_ptr<CFPreferencesWrapper_Tarnwell> wrapper()
    {
        return CFPreferencesWrapper_Tarnwell::preferencesWithApplication(preferences, pluginDomain);
    }
    plist::Value stored(const QString &key)
    {
        return preferences.control().storedValue(key, pluginDomain);
    }

    fakes::FakePreferences preferences;
};

TEST_F(PreferencesWrapper, ReadsEachTypeAndNothingElse)
{
    const plist::Value text(u"12"_s);
    struct Row
    {
        const char *name;
        plist::Value value;
        bool boolean;
        float real;
        qint64 integer;
    };
    const Row rows[] = {
        {"absent", {}, false, 0.0F, 0},
        {"true", true, true, 0.0F, 0},
        {"number", 7, true, 7.0F, 7},
        {"fraction", 2.5, true, 2.5F, 2},
        {"zero", 0, false, 0.0F, 0},
        {"yes", u"Yes"_s, true, 0.0F, 0},
        {"no", u"NO"_s, false, 0.0F, 0},
        {"digits", text, false, 0.0F, 12},
        {"nearly digits", u"12 "_s, false, 0.0F, 0},
        {"dictionary", plist::Dictionary{{u"a"_s, 1}}, false, 0.0F, 0},
        {"array", plist::Array{1}, false, 0.0F, 0},
        {"data", QByteArray("12"), false, 0.0F, 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        preferences.control().setStoredValue(u"k"_s, row.value, pluginDomain);
        const auto prefs = wrapper();
        prefs->synchronize();
        EXPECT_EQ(prefs->boolForKey(u"k"_s), row.boolean);
        EXPECT_EQ(prefs->floatForKey(u"k"_s), row.real);
        EXPECT_EQ(prefs->integerForKey(u"k"_s), row.integer);
        EXPECT_EQ(prefs->keyExist(u"k"_s), !row.value.isNull());
        EXPECT_EQ(prefs->objectForKey(u"k"_s), row.value);
        EXPECT_EQ(prefs->arrayForKey(u"k"_s).has_value(), row.value.isArray());
        EXPECT_EQ(prefs->dictionaryForKey(u"k"_s).has_value(), row.value.isDictionary());
        EXPECT_EQ(prefs->dataForKey(u"k"_s).has_value(), row.value.isData());
        EXPECT_EQ(prefs->stringForKey(u"k"_s).has_value(), row.value.isString());
    }
}

TEST_F(PreferencesWrapper, StringArraysAreAllStrings)
{
    const std::pair<plist::Value, std::optional<QStringList>> rows[] = {
        {plist::Array{}, QStringList()},
        {plist::Array{u"a"_s, u"b"_s}, QStringList({u"a"_s, u"b"_s})},
        {plist::Array{u"a"_s, 1}, std::nullopt},
        {u"a"_s, std::nullopt},
    };
    for (const auto &[value, expected] : rows) {
        preferences.control().setStoredValue(u"k"_s, value, pluginDomain);
        const auto prefs = wrapper();
        prefs->synchronize();
        EXPECT_EQ(prefs->stringArrayForKey(u"k"_s), expected);
    }
}

TEST_F(PreferencesWrapper, WritesAreStoredWhenItGoes)
{
    preferences.control().setStoredValue(u"gone"_s, 1, pluginDomain);
    {
        const auto prefs = wrapper();
        prefs->setBool(true, u"bool"_s);
        prefs->setFloat(0.5F, u"float"_s);
        prefs->setInteger(0x1'8000'0001, u"integer"_s);
        prefs->setObject(u"text"_s, u"object"_s);
        prefs->setObject({}, u"gone"_s);
        EXPECT_TRUE(stored(u"bool"_s).isNull());
    }
    EXPECT_EQ(stored(u"bool"_s), plist::Value(true));
    EXPECT_EQ(stored(u"float"_s), plist::Value(0.5));
    EXPECT_EQ(stored(u"integer"_s), plist::Value(-0x7FFFFFFF)) << "the low 32 bits, signed";
    EXPECT_EQ(stored(u"object"_s), plist::Value(u"text"_s));
    EXPECT_TRUE(stored(u"gone"_s).isNull());
}

TEST_F(PreferencesWrapper, NoDomainNoWrapper)
{
    EXPECT_FALSE(CFPreferencesWrapper_Tarnwell::preferencesWithApplication(preferences, QString()));
}

TEST(RecordSorting, ComparesWithoutRegardToCase)
{
    fakes::FakeHome home;
    home.addApplication(u"/Applications/zeta.app"_s, u"com.example.zeta"_s, u"Alpha"_s);
    const fakes::FakeFileManager files(home);
    const plist::Dictionary byPath{{u"Path"_s, u"/Applications/zeta.app"_s},
                                   {u"DisplayName"_s, u"Zeta"_s}};
    const plist::Dictionary byName{{u"DisplayName"_s, u"beta"_s}};
    EXPECT_LT(displayNameCompare(files, byPath, byName), 0) << "the file's own name counts";
    EXPECT_GT(displayNameCompare(files, byName, byPath), 0);
    EXPECT_EQ(titleCompare(plist::Dictionary{{u"Title"_s, u"ÄPFEL"_s}},
                           plist::Dictionary{{u"Title"_s, u"äpfel"_s}}),
              0);
}

} // namespace tarnwell::prefs

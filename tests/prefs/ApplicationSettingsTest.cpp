#include "prefs/ApplicationSettings.h"
#include "IdentityFixture.h"

namespace tarnwell::prefs {
namespace {

using namespace Qt::StringLiterals;

const QString domain = u"org.example.domain"_s;
const QString key = u"Speed"_s;
const QString customSettings = u"CustomSettings"_s;
const QString pensId = u"org.example.pens"_s;
const ApplicationIdentifier pens(pensId);

class ApplicationSettings : public tests::IdentityFixture
{
protected:
    void store(const plist::Dictionary &settings)
    {
        preferences.control().setStoredValue(customSettings, settings, domain);
    }
    plist::Value stored() { return preferences.control().storedValue(customSettings, domain); }

    bool set(const std::optional<ApplicationIdentifier> &identifier, const plist::Value &value)
    {
        return SetAppSetting(context, preferences, domain, identifier, key, value);
    }
    plist::Value get(const std::optional<ApplicationIdentifier> &identifier)
    {
        return CopyAppSetting(context, preferences, domain, identifier, key);
    }
};

TEST_F(ApplicationSettings, AnApplicationsOwnValueComesBeforeTheGlobalOne)
{
    EXPECT_TRUE(get(pens).isNull());
    preferences.control().setStoredValue(key, 1, domain);
    EXPECT_EQ(get(pens), plist::Value(1));
    store({{pensId, plist::Dictionary{{u"Other"_s, 2}}}});
    EXPECT_EQ(get(pens), plist::Value(1));
    store({{pensId, plist::Dictionary{{key, 3}}}});
    EXPECT_EQ(get(pens), plist::Value(3));
    EXPECT_EQ(get(ApplicationIdentifier::global()), plist::Value(1));
    store({{pensId, u"mistyped"_s}});
    EXPECT_EQ(get(pens), plist::Value(1));
}

TEST_F(ApplicationSettings, AMissingIdentifierIsThatOfThisProcess)
{
    EXPECT_TRUE(set(std::nullopt, 5));
    const plist::Value own = stored().toDictionary().value(u"org.example.settings"_s);
    EXPECT_EQ(own.toDictionary().value(key), plist::Value(5));
    EXPECT_EQ(get(std::nullopt), plist::Value(5));
}

TEST_F(ApplicationSettings, AStoredSettingRemembersNameAndPlaceOfAKnownApplication)
{
    const foundation::Bundle bundle = makeBundle(u"Pens.app"_s, pensId);
    store({{pensId, plist::Dictionary{{u"Other"_s, 2}}}, {u"x"_s, u"kept"_s}});
    EXPECT_TRUE(set(pens, 5));
    EXPECT_EQ(stored(),
              plist::Value(plist::Dictionary{{pensId, plist::Dictionary{{u"Other"_s, 2}, {key, 5}}},
                                             {u"x"_s, u"kept"_s}}));

    idOf(bundle);
    EXPECT_TRUE(set(pens, {}));
    EXPECT_EQ(stored().toDictionary().value(pensId),
              plist::Value(plist::Dictionary{
                  {u"Other"_s, 2},
                  {u"_ApplicationName"_s, u"The Pens.app"_s},
                  {u"_AliasRecord"_s, bookmarks.bookmarkForPath(bundle.path())}}));
}

TEST_F(ApplicationSettings, TheGlobalLevelIsTheTopOfTheDomain)
{
    EXPECT_TRUE(set(ApplicationIdentifier::global(), 5));
    EXPECT_EQ(preferences.control().storedDomain(domain),
              (fakes::FakePreferencesControl::Domain{{key, 5}}));
    EXPECT_TRUE(set(ApplicationIdentifier::global(), {}));
    EXPECT_TRUE(preferences.control().storedDomain(domain).isEmpty());
}

TEST_F(ApplicationSettings, ChangesOfOthersAreSeenBeforeWriting)
{
    EXPECT_TRUE(get(pens).isNull());
    store({{u"org.example.ink"_s, plist::Dictionary{{key, 1}}}});
    EXPECT_TRUE(set(pens, 2));
    EXPECT_EQ(stored().toDictionary().keys(), QStringList({u"org.example.ink"_s, pensId}));
}

TEST_F(ApplicationSettings, AFailedWriteIsReported)
{
    preferences.control().setSynchronizeFails(true);
    EXPECT_FALSE(set(pens, 1));
    EXPECT_FALSE(SetAppSettingBool(context, preferences, domain, pens, key, true));
}

TEST_F(ApplicationSettings, NumbersAndTruthKeepTheirTypes)
{
    SetAppSettingFloat(context, preferences, domain, pens, key, 0.1f);
    EXPECT_TRUE(get(pens).isReal());
    EXPECT_EQ(get(pens).toDouble(), double(0.1f));
    EXPECT_TRUE(SetAppSettingBool(context, preferences, domain, pens, key, true));
    EXPECT_EQ(get(pens), plist::Value(true));
}

TEST_F(ApplicationSettings, RemovingTakesOneApplicationAlone)
{
    store({{pensId, plist::Dictionary{{key, 1}}}, {u"x"_s, plist::Dictionary{{key, 2}}}});
    RemoveCustomSettings(preferences, domain, pens);
    EXPECT_EQ(stored(), plist::Value(plist::Dictionary{{u"x"_s, plist::Dictionary{{key, 2}}}}));
    RemoveCustomSettings(preferences, domain, ApplicationIdentifier(u"x"_s));
    EXPECT_EQ(stored(), plist::Value(plist::Dictionary()));
}

TEST_F(ApplicationSettings, RemovingNobodyWritesNothing)
{
    store({{u"x"_s, plist::Dictionary{{key, 2}}}});
    RemoveCustomSettings(preferences, domain, pens);
    RemoveCustomSettings(preferences, domain, std::nullopt);
    RemoveCustomSettings(preferences, domain, ApplicationIdentifier::global());
    EXPECT_TRUE(preferences.control().writes().isEmpty());
}

TEST_F(ApplicationSettings, TheListFindsApplicationsThatMoved)
{
    const foundation::Bundle bundle = makeBundle(u"Pens.app"_s, pensId);
    const QByteArray alias = bookmarks.bookmarkForPath(bundle.path());
    home.move(bundle.path(), u"/Applications/Pens.app"_s);
    const plist::Dictionary moved{{u"_AliasRecord"_s, alias}, {key, 1}};
    const plist::Dictionary lost{{u"_AliasRecord"_s, "foreign"_ba}};
    const plist::Dictionary mistyped{{u"_AliasRecord"_s, u"text"_s}};
    store({{u"a"_s, moved}, {u"b"_s, lost}, {u"c"_s, mistyped}, {u"d"_s, 5}});
    const plist::Array expected{
        plist::Dictionary{{u"ID"_s, u"a"_s},
                          {u"Path"_s, u"/Applications/Pens.app"_s},
                          {u"AliasRecord"_s, alias},
                          {u"SettingsDict"_s, moved}},
        plist::Dictionary{
            {u"ID"_s, u"b"_s}, {u"AliasRecord"_s, "foreign"_ba}, {u"SettingsDict"_s, lost}},
        plist::Dictionary{{u"ID"_s, u"c"_s}, {u"SettingsDict"_s, mistyped}},
    };
    EXPECT_EQ(plist::Value(CopyCustomSettingsList(preferences, bookmarks, domain)),
              plist::Value(expected));
    EXPECT_TRUE(CopyCustomSettingsList(preferences, bookmarks, u"org.example.other"_s).isEmpty());
}

} // namespace
} // namespace tarnwell::prefs

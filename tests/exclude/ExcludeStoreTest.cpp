#include "exclude/ExcludeStore.h"

#include "prefs/IdentityFixture.h"
#include "support/RowName.h"

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

constexpr QLatin1StringView domain{"com.varnit.tarnwell"};
constexpr QLatin1StringView key{"ExcludeList"};

plist::Dictionary listed(const QString &id, const QString &mark = {})
{
    plist::Dictionary record{{u"ID"_s, id}};
    if (!mark.isEmpty())
        record.insert(u"Mark"_s, mark);
    return record;
}

} // namespace

class ExcludeStore : public IdentityFixture
{
protected:
    void store(const plist::Value &list)
    {
        preferences.control().setStoredValue(key, list, domain);
        preferences.control().clearRecord();
    }
    plist::Value stored() { return preferences.control().storedValue(key, domain); }
    bool hasWritten() { return !preferences.control().writes().isEmpty(); }
    void add(const foundation::Bundle &bundle, const std::optional<QString> &path = std::nullopt)
    {
        exclude::AddBundleToExcludeList(context, preferences, domain, bundle, path, std::nullopt,
                                        false);
    }
};

TEST_F(ExcludeStore, AddingMakesARecordOfWhatIsKnown)
{
    const foundation::Bundle pens = makeBundle(u"Pens.app"_s, u"com.example.pens"_s);
    exclude::AddBundleToExcludeList(context, preferences, domain, pens, u"Crashes"_s, true);
    const foundation::Bundle inks = makeBundle(u"Inks.app"_s, u"com.example.inks"_s);
    bookmarks.control().refused.insert(inks.path());
    add(inks, inks.path() + u"/Contents/Info.plist"_s);

    const plist::Array list = stored().toArray();
    ASSERT_EQ(list.size(), 2);
    EXPECT_EQ(list.at(0).toDictionary(),
              (plist::Dictionary{{u"ID"_s, u"com.example.pens"_s},
                                 {u"DisplayName"_s, u"The Pens.app"_s},
                                 {u"Comment"_s, u"Crashes"_s},
                                 {u"AliasRecord"_s, bookmarks.bookmarkForPath(pens.path())},
                                 {u"Hardcoded"_s, true},
                                 {u"Path"_s, pens.path()}}));
    EXPECT_EQ(list.at(1).toDictionary(),
              (plist::Dictionary{{u"ID"_s, u"com.example.inks"_s},
                                 {u"Path"_s, inks.path() + u"/Contents/Info.plist"_s}}))
        << "neither a name nor an alias could be had";
}

TEST_F(ExcludeStore, AddingAListedApplicationLeavesItsRecordAlone)
{
    const foundation::Bundle pens = makeBundle(u"Pens.app"_s, u"com.example.pens"_s);
    store(plist::Value(plist::Array{listed(u"com.example.pens"_s, u"as it was"_s)}));
    add(pens, u"/elsewhere/Pens.app"_s);
    EXPECT_FALSE(hasWritten());
}

TEST_F(ExcludeStore, SeesWhatOthersStoredMeanwhile)
{
    const foundation::Bundle pens = makeBundle(u"Pens.app"_s, u"com.example.pens"_s);
    add(pens);
    preferences.control().setStoredValue(
        key, plist::Value(plist::Array{listed(u"com.example.plugin"_s)}), domain);
    add(pens);
    EXPECT_EQ(stored().toArray().size(), 2);
    EXPECT_TRUE(exclude::IsAppIDExcluded(preferences, domain, u"com.example.plugin"_s));
}

struct StoredValue
{
    const char *name;
    plist::Value before;
    QString removed;
    plist::Value afterRemoving; ///< null for no write at all
    bool isListed;
    qsizetype sizeAfterAdding; ///< of another application, to the value as it was before
};

const plist::Value text = u"no record"_s;
const plist::Value number = 7;
const plist::Value noIdentifier = plist::Dictionary{{u"Path"_s, u"/Applications/Lost.app"_s}};
const plist::Value a = listed(u"a"_s);
const plist::Value again = listed(u"a"_s, u"again"_s);
const plist::Value b = listed(u"b"_s);

const StoredValue storedValues[] = {
    {"Nothing", {}, u"a"_s, {}, false, 1},
    {"Empty", plist::Array{}, u"a"_s, plist::Array{}, false, 1},
    {"OneMatch", plist::Array{a, b}, u"a"_s, plist::Array{b}, true, 3},
    {"NoMatchIsWrittenBack", plist::Array{a, b}, u"c"_s, plist::Array{a, b}, false, 3},
    {"OfDuplicatesTheFirst", plist::Array{a, b, again}, u"a"_s, plist::Array{b, again}, true, 4},
    {"CaseMatters", plist::Array{a}, u"A"_s, plist::Array{a}, false, 2},
    {"NoIdentifierGiven", plist::Array{noIdentifier, a}, QString(), plist::Array{noIdentifier, a},
     false, 3},
    {"ElementsOfOtherTypesStay", plist::Array{text, number, noIdentifier, a}, u"a"_s,
     plist::Array{text, number, noIdentifier}, true, 5},
    {"NoListIsTakenForNothing", text, u"a"_s, {}, false, 1},
    {"ABareRecordIsTakenForNothing", a, u"a"_s, {}, false, 1},
};

class ExcludeStoreOf : public ExcludeStore, public testing::WithParamInterface<StoredValue>
{};

TEST_P(ExcludeStoreOf, LosesNothingThatNobodyRemoved)
{
    const StoredValue &row = GetParam();
    store(row.before);
    EXPECT_EQ(exclude::IsAppIDExcluded(preferences, domain, row.removed), row.isListed);
    exclude::RemoveAppIDFromExcludeList(preferences, domain, row.removed);
    EXPECT_EQ(hasWritten(), !row.afterRemoving.isNull());
    EXPECT_EQ(stored(), row.afterRemoving.isNull() ? row.before : row.afterRemoving);

    store(row.before);
    add(makeBundle(u"Pens.app"_s, u"com.example.pens"_s));
    const plist::Array list = stored().toArray();
    ASSERT_EQ(list.size(), row.sizeAfterAdding);
    const plist::Array before = row.before.toArray(); // empty for what is no list
    for (qsizetype i = 0; i < before.size(); ++i)
        EXPECT_EQ(list.at(i), before.at(i)) << "element " << i;
    EXPECT_TRUE(list.at(list.size() - 1).isDictionary());
}

INSTANTIATE_TEST_SUITE_P(Values, ExcludeStoreOf, testing::ValuesIn(storedValues), RowName());

TEST_F(ExcludeStore, RemovesTheVeryRecordThatHasNoIdentifier)
{
    const plist::Value empty = listed({}, u"empty"_s);
    const plist::Value mistyped = plist::Dictionary{{u"ID"_s, 7}};
    const struct
    {
        plist::Dictionary removed;
        plist::Value after; ///< null for no write
    } rows[] = {
        {noIdentifier.toDictionary(), plist::Array{empty, a, mistyped, again}},
        {mistyped.toDictionary(), plist::Array{empty, a, noIdentifier, again}},
        {plist::Dictionary{{u"Path"_s, u"/gone.app"_s}}, {}},
        {listed({}), plist::Array{a, noIdentifier, mistyped, again}},
        {again.toDictionary(), plist::Array{empty, noIdentifier, mistyped, again}},
    };
    const plist::Array before{empty, a, noIdentifier, mistyped, again};
    for (const auto &row : rows) {
        store(plist::Value(before));
        exclude::RemoveRecordFromExcludeList(preferences, domain, row.removed);
        EXPECT_EQ(hasWritten(), !row.after.isNull());
        EXPECT_EQ(stored(), row.after.isNull() ? plist::Value(before) : row.after);
    }
}

TEST_F(ExcludeStore, OfABundleAsksForItsIdentifier)
{
    const foundation::Bundle pens = makeBundle(u"Pens.app"_s, u"com.example.pens"_s);
    const foundation::Bundle inks = makeBundle(u"Inks.app"_s, u"com.example.inks"_s);
    add(pens);
    EXPECT_TRUE(exclude::IsBundleExcluded(context, preferences, domain, pens));
    EXPECT_FALSE(exclude::IsBundleExcluded(context, preferences, domain, inks));
    EXPECT_FALSE(exclude::IsBundleExcluded(context, preferences, domain,
                                           prefs::ApplicationReference::global()));
    preferences.control().clearRecord();
    exclude::RemoveBundleFromExcludeList(context, preferences, domain, inks);
    EXPECT_FALSE(hasWritten());
    exclude::RemoveBundleFromExcludeList(context, preferences, domain, pens, pens.path());
    EXPECT_EQ(stored(), plist::Value(plist::Array()));
}

} // namespace tarnwell::tests

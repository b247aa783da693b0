#include "exclude/ExcludeListExchange.h"

#include "foundation/plist/PropertyList.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

plist::Dictionary own(const QString &id)
{
    return {{u"ID"_s, id},
            {u"DisplayName"_s, QString(u"The "_s + id)},
            {u"AliasRecord"_s, QByteArray("\x00\xff", 2)}};
}

plist::Dictionary exportedFile(const plist::Value &list)
{
    return {{u"Format"_s, u"com.varnit.tarnwell.excludelist"_s},
            {u"Version"_s, 1},
            {u"ExcludeList"_s, list}};
}

QByteArray bytesOf(const plist::Dictionary &file)
{
    return plist::write(plist::Value(file), plist::Format::Xml);
}

plist::Dictionary changed(plist::Dictionary dictionary, const QString &key,
                          const plist::Value &value)
{
    dictionary.insert(key, value);
    return dictionary;
}

} // namespace

TEST(ExcludeListExchange, TakesTheUsersOwnRecordsThereAndBack)
{
    const plist::Dictionary predefined = changed(own(u"p"_s), u"Hardcoded"_s, true);
    const plist::Array stored{own(u"a"_s), predefined, u"no record"_s,
                              plist::Dictionary{{u"Path"_s, u"/lost"_s}},
                              changed(own(u"b"_s), u"Comment"_s, 7)};
    QString error;
    // Nothing comes in that no record of ours has, whoever wrote the file.
    const plist::Value foreign =
        plist::Array{changed(changed(own(u"a"_s), u"Private"_s, 2.5), u"Hardcoded"_s, false)};
    EXPECT_EQ(exclude::readExportedList(bytesOf(exportedFile(foreign)), &error),
              plist::Array{own(u"a"_s)});
    const auto read = exclude::readExportedList(exclude::exportedList(stored), &error);
    EXPECT_EQ(read, (plist::Array{own(u"a"_s), own(u"b"_s)})) << error.toStdString();
    EXPECT_TRUE(exclude::hasRecordsToExport(stored));
    EXPECT_FALSE(exclude::hasRecordsToExport({predefined, u"no record"_s}));
}

TEST(ExcludeListExchange, RefusesADamagedFileWithTheReason)
{
    struct Row
    {
        const char *name;
        QByteArray bytes;
        QString message; ///< a part of it
    };
    const Row rows[] = {
        {"Cut", bytesOf(exportedFile(plist::Array{own(u"a"_s)})).chopped(40), u"damaged: "_s},
        {"BareList", plist::write(plist::Value(plist::Array{own(u"a"_s)}), plist::Format::Xml),
         u"no exclude list"_s},
        {"AnotherFormat", bytesOf(changed(exportedFile(plist::Array{}), u"Format"_s, u"other"_s)),
         u"no exclude list"_s},
        {"LaterVersion", bytesOf(changed(exportedFile(plist::Array{}), u"Version"_s, 2)),
         u"a version that is not known"_s},
        {"NoList", bytesOf(exportedFile({})), u"has no list"_s},
        {"Text", bytesOf(exportedFile(plist::Array{own(u"a"_s), u"b"_s})),
         u"entry 2 cannot be used, because it is not a record"_s},
        {"NoIdentifier", bytesOf(exportedFile(plist::Array{changed(own(u"a"_s), u"ID"_s, {})})),
         u"entry 1 cannot be used, because it has no \"ID\""_s},
        {"WrongKind", bytesOf(exportedFile(plist::Array{changed(own(u"a"_s), u"Path"_s, 7)})),
         u"\"Path\" is of the wrong kind"_s},
        {"Predefined",
         bytesOf(exportedFile(plist::Array{changed(own(u"a"_s), u"Hardcoded"_s, true)})),
         u"marked as predefined"_s},
    };
    for (const Row &row : rows) {
        QString error;
        EXPECT_EQ(exclude::readExportedList(row.bytes, &error), std::nullopt) << row.name;
        EXPECT_TRUE(error.contains(row.message)) << row.name << ": " << error.toStdString();
    }
}

TEST(ExcludeListExchange, TellsWhatAnImportWouldChange)
{
    const exclude::ImportPlan plan =
        exclude::planImport({own(u"a"_s), own(u"b"_s), own(u"B"_s), own(u"b"_s)},
                            {u"no record"_s, changed(own(u"a"_s), u"Hardcoded"_s, true)});
    EXPECT_EQ(plan.added, (plist::Array{own(u"b"_s), own(u"B"_s)}));
    const QString text = exclude::description(plan);
    EXPECT_TRUE(text.contains(u"added: The b, The B."_s)) << text.toStdString();
    EXPECT_TRUE(text.contains(u"stay as they are: The a, The b."_s)) << text.toStdString();

    plist::Array many;
    for (int i = 0; i < 20; ++i)
        many.append(plist::Value(own(QString::number(i) + u"%2"_s)));
    EXPECT_TRUE(
        exclude::description(exclude::planImport(many, {})).contains(u"The 11%2 and 8 more"_s));
}

} // namespace tarnwell::tests

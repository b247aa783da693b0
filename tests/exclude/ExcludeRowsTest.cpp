#include "exclude/ExcludeRows.h"

#include "exclude/ExcludeRecord.h"
#include "exclude/ExcludeTableModel.h"
#include "fakes/FakeFileManager.h"
#include "fakes/FakeWorkspace.h"
#include "support/StrangersNames.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

class ExcludeRows : public testing::Test
{
protected:
    ExcludeRows() { home.addApplication(u"/Applications/Pens.app"_s, u"pens"_s, u"Pens"_s); }

    QStringList names(const plist::Array &stored, bool hidePredefined = false)
    {
        QStringList result;
        for (const plist::Value &row : exclude::excludeRows(stored, hidePredefined, fileManager))
            result.append(exclude::excludeName(row.toDictionary(), fileManager));
        return result;
    }

    fakes::FakeHome home;
    fakes::FakeFileManager fileManager{home};
    fakes::FakeWorkspace workspace{home};
};

TEST_F(ExcludeRows, AreSortedByTheNameOfTheFile)
{
    const plist::Array stored{
        plist::Dictionary{{u"DisplayName"_s, u"quill"_s}},
        u"no record"_s,
        plist::Dictionary{{u"DisplayName"_s, u"Zebra"_s}, {u"Path"_s, u"/Applications/Pens.app"_s}},
        plist::Dictionary{{u"DisplayName"_s, u"Inks"_s}, {u"Path"_s, u"/gone/Aardvark.app"_s}},
        plist::Dictionary{{u"Path"_s, u"/gone/Brush.app"_s}},
        plist::Dictionary{{u"ID"_s, u"com.example.bare"_s}},
        7,
    };
    EXPECT_EQ(names(stored), (QStringList{u"com.example.bare"_s, u"Brush.app"_s, u"Inks"_s,
                                          u"Zebra"_s, u"quill"_s}));
}

TEST_F(ExcludeRows, PredefinedOnesAreHidden)
{
    const struct
    {
        const char *name;
        plist::Value hardcoded;
        bool predefined;
    } rows[] = {
        {"true", true, true},
        {"false", false, false},
        {"missing", {}, false},
        {"one", 1, true},
        {"zero", 0, false},
        {"in words", u"YES"_s, true},
        {"another text", u"1x"_s, false},
        {"list", plist::Array{true}, false},
    };
    for (const auto &row : rows) {
        const plist::Dictionary record{{u"ID"_s, u"x"_s}, {u"Hardcoded"_s, row.hardcoded}};
        EXPECT_EQ(names({record}, true).isEmpty(), row.predefined) << row.name;
    }
}

TEST_F(ExcludeRows, ModelGivesEachKindItsIconAndText)
{
    QPixmap sign(8, 8);
    sign.fill(Qt::red);
    const QIcon predefined(sign);
    exclude::ExcludeTableModel model({u"13"_s, u"1"_s}, {QString(), u"Application"_s}, fileManager,
                                     workspace, predefined);
    model.setRecords(
        {plist::Dictionary{{u"Path"_s, u"/Applications/Pens.app"_s}},
         plist::Dictionary{{u"Path"_s, u"/gone/Inks.app"_s}, {u"Comment"_s, u"Draws."_s}},
         plist::Dictionary{{u"Hardcoded"_s, true}, {u"Path"_s, u"/Applications/Pens.app"_s}}});
    ASSERT_EQ(model.rowCount(), 3);
    const auto icon = [&model](int row) {
        return model.index(row, 0).data(Qt::DecorationRole).value<QIcon>().cacheKey();
    };
    EXPECT_EQ(icon(0), workspace.control().icon(u"/Applications/Pens.app"_s).cacheKey());
    EXPECT_EQ(icon(1), workspace.control().icon(u"app"_s).cacheKey());
    EXPECT_EQ(icon(2), predefined.cacheKey());
    EXPECT_EQ(model.index(0, 1).data().toString(), u"Pens"_s);
    EXPECT_EQ(model.index(1, 1).data().toString(), u"Inks.app\nDraws."_s);
    EXPECT_EQ(model.index(2, 0).data(Qt::AccessibleTextRole).toString(), u"Predefined"_s);

    for (const QString &name : strangersNames()) {
        model.setRecords({plist::Dictionary{
            {u"DisplayName"_s, name}, {u"Comment"_s, name}, {u"Path"_s, u"/gone/"_s + name}}});
        const QModelIndex cell = model.index(0, 1);
        const auto styled = cell.data(exclude::ExcludeTableModel::StyledStringRole);
        for (const QString &shown :
             {cell.data().toString(), cell.data(Qt::AccessibleTextRole).toString(),
              styled.value<foundation::StyledString>().text()})
            EXPECT_TRUE(isHonest(shown, 2)) << shown.left(40).toStdString();
        EXPECT_TRUE(isHonest(cell.data(Qt::ToolTipRole).toString()));
    }
}

} // namespace tarnwell::tests

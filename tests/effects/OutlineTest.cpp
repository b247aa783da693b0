#include "effects/OutlineModel.h"
#include "fakes/FakeFileManager.h"
#include "support/RowName.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::effects {

namespace {

QUrl url(const QString &name)
{
    return QUrl::fromLocalFile(u"/c/"_s + name + u".qtz"_s);
}

CompositionLists lists(const CompositionGroups &groups, const QStringList &enabled)
{
    CompositionLists result{groups, {}};
    for (const QString &name : enabled)
        result.enabled.append(url(name));
    return result;
}

const CompositionGroups threeGroups{
    {u"Screensavers"_s, {url(u"s"_s)}},
    {u"Application Support"_s, {url(u"a"_s), url(u"b"_s), url(u"c"_s)}},
    {u"bundled"_s, {url(u"x"_s), url(u"y"_s)}},
};

} // namespace

TEST(Outline, AnswersForEveryItem)
{
    fakes::FakeHome home;
    home.addFile(u"/c/a.qtz"_s).displayName = u"The first"_s;
    const fakes::FakeFileManager fileManager(home);
    const Outline outline(lists(threeGroups, {u"a"_s, u"x"_s, u"y"_s}));
    const OutlineItem root;

    EXPECT_EQ(outline.numberOfChildrenOfItem(root), 3);
    EXPECT_EQ(outline.childOfItem(0, root), OutlineItem(u"Application Support"_s));
    EXPECT_EQ(outline.childOfItem(1, root), OutlineItem(u"bundled"_s)) << "whatever its case";
    EXPECT_EQ(outline.childOfItem(2, root), OutlineItem(u"Screensavers"_s));
    EXPECT_EQ(outline.childOfItem(3, root), root);
    EXPECT_EQ(outline.childOfItem(-1, root), root);

    struct Row
    {
        const char *name;
        OutlineItem item;
        int children;
        bool isExpandable;
        QVariant title;
        QVariant enabled;
    };
    const Row rows[] = {
        {"root", root, 3, true, {}, {}},
        {"partly on", u"Application Support"_s, 3, true, u"Application Support"_s, -1},
        {"all on", u"bundled"_s, 2, true, u"bundled"_s, 1},
        {"all off", u"Screensavers"_s, 1, true, u"Screensavers"_s, 0},
        {"unknown group", u"nobody"_s, 0, true, u"nobody"_s, 0},
        {"on", url(u"a"_s), 0, false, u"The first"_s, 1},
        {"off and gone", url(u"s"_s), 0, false, QString(), 0},
        {"no file", QUrl(u"http://example.com/a.qtz"_s), 0, false, {}, {}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(outline.numberOfChildrenOfItem(row.item), row.children);
        EXPECT_EQ(Outline::isItemExpandable(row.item), row.isExpandable);
        EXPECT_EQ(outline.objectValueForTableColumn(titleColumn, row.item, fileManager), row.title);
        EXPECT_EQ(outline.objectValueForTableColumn(enableColumn, row.item, fileManager),
                  row.enabled);
        EXPECT_EQ(outline.objectValueForTableColumn(u"other"_s, row.item, fileManager), QVariant());
    }
    EXPECT_FALSE(Outline::shouldEditTableColumn(titleColumn));
    EXPECT_TRUE(Outline::shouldEditTableColumn(enableColumn));
    EXPECT_FALSE(Outline::shouldEditTableColumn(u"other"_s));
}

class OutlineRows : public testing::Test
{
protected:
    QStringList shown() const
    {
        QStringList rows;
        for (int row = 0; row < model.rowCount(); ++row) {
            const QModelIndex group = model.index(row, 0);
            rows.append(cells(group));
            for (int child = 0; child < model.rowCount(group); ++child)
                rows.append(u"  "_s + cells(model.index(child, 0, group)));
        }
        return rows;
    }
    static QString cells(const QModelIndex &index)
    {
        const QString marks = u"-~x"_s;
        const auto state = index.siblingAtColumn(1).data(Qt::CheckStateRole).toInt();
        return index.data().toString() + u' ' + marks.at(state);
    }

    fakes::FakeHome home;
    fakes::FakeFileManager fileManager{home};
    QList<std::pair<OutlineItem, bool>> switched;
    OutlineModel model{{QString(titleColumn), QString(enableColumn)},
                       {u"Effect"_s, u"On"_s},
                       fileManager,
                       [this](const OutlineItem &item, bool on) {
                           switched.append({item, on});
                       }};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(OutlineRows, ShowGroupsAndCompositionsWithTheirState)
{
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s, u"s"_s, u"x"_s, u"y"_s})
        home.addFile(url(name).toLocalFile());
    EXPECT_EQ(shown(), QStringList());
    model.setOutline(Outline(lists(threeGroups, {u"a"_s, u"x"_s, u"y"_s})));
    EXPECT_EQ(shown(), (QStringList{u"Application Support ~"_s, u"  a.qtz x"_s, u"  b.qtz -"_s,
                                    u"  c.qtz -"_s, u"bundled x"_s, u"  x.qtz x"_s, u"  y.qtz x"_s,
                                    u"Screensavers -"_s, u"  s.qtz -"_s}));
    EXPECT_EQ(model.headerData(0, Qt::Horizontal), u"Effect"_s);

    for (const OutlineItem &item : {OutlineItem(u"bundled"_s), OutlineItem(url(u"y"_s))})
        EXPECT_EQ(model.itemAt(model.indexOf(item)), item);
    EXPECT_FALSE(model.indexOf({}).isValid());
    EXPECT_FALSE(model.indexOf(url(u"none"_s)).isValid());
}

TEST_F(OutlineRows, KeepTheirPlacesWhenOnlyTheirStateChanges)
{
    model.setOutline(Outline(lists(threeGroups, {})));
    const QPersistentModelIndex composition = model.indexOf(url(u"b"_s));
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.setOutline(Outline(lists(threeGroups, {u"b"_s})));
    EXPECT_EQ(reset.count(), 0);
    ASSERT_TRUE(composition.isValid());
    EXPECT_EQ(composition.sibling(composition.row(), 1).data(Qt::CheckStateRole).toInt(),
              int(Qt::Checked));
    model.setOutline(Outline(lists({{u"bundled"_s, {url(u"x"_s)}}}, {})));
    EXPECT_EQ(reset.count(), 1);
    EXPECT_EQ(model.rowCount(), 1);
}

TEST_F(OutlineRows, HandOverWhatIsSwitched)
{
    model.setOutline(Outline(lists(threeGroups, {u"a"_s})));
    const QModelIndex group = model.index(0, 1);
    const QModelIndex composition = model.index(1, 1, model.index(0, 0));
    EXPECT_TRUE(model.flags(composition).testFlag(Qt::ItemIsUserCheckable));
    EXPECT_FALSE(model.flags(composition.siblingAtColumn(0)).testFlag(Qt::ItemIsUserCheckable));
    EXPECT_FALSE(model.setData(composition.siblingAtColumn(0), Qt::Checked, Qt::CheckStateRole));
    EXPECT_FALSE(model.setData(composition, u"text"_s, Qt::EditRole));
    EXPECT_FALSE(model.setData({}, Qt::Checked, Qt::CheckStateRole));
    EXPECT_TRUE(switched.isEmpty());

    EXPECT_TRUE(model.setData(composition, Qt::Checked, Qt::CheckStateRole));
    EXPECT_TRUE(model.setData(group, Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_TRUE(model.setData(group, Qt::PartiallyChecked, Qt::CheckStateRole));
    const QList<std::pair<OutlineItem, bool>> expected{
        {url(u"b"_s), true}, {u"Application Support"_s, false}, {u"Application Support"_s, true}};
    EXPECT_EQ(switched, expected);
}

} // namespace tarnwell::effects

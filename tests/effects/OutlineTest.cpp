#include "effects/OutlineModel.h"
#include "fakes/FakeFileManager.h"

#include <QAbstractItemModelTester>

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
    OutlineModel model{{QString(titleColumn), QString(enableColumn)},
                       {u"Effect"_s, u"On"_s},
                       fileManager,
                       [](const OutlineItem &, bool) {}};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(OutlineRows, ShowGroupsAndCompositionsWithTheirState)
{
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s, u"s"_s, u"x"_s, u"y"_s})
        home.addFile(url(name).toLocalFile());
    home.addFile(url(u"b"_s).toLocalFile()).displayName = u"The second"_s;
    EXPECT_EQ(shown(), QStringList());
    model.setOutline(Outline(lists(threeGroups, {u"a"_s, u"x"_s, u"y"_s})));
    EXPECT_EQ(shown(), (QStringList{u"Application Support ~"_s, u"  a.qtz x"_s, u"  The second -"_s,
                                    u"  c.qtz -"_s, u"bundled x"_s, u"  x.qtz x"_s, u"  y.qtz x"_s,
                                    u"Screensavers -"_s, u"  s.qtz -"_s}));
    QStringList spoken;
    for (const OutlineItem &item : {OutlineItem(u"Application Support"_s), OutlineItem(url(u"a"_s)),
                                    OutlineItem(url(u"b"_s))})
        spoken.append(model.indexOf(item).data(Qt::AccessibleTextRole).toString());
    EXPECT_EQ(spoken, (QStringList{u"Application Support, some are on"_s, u"a.qtz, on"_s,
                                   u"The second, off"_s}));

    for (const OutlineItem &item : {OutlineItem(u"bundled"_s), OutlineItem(url(u"y"_s))})
        EXPECT_EQ(model.itemAt(model.indexOf(item)), item);
    EXPECT_FALSE(model.indexOf(url(u"none"_s)).isValid());
}

} // namespace tarnwell::effects

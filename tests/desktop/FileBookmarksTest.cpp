#include "desktop/FileBookmarks.h"
#include "support/RowName.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <functional>

namespace tarnwell::desktop {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;
using tests::TemporaryHome;

struct BookmarkRow
{
    const char *name;
    std::function<void(const TemporaryHome &)> happens;
    QString found; ///< empty for nowhere
};

/// A bookmark of ~/Applications/Pens.app ("org.example.pens") is made; then something happens.
class ApplicationBookmarks : public testing::TestWithParam<BookmarkRow>
{};

TEST_P(ApplicationBookmarks, FindTheApplicationThatWasMeant)
{
    const TemporaryHome home;
    const BundleCache bundles;
    const FileBookmarks bookmarks({home.home(), home.root()}, bundles);
    const QString path = home.makeApplication(u"~/Applications/Pens.app"_s, u"org.example.pens"_s);
    const QByteArray bookmark = bookmarks.bookmarkForPath(path);
    ASSERT_FALSE(bookmark.isEmpty());
    GetParam().happens(home);
    const QString expected = GetParam().found.isEmpty() ? QString() : home.path(GetParam().found);
    EXPECT_EQ(bookmarks.resolveBookmark(bookmark), expected);
}

const QString pensPath = u"~/Applications/Pens.app"_s;
const QString pensId = u"org.example.pens"_s;
const QString inkId = u"org.example.ink"_s;

const BookmarkRow bookmarkRows[] = {
    {"Nothing", [](auto &) {}, pensPath},
    {"Rename", [](auto &home) { home.move(pensPath, u"~/Applications/Quills.app"_s); },
     u"~/Applications/Quills.app"_s},
    {"MoveToAnotherApplicationFolder",
     [](auto &home) { home.move(pensPath, u"/Applications/Office/Pens.app"_s); },
     u"/Applications/Office/Pens.app"_s},
    {"UpdateInPlace",
     [](auto &home) {
         home.makeApplication(u"~/new/Pens.app"_s, pensId);
         home.move(pensPath, u"~/old.app"_s);
         home.move(u"~/new/Pens.app"_s, pensPath);
     },
     pensPath},
    {"UpdateWithAnotherIdentifier",
     [](auto &home) { home.makeApplication(pensPath, u"com.example.pens2"_s); }, pensPath},
    {"AnotherApplicationInItsPlace",
     [](auto &home) {
         home.move(pensPath, u"/Applications/Pens.app"_s);
         home.makeApplication(pensPath, inkId);
     },
     u"/Applications/Pens.app"_s},
    {"InstalledAnewElsewhere",
     [](auto &home) {
         home.remove(pensPath);
         home.makeApplication(u"/Applications/Pens.app"_s, pensId);
     },
     u"/Applications/Pens.app"_s},
    {"TheVeryFileBeforeACopy",
     [](auto &home) {
         home.move(pensPath, u"/Applications/Pens.app"_s);
         home.makeApplication(u"~/Applications/Office/Pens.app"_s, pensId);
     },
     u"/Applications/Pens.app"_s},
    {"OnlyAnotherApplicationInItsPlace",
     [](auto &home) {
         home.makeApplication(u"~/Applications/Ink.app"_s, inkId);
         home.remove(pensPath);
         home.move(u"~/Applications/Ink.app"_s, pensPath);
     },
     {}},
    {"Removed", [](auto &home) { home.remove(pensPath); }, {}},
};
INSTANTIATE_TEST_SUITE_P(Rows, ApplicationBookmarks, testing::ValuesIn(bookmarkRows), RowName());

class Bookmarks : public testing::Test
{
protected:
    TemporaryHome home;
    BundleCache bundles;
    FileBookmarks bookmarks{{home.home(), home.root()}, bundles};
};

TEST_F(Bookmarks, FindAToolAfterARename)
{
    const QString tool = home.write(u"/bin/pens"_s, "x", true);
    home.write(u"/bin/other"_s, "x", true);
    const QByteArray bookmark = bookmarks.bookmarkForPath(tool);
    home.move(u"/bin/pens"_s, u"/bin/quills"_s);
    EXPECT_EQ(bookmarks.resolveBookmark(bookmark), home.path(u"/bin/quills"_s));
    home.remove(u"/bin/quills"_s);
    EXPECT_EQ(bookmarks.resolveBookmark(bookmark), QString());
}

TEST_F(Bookmarks, FindADesktopEntryThatTheUserTookOver)
{
    const QByteArray entry = "[Desktop Entry]\nType=Application\nName=Pens\n";
    const QString system = home.write(u"/usr/share/applications/pens.desktop"_s, entry);
    const QByteArray bookmark = bookmarks.bookmarkForPath(system);
    home.remove(u"/usr/share/applications/pens.desktop"_s);
    const QString own = home.write(u"~/.local/share/applications/pens.desktop"_s, entry);
    EXPECT_EQ(bookmarks.resolveBookmark(bookmark), own);
}

TEST_F(Bookmarks, AreNotMadeOfNothing)
{
    EXPECT_TRUE(bookmarks.bookmarkForPath(home.path(u"/none"_s)).isEmpty());
    EXPECT_TRUE(bookmarks.bookmarkForPath({}).isEmpty());
}

TEST_F(Bookmarks, DoNotResolveForeignBytes)
{
    const QString path = home.makeApplication(u"/Applications/Pens.app"_s, pensId);
    const QByteArray good = bookmarks.bookmarkForPath(path);
    plist::Dictionary later = plist::read(good).toDictionary();
    later.insert(u"BookmarkVersion"_s, 2);
    plist::Dictionary relative = plist::read(good).toDictionary();
    relative.insert(u"Path"_s, u"Applications/Pens.app"_s);
    const std::pair<const char *, QByteArray> rows[] = {
        {"empty", {}},
        {"alias", QByteArray("\0\0\0\0\0\x92\0\2\0\1", 10)},
        {"torn", good.first(good.size() / 2)},
        {"array", plist::write(plist::Array{1}, plist::Format::Binary)},
        {"later version", plist::write(later, plist::Format::Binary)},
        {"relative path", plist::write(relative, plist::Format::Binary)},
        {"huge", QByteArray(1024 * 1024, 'x')},
    };
    for (const auto &[name, bytes] : rows)
        EXPECT_EQ(bookmarks.resolveBookmark(bytes), QString()) << name;
    EXPECT_EQ(bookmarks.resolveBookmark(good), path);
}

} // namespace
} // namespace tarnwell::desktop

#include "desktop/DesktopWorkspace.h"
#include "support/RowName.h"
#include "support/TemporaryHome.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QtEndian>

#include <gtest/gtest.h>

namespace tarnwell::desktop {
namespace {

using namespace Qt::StringLiterals;
using tests::RowName;
using tests::TemporaryHome;

QByteArray png(int side, QColor color)
{
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

/// An icon file of several sizes, each its own colour.
QByteArray icns(const QList<std::pair<QByteArray, QByteArray>> &images)
{
    QByteArray body;
    for (const auto &[type, image] : images)
        body += type + bigEndian(quint32(image.size() + 8)) + image;
    return "icns" + bigEndian(quint32(body.size() + 8)) + body;
}

QColor middle(const QIcon &icon, int side, qreal ratio = 1)
{
    const QImage image = icon.pixmap(QSize(side, side), ratio).toImage();
    return image.isNull() ? QColor() : image.pixelColor(image.width() / 2, image.height() / 2);
}

class Workspace : public testing::Test
{
protected:
    /// An application whose Info.plist names an icon file.
    QString applicationWithIcon(const QString &name) const
    {
        home.writeInfo(u"/Pens.app/Contents/Info.plist"_s, {{u"CFBundleIconFile"_s, name}});
        return home.path(u"/Pens.app"_s);
    }

    TemporaryHome home;
    DesktopWorkspace workspace{{home.home(), home.root()}};
};

struct IconRow
{
    const char *name;
    QString iconFile; ///< as Info.plist has it
    QString file;     ///< below Resources
};

class WorkspaceIcons : public Workspace, public testing::WithParamInterface<IconRow>
{};

TEST_P(WorkspaceIcons, AreLoadedWhenTheyAreFirstPainted)
{
    const QString path = applicationWithIcon(GetParam().iconFile);
    const QIcon icon = workspace.iconForFile(path);
    EXPECT_FALSE(icon.isNull());
    EXPECT_EQ(icon.actualSize(QSize(16, 16)), QSize(16, 16));
    // Nothing can have been read before the file is there.
    home.write(u"/Pens.app/Contents/Resources/"_s + GetParam().file, png(64, Qt::red));
    EXPECT_EQ(middle(icon, 16), QColor(Qt::red));
    EXPECT_EQ(icon.pixmap(QSize(16, 16), 2.0).size(), QSize(32, 32));
    EXPECT_EQ(icon.pixmap(QSize(16, 16), 2.0).devicePixelRatio(), 2.0);
}

const IconRow iconRows[] = {
    {"WithEnding", u"pens.png"_s, u"pens.png"_s},
    {"WithoutEnding", u"pens"_s, u"pens.png"_s},
    {"EndingThatLies", u"pens"_s, u"pens.icns"_s},
    {"NoEndingAtAll", u"pens"_s, u"pens"_s},
};
INSTANTIATE_TEST_SUITE_P(Rows, WorkspaceIcons, testing::ValuesIn(iconRows), RowName());

TEST_F(Workspace, TakesTheImageThatFitsTheScreen)
{
    if (!QImageReader::supportedImageFormats().contains("icns"))
        GTEST_SKIP() << "no reader for icon files here";
    const QIcon icon = workspace.iconForFile(applicationWithIcon(u"pens"_s));
    home.write(u"/Pens.app/Contents/Resources/pens.icns"_s,
               icns({{"ic09", png(512, Qt::blue)}, {"ic07", png(128, Qt::red)}}));
    EXPECT_EQ(middle(icon, 16), QColor(Qt::red));
    EXPECT_EQ(middle(icon, 128), QColor(Qt::red));
    EXPECT_EQ(middle(icon, 128, 2), QColor(Qt::blue));
}

TEST_F(Workspace, PaintsInTheMiddleAndGreysOut)
{
    const QIcon icon = workspace.iconForFile(applicationWithIcon(u"pens.png"_s));
    home.write(u"/Pens.app/Contents/Resources/pens.png"_s, png(8, Qt::red));
    QImage canvas(32, 32, QImage::Format_ARGB32);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    icon.paint(&painter, QRect(8, 8, 16, 16));
    painter.end();
    EXPECT_EQ(canvas.pixelColor(16, 16), QColor(Qt::red));
    EXPECT_EQ(canvas.pixelColor(10, 10), QColor(Qt::white)); // small pictures stay small
    const QImage grey = icon.pixmap(16, QIcon::Disabled).toImage();
    EXPECT_NE(grey.pixelColor(4, 4), QColor(Qt::red));
}

TEST_F(Workspace, NeverLeavesAnApplicationWithoutAPicture)
{
    const std::pair<const char *, QByteArray> rows[] = {
        {"missing", {}},
        {"empty", ""},
        {"nonsense", "\x89PNG\r\n\x1a\nnonsense"},
        {"torn", png(64, Qt::red).first(40)},
        {"empty icns", "icns\0\0\0\x08"_ba},
        {"endless icns", "icns\xff\xff\xff\xffic07\xff\xff\xff\xff"},
        {"enormous", "P6\n60000 60000\n255\n"},
    };
    for (const auto &[name, bytes] : rows) {
        const QIcon icon = DesktopWorkspace({home.home(), home.root()})
                               .iconForFile(applicationWithIcon(u"pens"_s));
        if (!bytes.isNull())
            home.write(u"/Pens.app/Contents/Resources/pens.icns"_s, bytes);
        EXPECT_GT(middle(icon, 16).alpha(), 0) << name;
    }
    EXPECT_GT(middle(workspace.iconForFileType(u"app"_s), 32).alpha(), 0);
}

TEST_F(Workspace, HasAPictureOfFilesAndFoldersButNotOfNothing)
{
    EXPECT_GT(middle(workspace.iconForFile(home.write(u"/a.txt"_s, "x")), 16).alpha(), 0);
    EXPECT_GT(middle(workspace.iconForFile(home.makeFolder(u"/a"_s)), 16).alpha(), 0);
    EXPECT_TRUE(workspace.iconForFile(home.path(u"/none"_s)).isNull());
    EXPECT_TRUE(workspace.iconForFile({}).isNull());
}

TEST_F(Workspace, FindsTheIconOfADesktopEntry)
{
    const QByteArray start = "[Desktop Entry]\nType=Application\nName=Pens\nIcon=";
    home.write(u"/usr/share/icons/hicolor/48x48/apps/pens.png"_s, png(48, Qt::red));
    home.write(u"/opt/pens/blue.png"_s, png(48, Qt::blue));
    const QString named = home.write(u"/usr/share/applications/a.desktop"_s, start + "pens\n");
    const QString placed =
        home.write(u"/usr/share/applications/b.desktop"_s, start + "/opt/pens/blue.png\n");
    const QString outside =
        home.write(u"/usr/share/applications/c.desktop"_s, start + "../../../opt/pens/blue\n");
    EXPECT_EQ(middle(workspace.iconForFile(named), 16), QColor(Qt::red));
    EXPECT_EQ(middle(workspace.iconForFile(placed), 16), QColor(Qt::blue));
    EXPECT_NE(middle(workspace.iconForFile(outside), 16), QColor(Qt::blue));
}

TEST_F(Workspace, OpensNothingThatIsNotThere)
{
    EXPECT_FALSE(workspace.openFile(home.path(u"/none.txt"_s)));
    EXPECT_FALSE(workspace.openFile({}));
    EXPECT_FALSE(workspace.openUrl({}));
    EXPECT_FALSE(workspace.openUrl(QUrl(u"relative/page.html"_s)));
    EXPECT_FALSE(workspace.openUrl(QUrl(u"no-such-scheme-here://x"_s)));
}

} // namespace
} // namespace tarnwell::desktop

// What the build put into the bundle, read the way the pane reads it.

#include <QDir>
#include <QIcon>
#include <QImageReader>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString resource(const QString &name)
{
    return QDir(qEnvironmentVariable("BUNDLE_RESOURCES")).filePath(name);
}

} // namespace

TEST(BundleResources, TheProductIconIsThereInEverySize)
{
    QImageReader reader(resource(u"Tarnwell.icns"_s));
    QList<int> widths;
    for (int i = 0; i < reader.imageCount(); ++i) {
        ASSERT_TRUE(reader.jumpToImage(i));
        const QImage image = reader.read();
        EXPECT_EQ(image.width(), image.height());
        EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() / 8).alpha(), 255);
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << "round corners";
        widths.append(image.width());
    }
    EXPECT_EQ(widths, (QList<int>{16, 32, 64, 128, 256, 512}));
    EXPECT_FALSE(QIcon(resource(u"Tarnwell.icns"_s)).pixmap(16, 16).isNull());
}

TEST(BundleResources, TheSignOfPredefinedApplicationsCanBeRead)
{
    const QImage image(resource(u"HardcodedApp.tiff"_s));
    EXPECT_EQ(image.size(), QSize(64, 64));
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
}

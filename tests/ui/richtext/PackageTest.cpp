#include "ui/RichTextDocument.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>

#include <gtest/gtest.h>

using namespace tarnwell::ui;

namespace {

class PackageTest : public testing::Test
{
protected:
    PackageTest()
    {
        folder = home.filePath(QStringLiteral("Note.rtfd"));
        QDir().mkpath(folder);
        QImage(8, 4, QImage::Format_RGB32).save(folder + QStringLiteral("/inside.png"));
        QImage(8, 4, QImage::Format_RGB32).save(home.filePath(QStringLiteral("outside.png")));
    }

    void writeText(const QByteArray &rtf) const
    {
        QFile file(folder + QStringLiteral("/TXT.rtf"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(rtf);
    }

    bool load() { return loadRichTextPackage(folder, {QFont(), QPalette()}, document); }

    /// How many pictures the document shows.
    int pictures() const
    {
        int count = 0;
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                if (it.fragment().charFormat().isImageFormat())
                    count += int(it.fragment().length());
            }
        }
        return count;
    }

    QTemporaryDir home;
    QString folder;
    QTextDocument document;
};

TEST_F(PackageTest, showsTextAndPictures)
{
    writeText("{\\rtf1 One\\par {{\\NeXTGraphic inside.png \\width160 \\height80}\\'ac}}");
    ASSERT_TRUE(load());
    EXPECT_EQ(document.begin().text(), QStringLiteral("One"));
    ASSERT_EQ(pictures(), 1);
    const auto format = document.lastBlock().begin().fragment().charFormat().toImageFormat();
    EXPECT_EQ(
        document.resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>().size(),
        QSize(8, 4));
}

TEST_F(PackageTest, showsNothingInPlaceOfAMissingPicture)
{
    writeText("{\\rtf1 a{{\\NeXTGraphic gone.png}\\'ac}b}");
    ASSERT_TRUE(load());
    EXPECT_EQ(document.toPlainText(), QStringLiteral("ab"));
}

TEST_F(PackageTest, readsNothingOutsideOfTheFolder)
{
    ASSERT_TRUE(QFile::link(home.filePath(QStringLiteral("outside.png")),
                            folder + QStringLiteral("/link.png")));
    for (const QString &name :
         {QStringLiteral("../outside.png"), home.filePath(QStringLiteral("outside.png")),
          QStringLiteral("link.png"), QStringLiteral(".."), QStringLiteral("./inside.png")}) {
        writeText("{\\rtf1 a{{\\NeXTGraphic " + name.toUtf8() + "}\\'ac}}");
        ASSERT_TRUE(load());
        EXPECT_EQ(pictures(), 0) << name.toStdString();
    }
}

TEST_F(PackageTest, leavesTheDocumentWithoutText)
{
    document.setPlainText(QStringLiteral("before"));
    EXPECT_FALSE(load());
    QFile target(home.filePath(QStringLiteral("target.rtf")));
    ASSERT_TRUE(target.open(QIODevice::WriteOnly));
    target.write("{\\rtf1 elsewhere}");
    target.close();
    ASSERT_TRUE(QFile::link(target.fileName(), folder + QStringLiteral("/TXT.rtf")));
    EXPECT_FALSE(load());
    EXPECT_EQ(document.toPlainText(), QStringLiteral("before"));
}

TEST_F(PackageTest, decodesOnlyPicturesOfModestSize)
{
    QFile file(folder + QStringLiteral("/inside.png"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QByteArray png = file.readAll();
    EXPECT_FALSE(decodePicture(png, 32).isNull());
    EXPECT_TRUE(decodePicture(png, 31).isNull());
    EXPECT_TRUE(decodePicture(png.first(20), 1000).isNull());
    EXPECT_TRUE(decodePicture("<svg xmlns='http://www.w3.org/2000/svg'/>", 1000).isNull());
    // A header that claims more than there is.
    png.replace(16, 4, QByteArray::fromHex("7fffffff"));
    EXPECT_TRUE(decodePicture(png, 1 << 20).isNull());
}

} // namespace

#include "CompositionBuilder.h"

#include "foundation/plist/PropertyList.h"

#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;

struct Outcome
{
    int status = -1;
    QByteArray output;
    QByteArray errors;
};

Outcome play(const QStringList &arguments)
{
    QProcess process;
    process.start(QString::fromUtf8(PLAYER), arguments);
    process.waitForFinished(60'000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
}

class Tool : public testing::Test
{
protected:
    QString write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    QString composition() const
    {
        MacroBuilder root;
        root.node(u"QCClear"_s, u"C"_s).input(u"Ground"_s, u"C.inputColor"_s);
        return write(u"Ground.qtz"_s, plist::write(root.file(), plist::Format::Binary));
    }

    QTemporaryDir m_folder;
};

TEST_F(Tool, TellsAboutAComposition)
{
    const Outcome outcome = play({composition(), u"--info"_s});
    EXPECT_EQ(outcome.status, 0) << outcome.errors.toStdString();
    const QJsonObject report = QJsonDocument::fromJson(outcome.output).object();
    EXPECT_EQ(report.value(u"inputs"_s).toArray().first().toObject().value(u"key"_s), u"Ground"_s);
}

TEST_F(Tool, RefusesWhatIsNoComposition)
{
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("\x00\x01\xfe random", 10), QByteArray("bplist00\xff\xff"),
          plist::write(plist::Dictionary{}, plist::Format::Xml)}) {
        const Outcome outcome = play({write(u"x.qtz"_s, bytes), u"--info"_s});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_FALSE(outcome.errors.isEmpty());
        EXPECT_TRUE(outcome.output.isEmpty());
    }
    EXPECT_EQ(play({u"/nowhere/at/all.qtz"_s, u"--info"_s}).status, 1);
}

TEST_F(Tool, ExplainsItsUsage)
{
    const QString file = composition();
    for (const QStringList &arguments : {QStringList{},
                                         {file, u"--size"_s, u"12"_s},
                                         {file, u"--size"_s, u"0x5"_s},
                                         {file, u"--time"_s},
                                         {file, u"--time"_s, u"soon"_s},
                                         {file, u"--set"_s, u"Ground"_s},
                                         {file, u"--set"_s, u"Ground={"_s},
                                         {file, u"--set"_s, u"Nothing=1"_s},
                                         {file, u"--frames"_s, u"-1"_s},
                                         {file, file},
                                         {file, u"--what"_s}}) {
        EXPECT_EQ(play(arguments).status, 2) << arguments.join(u' ').toStdString();
    }
}

TEST_F(Tool, DrawsAPicture)
{
    const QString picture = m_folder.filePath(u"out.png"_s);
    const Outcome outcome =
        play({composition(), u"--set"_s, uR"(Ground={"red":1,"green":0.5,"blue":0,"alpha":1})"_s,
              u"--size"_s, u"40x30"_s, u"--png"_s, picture, u"--frames"_s, u"2"_s});
    if (outcome.status == 3 && outcome.errors.contains("OpenGL")) {
        GTEST_SKIP() << "there is no OpenGL here";
    }
    ASSERT_EQ(outcome.status, 0) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.output.contains("2 frames"));
    const QImage image(picture);
    EXPECT_EQ(image.size(), QSize(40, 30));
    EXPECT_EQ(image.pixelColor(20, 15), QColor(255, 128, 0));
}

} // namespace
} // namespace tarnwell::compositions::test

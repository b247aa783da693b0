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

#include <csignal>

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
                                         {file, u"--deadline"_s, u"0"_s},
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

TEST_F(Tool, SaysWhatBecameOfAPlayerThatDied)
{
    const struct
    {
        int signal;
        QString deadline;
        QByteArray sentence;
    } rows[] = {{SIGKILL, u"60"_s, "Ground.qtz brought the player down: Killed"},
                {SIGSTOP, u"1"_s, "Ground.qtz was ended because one frame took more than 1 s"}};
    for (const auto &row : rows) {
        QProcess process;
        process.start(QString::fromUtf8(PLAYER),
                      {composition(), u"--info"_s, u"--size"_s, u"8x8"_s, u"--deadline"_s,
                       row.deadline, u"--frames"_s, u"2000000000"_s});
        ASSERT_TRUE(process.waitForReadyRead(60'000))
            << process.readAllStandardError().toStdString();
        QFile children(u"/proc/%1/task/%1/children"_s.arg(process.processId()));
        ASSERT_TRUE(children.open(QIODevice::ReadOnly));
        const pid_t child = children.readAll().trimmed().toInt();
        if (child > 0) {
            ::kill(child, row.signal);
        }
        ASSERT_TRUE(process.waitForFinished(60'000));
        const QByteArray errors = process.readAllStandardError();
        EXPECT_EQ(process.exitCode(), 3);
        if (errors.contains("OpenGL")) {
            GTEST_SKIP() << "there is no OpenGL here";
        }
        EXPECT_TRUE(errors.contains(row.sentence)) << errors.toStdString();
    }
}

#if !defined(__SANITIZE_ADDRESS__)
TEST_F(Tool, EndsACompositionThatWantsTooMuchMemory)
{
    MacroBuilder root;
    root.node(u"QCJavaScript"_s, u"Script"_s, {},
              {{u"newMode"_s, 1},
               {u"script"_s, u"function (__color c) main ()\n"
                             "{ return { c: 'a'.repeat(1e6).replace(/a/g, '$`$`$`') }; }"_s}});
    root.node(u"QCClear"_s, u"C"_s).connect(u"Script.c"_s, u"C.inputColor"_s);
    const QString file = write(u"Greedy.qtz"_s, plist::write(root.file(), plist::Format::Binary));
    const Outcome outcome = play({file, u"--size"_s, u"8x8"_s, u"--frames"_s, u"1"_s});
    EXPECT_EQ(outcome.status, 3);
    if (outcome.errors.contains("OpenGL")) {
        GTEST_SKIP() << "there is no OpenGL here";
    }
    EXPECT_TRUE(outcome.errors.contains("Greedy.qtz was ended because it wanted more than 512 MiB"))
        << outcome.errors.toStdString();
}
#endif

} // namespace
} // namespace tarnwell::compositions::test

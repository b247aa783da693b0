#include "foundation/StandardErrorLog.h"

#include <QFile>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using tarnwell::foundation::LineWriter;

TEST(LineWriter, DropsAndCountsWhatAStalledReaderLeavesNoRoomFor)
{
    int pipe[2];
    ASSERT_EQ(::pipe2(pipe, O_CLOEXEC), 0);
    LineWriter writer(pipe[1]);
    constexpr int count = 20000;
    for (int i = 0; i < count; ++i)
        writer.write(u"line %1 "_s.arg(i) + u"x"_s.repeated(100));
    EXPECT_FALSE(writer.flush(0));

    QFile reader;
    ASSERT_TRUE(reader.open(pipe[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    int lines = 0, dropped = 0;
    while (lines + dropped < count) {
        const QByteArray line = reader.readLine();
        ASSERT_TRUE(line.endsWith('\n'));
        if (line.startsWith("line "))
            EXPECT_TRUE(line.startsWith("line " + QByteArray::number(dropped + lines++) + ' '));
        else
            dropped += line.mid(line.lastIndexOf(' ') + 1).trimmed().toInt();
    }
    EXPECT_EQ(lines + dropped, count);
    EXPECT_GT(dropped, 0);
    EXPECT_TRUE(writer.flush(60000));
    writer.write(u"there is room again"_s);
    EXPECT_EQ(reader.readLine(), "there is room again\n");
    ::close(pipe[1]);
}

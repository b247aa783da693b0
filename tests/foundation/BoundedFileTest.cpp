#include "foundation/BoundedFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cerrno>

namespace tarnwell::foundation {

using namespace Qt::StringLiterals;

TEST(BoundedFile, ReadsPlainFilesAndWaitsForNothing)
{
    const QTemporaryDir folder;
    const auto path = [&folder](QStringView name) { return folder.filePath(name.toString()); };
    QFile file(path(u"ten"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("0123456789") == 10);
    file.close();
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(u"pipe")).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(path(u"pipe"), path(u"link to the pipe")));
    ASSERT_TRUE(QFile::link(path(u"ten"), path(u"link to the ten")));

    const struct
    {
        const char *name;
        QString path;
        qint64 maximumSize;
        FileReadError::Reason reason;
    } rows[] = {
        {"as large as allowed", path(u"ten"), 10, FileReadError::None},
        {"through a link", path(u"link to the ten"), 10, FileReadError::None},
        {"one byte more", path(u"ten"), 9, FileReadError::TooLarge},
        {"missing", path(u"none"), 10, FileReadError::System},
        {"name with a zero", path(u"ten") + QChar() + u"more"_s, 10, FileReadError::System},
        {"folder", folder.path(), 10, FileReadError::Folder},
        {"pipe", path(u"pipe"), 10, FileReadError::NotAFile},
        {"link to a pipe", path(u"link to the pipe"), 10, FileReadError::NotAFile},
        {"endless device", u"/dev/zero"_s, 10, FileReadError::NotAFile},
        {"kernel file that says it is empty", u"/proc/self/status"_s, 100'000, FileReadError::None},
        {"kernel file beyond the limit", u"/proc/self/status"_s, 100, FileReadError::TooLarge},
    };
    for (const auto &row : rows) {
        FileReadError error;
        const auto bytes = readBoundedFile(row.path, row.maximumSize, &error);
        EXPECT_EQ(error.reason, row.reason) << row.name;
        EXPECT_EQ(bytes.has_value(), row.reason == FileReadError::None) << row.name;
        EXPECT_EQ(error.systemCode, row.reason == FileReadError::System ? ENOENT : 0) << row.name;
    }
    EXPECT_EQ(readBoundedFile(path(u"ten"), 10), "0123456789");
}

} // namespace tarnwell::foundation

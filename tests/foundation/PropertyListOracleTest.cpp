// Exchanges files with two other implementations, run as the programs that they are.

#include "foundation/plist/PropertyList.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

namespace tarnwell::plist {
namespace {

using namespace Qt::StringLiterals;

struct OracleRow
{
    QString name; // of the file, too
    QString python;
    Value value;
};

const OracleRow rows[] = {
    {u"booleans"_s, u"[True, False]"_s, Array{true, false}},
    {u"integers"_s, u"[0, 255, 256, 65536, 2**32, 2**63 - 1, 2**63, 2**64 - 1, -1, -2**63]"_s,
     Array{0, 255, 256, 65536, quint64(1) << 32, std::numeric_limits<qint64>::max(),
           quint64(1) << 63, ~quint64(0), -1, std::numeric_limits<qint64>::min()}},
    {u"reals"_s, u"[1.0, -0.0, 0.1, 5e-324, float('nan'), float('inf'), float('-inf')]"_s,
     Array{1.0, -0.0, 0.1, 5e-324, std::numeric_limits<double>::quiet_NaN(),
           std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}},
    {u"strings"_s, u"['', 'Save As\\u2026', '\\U0001f600', '<&>', ' \\t\\n ', 'x' * 300]"_s,
     Array{u""_s, u"Save As…"_s, u"😀"_s, u"<&>"_s, u" \t\n "_s, QString(300, u'x')}},
    {u"data"_s, u"[b'', bytes(range(256))]"_s,
     [] {
         QByteArray bytes;
         for (int i = 0; i < 256; ++i)
             bytes += char(i);
         return Array{QByteArray(), bytes};
     }()},
    {u"dates"_s, u"[datetime.datetime(2001, 1, 1), datetime.datetime(1970, 1, 1, 0, 0, 1)]"_s,
     Array{Date{0.0}, Date{-978'307'199.0}}},
    {u"nested"_s, u"{'a': {'b': [{}, []], 'c': {'d': 1}}, 'e': 2}"_s,
     Dictionary{{u"a"_s, Dictionary{{u"b"_s, Array{Dictionary(), Array()}},
                                    {u"c"_s, Dictionary{{u"d"_s, 1}}}}},
                {u"e"_s, 2}}},
    {u"uids"_s, u"[plistlib.UID(5), plistlib.UID(70000)]"_s, Array{Uid{5}, Uid{70000}}},
};

/// Writes "<name>.binary.in" and ".xml.in" for each name and expression on its command line.
constexpr auto writeWithPython = R"(
import datetime, plistlib, sys
for name, expression in zip(sys.argv[1::2], sys.argv[2::2]):
    for label, format in (('binary', plistlib.FMT_BINARY), ('xml', plistlib.FMT_XML)):
        if label == 'binary' or 'UID' not in expression:
            with open(name + '.' + label + '.in', 'wb') as file:
                plistlib.dump(eval(expression), file, fmt=format)
)"_L1;

/// Reads ".binary.out" and ".xml.out" likewise, and prints what is not what it should be.
constexpr auto readWithPython = R"(
import datetime, plistlib, sys
for name, expression in zip(sys.argv[1::2], sys.argv[2::2]):
    for label in ('binary', 'xml'):
        if label == 'binary' or 'UID' not in expression:
            with open(name + '.' + label + '.out', 'rb') as file:
                got, expected = repr(plistlib.load(file)), repr(eval(expression))
            if got != expected:
                print(name, label, got, 'instead of', expected)
)"_L1;

class PropertyListOracle : public testing::Test
{
protected:
    /// What a program prints, with what it complains about.
    QByteArray run(const QString &program, const QStringList &arguments) const
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.setWorkingDirectory(m_folder.path());
        process.start(program, arguments);
        const bool ended = process.waitForFinished(60'000) && process.exitCode() == 0;
        EXPECT_TRUE(ended) << program.toStdString() << ": " << process.errorString().toStdString();
        return process.readAll();
    }

    QByteArray runPython(QLatin1StringView script) const
    {
        QStringList arguments{u"-c"_s, script};
        for (const OracleRow &row : rows)
            arguments << row.name << row.python;
        return run(u"python3"_s, arguments);
    }

    QByteArray load(const QString &name) const
    {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return file.readAll();
    }

    void store(const QString &name, const QByteArray &bytes) const
    {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    /// Equality does not tell 1 from 1.0: the bytes do.
    static void expectSame(const QByteArray &bytes, const Value &expected)
    {
        ReadError error;
        const Value value = read(bytes, &error);
        EXPECT_EQ(value, expected) << error.message.toStdString();
        EXPECT_EQ(write(value, Format::Binary), write(expected, Format::Binary));
    }

private:
    QTemporaryDir m_folder;
};

TEST_F(PropertyListOracle, ReadsWhatPlistlibWrites)
{
    EXPECT_EQ(runPython(writeWithPython).toStdString(), "");
    for (const OracleRow &row : rows) {
        SCOPED_TRACE(row.name.toStdString());
        expectSame(load(row.name + u".binary.in"_s), row.value);
        if (row.name != u"uids")
            expectSame(load(row.name + u".xml.in"_s), row.value);
    }
}

TEST_F(PropertyListOracle, WritesWhatPlistlibReads)
{
    for (const OracleRow &row : rows) {
        store(row.name + u".binary.out"_s, write(row.value, Format::Binary));
        store(row.name + u".xml.out"_s, write(row.value, Format::Xml));
    }
    EXPECT_EQ(runPython(readWithPython).toStdString(), "");
}

TEST_F(PropertyListOracle, AgreesWithPlistutilBothWays)
{
    for (const OracleRow &row : rows) {
        SCOPED_TRACE(row.name.toStdString());
        store(u"own.binary"_s, write(row.value, Format::Binary));
        run(u"plistutil"_s, {u"-i"_s, u"own.binary"_s, u"-o"_s, u"its.xml"_s, u"-f"_s, u"xml"_s});
        store(u"own.xml"_s, write(row.value, Format::Xml));
        run(u"plistutil"_s, {u"-i"_s, u"own.xml"_s, u"-o"_s, u"its.binary"_s, u"-f"_s, u"bin"_s});
        if (row.name == u"reals")
            continue; // it shortens what it prints of them
        expectSame(load(u"its.xml"_s), row.value);
        if (row.name != u"uids") // which it takes for dictionaries in XML
            expectSame(load(u"its.binary"_s), row.value);
    }
}

} // namespace
} // namespace tarnwell::plist

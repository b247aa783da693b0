#pragma once

#include "support/TemporaryHome.h"

namespace tarnwell::tests {

/// A pipe through which a started program reports its arguments. Reading waits for the report, so
/// that no test has to guess how long a start takes.
class ArgumentReport
{
public:
    explicit ArgumentReport(const TemporaryHome &home, const QString &name = QStringLiteral("x"))
        : m_path(home.path(QStringLiteral("/report-") + name))
    {
        QDir().mkpath(home.root());
        ::mkfifo(QFile::encodeName(m_path).constData(), 0600); // it may be there already
    }

    /// A program that reports the number of its arguments and each of them, a bar after each.
    QByteArray script() const
    {
        return "#!/bin/sh\nprintf '%s|' \"$#\" \"$@\" > '" + QFile::encodeName(m_path) + "'\n";
    }

    QByteArray read() const
    {
        QFile file(m_path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        QByteArray all;
        for (char c = 0; file.read(&c, 1) == 1;)
            all.append(c);
        return all;
    }

private:
    QString m_path;
};

} // namespace tarnwell::tests

#pragma once

#include "foundation/plist/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace tarnwell::tests {

/// A machine of real folders: a root prefix and a home beside it, gone with the object. Names that
/// begin with "~/" lie in the home, all others in the root.
class TemporaryHome
{
public:
    TemporaryHome()
    {
        EXPECT_TRUE(m_folder.isValid());
        QDir().mkpath(home());
        QDir().mkpath(root());
    }

    QString home() const { return m_folder.path() + QStringLiteral("/home"); }
    QString root() const { return m_folder.path() + QStringLiteral("/root"); }

    QString path(const QString &name) const
    {
        return name.startsWith(QLatin1String("~/")) ? home() + name.mid(1) : root() + name;
    }

    QString makeFolder(const QString &name) const
    {
        EXPECT_TRUE(QDir().mkpath(path(name)));
        return path(name);
    }

    QString write(const QString &name, const QByteArray &bytes, bool executable = false) const
    {
        const QString place = path(name);
        QDir().mkpath(QFileInfo(place).path());
        QFile file(place);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(place);
        file.write(bytes);
        file.close();
        if (executable)
            file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
        return place;
    }

    QString writeInfo(const QString &name, const plist::Dictionary &info,
                      plist::Format format = plist::Format::Xml) const
    {
        return write(name, plist::write(info, format));
    }

    /// An application bundle with an identifier and, maybe, type and creator ("APPLPens").
    QString makeApplication(const QString &name, const QString &identifier,
                            const QByteArray &pkgInfo = {}) const
    {
        plist::Dictionary info{{QStringLiteral("CFBundleExecutable"), QStringLiteral("run")}};
        if (!identifier.isEmpty())
            info.insert(QStringLiteral("CFBundleIdentifier"), identifier);
        writeInfo(name + QStringLiteral("/Contents/Info.plist"), info);
        write(name + QStringLiteral("/Contents/Linux/run"), "#!/bin/sh\n", true);
        if (!pkgInfo.isEmpty())
            write(name + QStringLiteral("/Contents/PkgInfo"), pkgInfo);
        return path(name);
    }

    void move(const QString &from, const QString &to) const
    {
        QDir().mkpath(QFileInfo(path(to)).path());
        EXPECT_TRUE(QDir().rename(path(from), path(to)));
    }

    void remove(const QString &name) const
    {
        EXPECT_TRUE(QFileInfo(path(name)).isDir() ? QDir(path(name)).removeRecursively()
                                                  : QFile::remove(path(name)));
    }

    /// Dates an item back to when nobody was watching.
    static void makeOld(const QString &place)
    {
        const timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
        EXPECT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(place).constData(), times, 0), 0);
    }

private:
    QTemporaryDir m_folder;
};

} // namespace tarnwell::tests

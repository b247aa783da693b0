#pragma once

#include "desktop/FilePreferences.h"
#include "fakes/FakeClock.h"
#include "foundation/plist/Dictionary.h"
#include "foundation/plist/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tarnwell::tests {

/// A home folder with one preference domain in question.
class PreferencesHome : public testing::Test
{
protected:
    static inline const QString domain = QStringLiteral("com.varnit.tarnwell");

    QString home() const { return m_home.path(); }
    QString folder() const { return home() + QStringLiteral("/Library/Preferences"); }
    QString fileName() const { return domain + QStringLiteral(".plist"); }
    QString path() const { return folder() + u'/' + fileName(); }

    static void writeFile(const QString &path, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    static QByteArray readFile(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void storeDomain(const plist::Dictionary &values) const
    {
        writeFile(path(), plist::write(values, plist::Format::Binary));
    }
    plist::Dictionary storedDomain() const { return plist::read(readFile(path())).toDictionary(); }

    /// Every name in the preferences folder, hidden ones too, except the lock's.
    QStringList filesInFolder() const
    {
        QStringList names = QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden |
                                                     QDir::System | QDir::NoDotAndDotDot);
        names.removeOne(u'.' + fileName() + QStringLiteral(".lock"));
        return names;
    }

    fakes::FakeClock clock;

private:
    /// In memory where there is such a folder: thousands of flushed writes take long on a disk.
    static QString temporaryFolder()
    {
        const QString memory = QStringLiteral("/dev/shm");
        return QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
    }

    QTemporaryDir m_home{temporaryFolder() + QStringLiteral("/tarnwell-home-XXXXXX")};
};

} // namespace tarnwell::tests

#pragma once

#include "ports/FileStore.h"

#include <map>

namespace tarnwell::fakes {

/// What a test sees and decides of FakeFileStore.
struct FakeFileStoreControl
{
    std::map<QString, QByteArray> files;
    QString writeError; ///< why the next writes fail; empty when they don't
};

/// Files in memory.
class FakeFileStore final : public ports::FileStore
{
public:
    /// The control is the test's and lives longer.
    explicit FakeFileStore(FakeFileStoreControl &control)
        : m_control(control)
    {}

    QStringList filesInFolder(const QString &folder) const override
    {
        QStringList names;
        for (const auto &[path, bytes] : m_control.files) {
            if (path.section(u'/', 0, -2) == folder)
                names.append(path.section(u'/', -1));
        }
        return names;
    }

    std::optional<QByteArray> readFile(const QString &path, qint64 sizeLimit,
                                       QString *errorMessage) const override
    {
        const auto found = m_control.files.find(path);
        if (found == m_control.files.end() || found->second.size() > sizeLimit) {
            *errorMessage = QStringLiteral("No such file");
            return std::nullopt;
        }
        return found->second;
    }

    bool writeFile(const QString &path, const QByteArray &bytes, QString *errorMessage) override
    {
        if (!m_control.writeError.isEmpty()) {
            *errorMessage = m_control.writeError;
            return false;
        }
        m_control.files[path] = bytes;
        return true;
    }

    bool removeFile(const QString &path) override { return m_control.files.erase(path) > 0; }

private:
    FakeFileStoreControl &m_control;
};

} // namespace tarnwell::fakes

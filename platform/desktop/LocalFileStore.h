#pragma once

#include "ports/FileStore.h"

namespace tarnwell::desktop {

/// Files on this machine. A write goes to a temporary file beside, which then takes the place; file
/// and folder are on the disk when it returns.
class LocalFileStore final : public ports::FileStore
{
public:
    QStringList filesInFolder(const QString &folder) const override;
    std::optional<QByteArray> readFile(const QString &path, qint64 sizeLimit,
                                       QString *errorMessage) const override;
    bool writeFile(const QString &path, const QByteArray &bytes, QString *errorMessage) override;
    bool removeFile(const QString &path) override;
};

} // namespace tarnwell::desktop

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tarnwell::foundation {

/// The contents of a plain file of at most maxSize bytes. Nothing when there is no such file, when
/// it cannot be read, when it is larger, or when it is no plain file: a pipe or a device that
/// somebody put there is never waited for.
std::optional<QByteArray> readBoundedFile(const QString &path, qint64 maxSize);

} // namespace tarnwell::foundation

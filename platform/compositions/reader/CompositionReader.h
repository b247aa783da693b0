#pragma once

#include "compositions/model/Composition.h"

#include <QByteArrayView>

#include <memory>

namespace tarnwell::compositions {

/// Reads a composition file, or the property list that it holds. Null when it is no composition,
/// with the reason if wanted. Classes, keys and types that nobody knows are kept as they are;
/// connections to nowhere do no harm.
std::shared_ptr<const Composition> readComposition(QByteArrayView file, QString *error = nullptr);
inline std::shared_ptr<const Composition> readComposition(const QByteArray &file,
                                                          QString *error = nullptr)
{
    return readComposition(QByteArrayView(file), error);
}
std::shared_ptr<const Composition> readComposition(const plist::Value &list,
                                                   QString *error = nullptr);

} // namespace tarnwell::compositions

#include "foundation/plist/PropertyList.h"

#include "foundation/plist/BinaryReader.h"
#include "foundation/plist/BinaryWriter.h"
#include "foundation/plist/Extent.h"
#include "foundation/plist/XmlReader.h"
#include "foundation/plist/XmlWriter.h"

#include <algorithm>

namespace tarnwell::plist {

namespace {

template <typename Reader>
Value readWith(Reader &&reader, ReadError *error)
{
    Value value = reader.read();
    if (value.isNull() && error)
        error->message = reader.errorMessage();
    return value;
}

} // namespace

Value read(QByteArrayView bytes, ReadError *error)
{
    if (bytes.startsWith("bplist"))
        return readWith(detail::BinaryReader(bytes), error);
    return readWith(detail::XmlReader(bytes), error);
}

QByteArray write(const Value &value, Format format)
{
    if (value.isNull())
        return {};
    const std::optional<detail::Extent> extent = detail::extentOf(value);
    if (!extent || extent->expanded > std::max(maximumExpansion, extent->stored))
        return {};
    if (format == Format::Xml)
        return detail::writeXml(value);

    const QByteArray bytes = detail::BinaryWriter().write(value);
    // Equal strings are stored once, so that the file can be small enough for its reader to balk.
    if (extent->expanded > std::max(maximumExpansion, quint64(bytes.size())))
        return {};
    return bytes;
}

} // namespace tarnwell::plist

#include "PropertyListProperties.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(data, qsizetype(size));
    if (bytes.startsWith("bplist"))
        return 0; // another target's
    tarnwell::plist::ReadError error;
    const auto value = tarnwell::plist::read(bytes, &error);
    tarnwell::fuzz::require(value.isNull() != error.message.isEmpty(),
                            "there is a value or an error");
    if (!value.isNull())
        tarnwell::fuzz::checkProperties(value);
    return 0;
}

#include "PropertyListProperties.h"

#include <cstdint>
#include <string>

/// Puts the signature before the bytes, so that the fuzzer need not find it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::string bytes(reinterpret_cast<const char *>(data), size);
    if (bytes.compare(0, 8, "bplist00") != 0)
        bytes.insert(0, "bplist00");
    tarnwell::plist::ReadError error;
    const auto value = tarnwell::plist::read(QByteArrayView(bytes.data(), bytes.size()), &error);
    tarnwell::fuzz::require(value.isNull() != error.message.isEmpty(),
                            "there is a value or an error");
    if (!value.isNull())
        tarnwell::fuzz::checkProperties(value);
    return 0;
}

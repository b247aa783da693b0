#pragma once

#include "foundation/plist/Extent.h"
#include "foundation/plist/PropertyList.h"

#include <cstdio>
#include <cstdlib>

namespace tarnwell::fuzz {

inline void require(bool holds, const char *property)
{
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", property);
        std::abort();
    }
}

/// What holds for every property list that could be read.
inline void checkProperties(const plist::Value &value)
{
    using namespace plist;
    require(value == Value(value), "a value equals its copy");
    require(description(value).size() <= 16'385, "the description is short");

    const QByteArray binary = write(value, Format::Binary);
    const Value reread = read(binary);
    require(!reread.isNull() && reread == value, "the binary form reads as the same value");
    require(write(reread, Format::Binary) == binary, "a value has one binary form");

    // The text of what shares much takes long to write, and shows nothing more.
    const auto extent = detail::extentOf(value);
    if (!extent || extent->expanded > 1'000)
        return;
    const QByteArray xml = write(value, Format::Xml);
    const Value plain = read(xml);
    require(!plain.isNull(), "the XML form can be read");
    // It may have lost what XML has no place for, but only once.
    const Value again = read(write(plain, Format::Xml));
    require(!again.isNull() && again == plain, "the XML form of what XML can hold loses nothing");
}

} // namespace tarnwell::fuzz

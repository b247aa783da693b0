#pragma once

#include <utility>

/// A field with a plain getter and setter, in a class whose widgets are borrowed from an interface
/// file: a pointer among them is never owned. Members declared after it are private.
#define TARNWELL_FIELD(Type, name, setter)                                                         \
public:                                                                                            \
    Type name() const                                                                              \
    {                                                                                              \
        return m_##name;                                                                           \
    }                                                                                              \
    void setter(Type value)                                                                        \
    {                                                                                              \
        m_##name = std::move(value);                                                               \
    }                                                                                              \
                                                                                                   \
private:                                                                                           \
    Type m_##name{};

#pragma once

#include <QString>

#include <optional>

namespace tarnwell::ports {

/// A four-character code such as 'sysv' as the number it stands for.
constexpr quint32 fourCharacterCode(const char (&text)[5])
{
    quint32 code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

/// Facts about this process and the system it runs on.
class SystemFacts
{
public:
    virtual ~SystemFacts() = default;

    virtual quint32 realUserId() const = 0;
    virtual quint32 effectiveUserId() const = 0;

    /// The path of the bundle or, where there is none, of the executable of this process.
    virtual QString mainBundlePath() const = 0;

    /// The system's answer to a selector; nothing when it knows no answer. Known are "sysv", the
    /// level of these interfaces (0xMMmb), and "sys1" to "sys3", the numbers of the system version.
    virtual std::optional<qint32> gestalt(quint32 selector) const = 0;
};

} // namespace tarnwell::ports

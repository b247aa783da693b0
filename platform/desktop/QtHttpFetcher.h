#pragma once

#include "ports/HttpFetcher.h"

#include <chrono>

namespace tarnwell::desktop {

/// How much of the user's patience and memory one document may take.
struct HttpLimits
{
    /// From the call to its return, redirects included. The pane stands still meanwhile.
    std::chrono::milliseconds time{4'000};
    qint64 size = 8 * 1024 * 1024; ///< bytes of the body
    int redirects = 5;
};

/// Fetches by the toolkit's network access. Redirects are followed to the same host alone, and only
/// over an encrypted connection; nothing is kept between two calls, cookies neither.
///
/// The work is done in a thread of its own, which ends with the call. So nothing of the caller's
/// runs while it waits, as it would in a nested event loop.
class QtHttpFetcher final : public ports::HttpFetcher
{
public:
    /// Certificates (PEM) are trusted besides those of the system.
    explicit QtHttpFetcher(const HttpLimits &limits = {}, const QByteArray &certificates = {})
        : m_limits(limits)
        , m_certificates(certificates)
    {}

    std::optional<QByteArray> fetch(const QUrl &url) override;

private:
    HttpLimits m_limits;
    QByteArray m_certificates;
};

} // namespace tarnwell::desktop

#pragma once

#include "ports/HttpFetcher.h"

#include <QString>

#include <chrono>

namespace tarnwell::desktop {

/// How much of the user's patience and memory one list may take.
struct HttpLimits
{
    std::chrono::milliseconds time{4'000}; ///< from the beginning to the end, redirects included
    qint64 size = 8 * 1024 * 1024;         ///< bytes of the answer, and of the list made of it
    qint64 headerSize = 64 * 1024;         ///< bytes of all headers, those of redirects included
    int redirects = 5;
};

/// Fetches by a program of its own, tarnwell-fetch-list. So what a stranger sends is never read in
/// this process, which needs no network library either; and when the time is over the program is
/// killed, whatever it is waiting for or busy with.
///
/// Connections are encrypted. Only this machine itself, by the name localhost or the address of the
/// loopback, may be asked over a plain one. Redirects lead to encrypted connections alone, to any
/// host. Nothing is kept between two calls.
class ProcessHttpFetcher final : public ports::HttpFetcher
{
public:
    /// The path of the program. A file of certificates (PEM) takes the place of the authorities
    /// that the system trusts.
    explicit ProcessHttpFetcher(const QString &program, const HttpLimits &limits = {},
                                const QString &authorities = {})
        : m_program(program)
        , m_limits(limits)
        , m_authorities(authorities)
    {}

    std::optional<QByteArray> fetchList(const QUrl &url) override;
    std::unique_ptr<ports::ListFetch> startFetchingList(const QUrl &url, Fetched fetched) override;

private:
    QStringList arguments(const QUrl &url) const;

    QString m_program;
    HttpLimits m_limits;
    QString m_authorities;
};

} // namespace tarnwell::desktop

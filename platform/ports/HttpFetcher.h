#pragma once

#include <QByteArray>
#include <QUrl>

#include <optional>

namespace tarnwell::ports {

/// Gets small documents from web servers.
class HttpFetcher
{
public:
    virtual ~HttpFetcher() = default;

    /// The whole body of a successful answer; nothing when there is none within the fetcher's
    /// limits. Returns only then, so it is called where the user waits for nothing else.
    virtual std::optional<QByteArray> fetch(const QUrl &url) = 0;
};

} // namespace tarnwell::ports

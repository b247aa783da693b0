#pragma once

#include <QByteArray>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

namespace tarnwell::ports {

/// A list on its way. Destroying it gives the list up: nothing is told of it any more.
class ListFetch
{
public:
    virtual ~ListFetch() = default;
};

/// Gets lists from web servers: property lists whose root is an array.
///
/// A list comes as the bytes of an XML property list, in whatever format it was sent. There is none
/// when the fetcher's limits do not allow one or anything else is in the way.
class HttpFetcher
{
public:
    virtual ~HttpFetcher() = default;

    /// Returns only when the list is there or cannot be had, so it is called where the user waits
    /// for nothing else.
    virtual std::optional<QByteArray> fetchList(const QUrl &url) = 0;

    using Fetched = std::function<void(const std::optional<QByteArray> &list)>;

    /// Returns at once. What came is told once, from the run loop; the fetch must not be destroyed
    /// from within that call.
    [[nodiscard]] virtual std::unique_ptr<ListFetch> startFetchingList(const QUrl &url,
                                                                       Fetched fetched) = 0;
};

} // namespace tarnwell::ports

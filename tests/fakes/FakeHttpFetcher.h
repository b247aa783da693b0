#pragma once

#include "ports/HttpFetcher.h"

#include <QList>

namespace tarnwell::fakes {

/// What a test sees and decides of FakeHttpFetcher.
struct FakeHttpFetcherControl
{
    QList<QUrl> fetched;
    std::optional<QByteArray> body; ///< what every address answers with
};

/// A web that a test makes up.
class FakeHttpFetcher final : public ports::HttpFetcher
{
public:
    FakeHttpFetcherControl &control() { return m_control; }

    std::optional<QByteArray> fetch(const QUrl &url) override
    {
        m_control.fetched.append(url);
        return m_control.body;
    }

private:
    FakeHttpFetcherControl m_control;
};

} // namespace tarnwell::fakes

#pragma once

#include "ports/HttpFetcher.h"

#include <QList>

#include <utility>

namespace tarnwell::fakes {

/// What a test sees and decides of FakeHttpFetcher.
struct FakeHttpFetcherControl
{
    QList<QUrl> fetched;
    std::optional<QByteArray> list;      ///< what every address answers with
    ports::HttpFetcher::Fetched waiting; ///< for the list; empty for nobody

    /// Ends the fetch in the background. False when there is none.
    bool answer()
    {
        const auto told = std::exchange(waiting, nullptr);
        if (told)
            told(list);
        return told != nullptr;
    }
};

/// A web that a test makes up.
class FakeHttpFetcher final : public ports::HttpFetcher
{
public:
    FakeHttpFetcherControl &control() { return m_control; }

    std::optional<QByteArray> fetchList(const QUrl &url) override
    {
        m_control.fetched.append(url);
        return m_control.list;
    }

    std::unique_ptr<ports::ListFetch> startFetchingList(const QUrl &url, Fetched fetched) override
    {
        m_control.fetched.append(url);
        m_control.waiting = std::move(fetched);
        return std::make_unique<Fetch>(m_control);
    }

private:
    class Fetch final : public ports::ListFetch
    {
    public:
        explicit Fetch(FakeHttpFetcherControl &control)
            : m_control(control)
        {}
        ~Fetch() override { m_control.waiting = nullptr; }
        Q_DISABLE_COPY_MOVE(Fetch)

    private:
        FakeHttpFetcherControl &m_control;
    };

    FakeHttpFetcherControl m_control;
};

} // namespace tarnwell::fakes

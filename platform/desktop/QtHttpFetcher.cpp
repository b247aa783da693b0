#include "desktop/QtHttpFetcher.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QThread>
#include <QTimer>

#include <memory>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

/// What waits in the reply for us to read it: the sender is slowed down beyond that.
constexpr qint64 bufferSize = 64 * 1024;

bool isWebAddress(const QUrl &url)
{
    return url.isValid() && (url.scheme() == "http"_L1 || url.scheme() == "https"_L1) &&
           !url.host().isEmpty();
}

bool mayRedirect(const QUrl &from, const QUrl &to)
{
    return to.scheme() == "https"_L1 && to.host() == from.host();
}

QNetworkRequest requestFor(const QUrl &url, const HttpLimits &limits,
                           const QByteArray &certificates)
{
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, u"Tarnwell"_s);
    // The size is limited as it is sent, so nothing may swell afterwards.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setMaximumRedirectsAllowed(limits.redirects);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    if (!certificates.isEmpty()) {
        QSslConfiguration ssl = QSslConfiguration::defaultConfiguration();
        ssl.addCaCertificates(QSslCertificate::fromData(certificates, QSsl::Pem));
        request.setSslConfiguration(ssl);
    }
    return request;
}

std::optional<QByteArray> fetchInThisThread(const QUrl &url, const HttpLimits &limits,
                                            const QByteArray &certificates)
{
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    limit.setTimerType(Qt::PreciseTimer);
    QObject::connect(&limit, &QTimer::timeout, &loop, [&loop] { loop.exit(1); });
    limit.start(limits.time);

    QNetworkAccessManager manager;
    const std::unique_ptr<QNetworkReply> reply(manager.get(requestFor(url, limits, certificates)));
    reply->setReadBufferSize(bufferSize);
    QByteArray body;
    const auto take = [&] {
        body += reply->readAll();
        if (body.size() > limits.size)
            loop.exit(1);
    };
    QObject::connect(reply.get(), &QNetworkReply::metaDataChanged, &loop, [&] {
        if (reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > limits.size)
            loop.exit(1);
    });
    QObject::connect(reply.get(), &QIODevice::readyRead, &loop, take);
    QObject::connect(reply.get(), &QNetworkReply::redirected, &loop, [&](const QUrl &target) {
        if (mayRedirect(url, reply->url().resolved(target)))
            Q_EMIT reply->redirectAllowed();
        else
            loop.exit(1);
    });
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, [&loop] { loop.exit(0); });
    if (loop.exec() != 0 || reply->error() != QNetworkReply::NoError)
        return std::nullopt;
    take();
    return body.size() > limits.size ? std::nullopt : std::optional(body);
}

} // namespace

std::optional<QByteArray> QtHttpFetcher::fetch(const QUrl &url)
{
    if (!isWebAddress(url))
        return std::nullopt;
    std::optional<QByteArray> body;
    const std::unique_ptr<QThread> worker(
        QThread::create([&] { body = fetchInThisThread(url, m_limits, m_certificates); }));
    worker->start();
    worker->wait(); // its own limits end it
    return body;
}

} // namespace tarnwell::desktop

// SPDX-License-Identifier: MIT
#include "platform/network/HTTPTransfer_p.h"

#include "platform/network/HTTPMessage_p.h"
#include "platform/network/NSURLErrorCodes.h"
#include "platform/network/TransferError_p.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QSslCertificate>
#include <QtNetwork/QSslConfiguration>

#include <algorithm>
#include <limits>
#include <utility>

namespace platform {

namespace {

// Of bytes that have come and wait for their reader.
constexpr qint64 readBufferSize = 4 * 1024 * 1024;
// Of a chunked body that nobody reads.
constexpr qint64 mostUnread = 16 * 1024 * 1024;
// A body that unpacks to more than this and to more than 40 times its size is an attack.
constexpr qint64 decompressedSizeThreshold = 64 * 1024 * 1024;

QByteArray bytes(const std::string& text)
{
    return QByteArray::fromStdString(text);
}

// The system's certificates, or those that the environment names instead, as for other programs.
const QSslConfiguration& secureConfiguration()
{
    static const auto configuration = [] {
        auto result = QSslConfiguration::defaultConfiguration();
        if (auto file = qEnvironmentVariable("SSL_CERT_FILE"); !file.isEmpty())
            result.setCaCertificates(QSslCertificate::fromPath(file, QSsl::Pem));
        return result;
    }();
    return configuration;
}

QNetworkRequest libraryRequest(const URLRequest& request, HTTPTransfer::Encoding encoding)
{
    QNetworkRequest result(QUrl::fromEncoded(bytes(request.url.absoluteString())));
    using Attribute = QNetworkRequest::Attribute;
    result.setAttribute(Attribute::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    result.setAttribute(Attribute::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    result.setAttribute(Attribute::CacheSaveControlAttribute, false);
    result.setAttribute(Attribute::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(Attribute::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(Attribute::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    result.setDecompressedSafetyCheckThreshold(decompressedSizeThreshold);
    if (request.url.scheme() == "https") {
        auto secure = secureConfiguration();
        secure.setAllowedNextProtocols({"h2", "http/1.1"});
        result.setSslConfiguration(secure);
    }
    result.setRawHeader("User-Agent", "zelk");
    // A field of ours keeps the library from asking for compression and from undoing it.
    if (encoding == HTTPTransfer::Encoding::asStored)
        result.setRawHeader("Accept-Encoding", "identity");
    for (auto& [name, value] : request.allHTTPHeaderFields)
        result.setRawHeader(bytes(name), bytes(value));
    return result;
}

QNetworkReply* send(QNetworkAccessManager& access, const URLRequest& request, HTTPTransfer::Encoding encoding)
{
    auto prepared = libraryRequest(request, encoding);
    if (request.httpBody.empty() && request.httpMethod == "GET")
        return access.get(prepared);
    if (request.httpBody.empty() && request.httpMethod == "HEAD")
        return access.head(prepared);
    return access.sendCustomRequest(prepared, bytes(request.httpMethod), bytes(request.httpBody));
}

} // namespace

struct HTTPTransfer::State {
    State(std::shared_ptr<QNetworkAccessManager> access, const URLRequest& request, Encoding encoding,
          Handlers handlers);

    void handleHead();
    void pump();
    void scheduleTimeout(qint64 milliseconds);
    void checkTimeout();
    std::optional<long> outcome() const;
    void end(std::optional<long> error);

    // fixed after construction
    std::shared_ptr<QNetworkAccessManager> access;
    URL url;
    qint64 timeout = 0; // milliseconds, 0 is none
    Handlers handlers;
    std::unique_ptr<QNetworkReply> reply;

    QElapsedTimer sinceActivity;
    QTimer timer;
    std::optional<long> certificateError;
    std::optional<std::int64_t> expectedLength;
    std::int64_t readLength = 0;
    bool hasHead = false;
    bool isPaused = false;
    bool isFinished = false;
    bool hasEnded = false;
    // Expires with this: handlers may let go of it.
    std::shared_ptr<State*> alive = std::make_shared<State*>(this);
};

HTTPTransfer::State::State(std::shared_ptr<QNetworkAccessManager> manager, const URLRequest& request,
                           Encoding encoding, Handlers given)
    : access(std::move(manager))
    , url(request.url)
    , handlers(std::move(given))
{
    constexpr double longest = std::numeric_limits<int>::max();
    if (auto seconds = request.timeoutInterval.count(); seconds > 0)
        timeout = static_cast<qint64>(std::clamp(seconds * 1000, 1.0, longest));

    reply.reset(send(*access, request, encoding));
    auto* source = reply.get();
    QObject::connect(source, &QNetworkReply::metaDataChanged, &timer, [this] { handleHead(); });
    QObject::connect(source, &QNetworkReply::readyRead, &timer, [this] { pump(); });
    QObject::connect(source, &QNetworkReply::requestSent, &timer, [this] { sinceActivity.restart(); });
    QObject::connect(source, &QNetworkReply::uploadProgress, &timer, [this] { sinceActivity.restart(); });
    QObject::connect(source, &QNetworkReply::sslErrors, &timer, [this](const QList<QSslError>& errors) {
        certificateError = certificateErrorCode(errors);
    });
    QObject::connect(source, &QNetworkReply::finished, &timer, [this] {
        isFinished = true;
        handleHead();
    });

    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { checkTimeout(); });
    sinceActivity.start();
    scheduleTimeout(timeout);
}

void HTTPTransfer::State::handleHead()
{
    sinceActivity.restart();
    auto status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!hasHead && status.isValid()) {
        hasHead = true;
        HTTPHeaderFields fields;
        for (auto& [name, value] : reply->rawHeaderPairs()) {
            auto line = value.trimmed();
            if (isValidHTTPHeaderField(name.toStdString(), line.toStdString()))
                addHTTPHeaderField(fields, name.toStdString(), line.toStdString());
        }
        bool isHTTP2 = reply->attribute(QNetworkRequest::Http2WasUsedAttribute).toBool();
        bool isChunked = !isHTTP2 && fields.contains("Transfer-Encoding");
        auto head = std::make_shared<HTTPURLResponse>(url, status.toInt(), isHTTP2 ? "HTTP/2" : "HTTP/1.1",
                                                      std::move(fields));
        // Only now, and not for chunks: of a chunked body that breaks off, the library sometimes says that it ended well
        // when it reads within a limit.
        if (!isChunked)
            reply->setReadBufferSize(readBufferSize);
        bool hasBody = reply->operation() != QNetworkAccessManager::HeadOperation && status.toInt() != 204
            && status.toInt() != 304;
        if (hasBody && head->expectedContentLength() != URLResponseUnknownLength)
            expectedLength = head->expectedContentLength();

        std::weak_ptr stillThere = alive;
        handlers.onHead(std::move(head));
        if (stillThere.expired())
            return;
    }
    if (reply->readBufferSize() == 0 && reply->bytesAvailable() > mostUnread)
        reply->setReadBufferSize(readBufferSize);
    pump();
}

void HTTPTransfer::State::pump()
{
    sinceActivity.restart();
    if (hasEnded || isPaused)
        return;
    if (hasHead && reply->bytesAvailable() > 0) {
        std::weak_ptr stillThere = alive;
        handlers.onReadable();
        if (stillThere.expired() || isPaused)
            return;
    }
    if (isFinished && (!hasHead || reply->bytesAvailable() == 0))
        end(outcome());
}

std::optional<long> HTTPTransfer::State::outcome() const
{
    auto status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (auto error = transferErrorCode(reply->error(), hasHead ? status.toInt() : 0))
        return certificateError.value_or(*error);
    if (!hasHead)
        return NSURLErrorBadServerResponse;
    if (expectedLength && readLength < *expectedLength)
        return NSURLErrorNetworkConnectionLost;
    return std::nullopt;
}

void HTTPTransfer::State::end(std::optional<long> error)
{
    hasEnded = true;
    timer.stop();
    auto onEnd = handlers.onEnd; // survives this
    onEnd(error);
}

void HTTPTransfer::State::scheduleTimeout(qint64 milliseconds)
{
    if (timeout > 0)
        timer.start(static_cast<int>(milliseconds));
}

// The timer is not moved at each byte: it looks, when it fires, how long ago the last one was.
void HTTPTransfer::State::checkTimeout()
{
    if (hasEnded)
        return;
    auto left = timeout - sinceActivity.elapsed();
    if (left > 0 || isPaused || isFinished || reply->bytesAvailable() > 0)
        scheduleTimeout(std::max<qint64>(left, 1 + timeout / 4));
    else
        end(NSURLErrorTimedOut);
}

HTTPTransfer::HTTPTransfer(std::shared_ptr<QNetworkAccessManager> access, const URLRequest& request,
                           Encoding encoding, Handlers handlers)
    : state_(std::make_unique<State>(std::move(access), request, encoding, std::move(handlers)))
{
}

HTTPTransfer::~HTTPTransfer()
{
    // The reply may be the one that is calling: it goes when it has returned.
    auto* reply = state_->reply.release();
    QObject::disconnect(reply, nullptr, &state_->timer, nullptr);
    if (!state_->isFinished)
        reply->abort();
    reply->deleteLater();
    // And so must what holds its connections.
    QObject::connect(reply, &QObject::destroyed, reply, [access = state_->access] { });
}

std::size_t HTTPTransfer::read(std::span<char> buffer)
{
    auto count = state_->reply->read(buffer.data(), static_cast<qint64>(buffer.size()));
    if (count <= 0)
        return 0;
    state_->readLength += count;
    return static_cast<std::size_t>(count);
}

void HTTPTransfer::setPaused(bool isPaused)
{
    if (std::exchange(state_->isPaused, isPaused) == isPaused || isPaused)
        return;
    look();
}

void HTTPTransfer::look()
{
    // Later, so that nobody is called from within their own call.
    QTimer::singleShot(0, &state_->timer, [state = state_.get()] { state->pump(); });
}

bool HTTPTransfer::isHTTP2() const
{
    return state_->reply->attribute(QNetworkRequest::Http2WasUsedAttribute).toBool();
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/network/HTTPTransfer_p.h"

#include "platform/network/CachedURLResponse.h"
#include "platform/network/HTTPConnections_p.h"
#include "platform/network/HTTPHead_p.h"
#include "platform/network/HTTPMessage_p.h"
#include "platform/network/HTTPRequestHandle_p.h"
#include "platform/network/NSURLErrorCodes.h"
#include "platform/network/NetworkThread_p.h"
#include "platform/network/TransferError_p.h"

#include <algorithm>
#include <chrono>
#include <strings.h>
#include <utility>

namespace platform {

namespace {

// A body that unpacks to more than this and to more than 40 times its size is an attack.
constexpr std::int64_t mostUnpacked = 64 * 1024 * 1024;
constexpr std::int64_t mostExpansion = 40;

using Clock = NetworkThread::Clock;

Date now()
{
    return HTTPExchangeTimes::now().requested;
}

// Whether the last one of the codings is that of chunks.
bool endsInChunks(std::string_view codings)
{
    auto last = codings.substr(codings.rfind(',') + 1); // after the last comma, or the whole
    auto begin = last.find_first_not_of(" \t");
    last = begin == last.npos ? "" : last.substr(begin, last.find_last_not_of(" \t") + 1 - begin);
    return ::strcasecmp(std::string(last).c_str(), "chunked") == 0;
}

} // namespace

class HTTPTransfer::State final : public HTTPConnections::Client, public std::enable_shared_from_this<State> {
public:
    State(const URLRequest& request, Encoding encoding, std::weak_ptr<Listener> listener);
    void start();
    void scheduleTimeout(Clock::duration delay);

    bool isHTTP2() const { return request_.isHTTP2(); }
    bool endIsKnown() const { return endIsKnown_; }

    CURL* handle() override { return request_.handle(); }
    void handleBatch() override;
    void handleResume() override;
    void handleEnd(CURLcode code) override;

    // network thread only
    bool isPaused = false;
    std::optional<Date> requestStart;
    std::optional<Date> responseStart;
    Clock::time_point lastActivity = Clock::now();

private:
    // What the library calls.
    static std::size_t takeLine(char* bytes, std::size_t, std::size_t count, State* self);
    static std::size_t takeBytes(char* bytes, std::size_t, std::size_t count, State* self);
    static int beginRequest(State* self, char*, char*, int, int);
    static int noteProgress(State* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent);

    void handleHead();
    bool isBomb(std::size_t next);
    void checkTimeout();
    std::optional<long> outcome(CURLcode code);
    void tellEnd();

    // fixed after construction
    URL url_;
    Clock::duration timeout_{}; // 0 is none
    std::weak_ptr<Listener> listener_;
    HTTPRequestHandle request_;

    HTTPHead head_;
    Token timer_;
    std::optional<long> failure_; // that this has found, not the library
    std::optional<long> outcome_;
    std::int64_t unpacked_ = 0;
    curl_off_t sent_ = 0;
    bool endIsKnown_ = false;
    bool isHeld_ = false; // the library keeps bytes that were refused
    bool hasNews_ = false;
    bool isFinished_ = false;
    bool hasEnded_ = false;
};

HTTPTransfer::State::State(const URLRequest& request, Encoding encoding, std::weak_ptr<Listener> listener)
    : url_(request.url)
    , listener_(std::move(listener))
    , request_(request,
               encoding == Encoding::decoded ? HTTPRequestHandle::Compression::wanted
                                             : HTTPRequestHandle::Compression::refused)
{
    constexpr double longest = 1e9; // seconds
    if (auto seconds = request.timeoutInterval.count(); seconds > 0)
        timeout_ = std::chrono::ceil<std::chrono::milliseconds>(
            std::chrono::duration<double>(std::min(seconds, longest)));
    auto* handle = request_.handle();
    ::curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, &State::takeLine);
    ::curl_easy_setopt(handle, CURLOPT_HEADERDATA, this);
    ::curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &State::takeBytes);
    ::curl_easy_setopt(handle, CURLOPT_WRITEDATA, this);
    ::curl_easy_setopt(handle, CURLOPT_PREREQFUNCTION, &State::beginRequest);
    ::curl_easy_setopt(handle, CURLOPT_PREREQDATA, this);
    if (!request.httpBody.empty()) {
        ::curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
        ::curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, &State::noteProgress);
        ::curl_easy_setopt(handle, CURLOPT_XFERINFODATA, this);
    }
}

void HTTPTransfer::State::start()
{
    NetworkThread::shared().connections().start(shared_from_this());
    if (timeout_ > Clock::duration::zero())
        scheduleTimeout(timeout_);
}

int HTTPTransfer::State::beginRequest(State* self, char*, char*, int, int)
{
    self->lastActivity = Clock::now();
    self->requestStart = now();
    return CURL_PREREQFUNC_OK;
}

int HTTPTransfer::State::noteProgress(State* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent)
{
    if (std::exchange(self->sent_, sent) != sent)
        self->lastActivity = Clock::now();
    return 0;
}

std::size_t HTTPTransfer::State::takeLine(char* bytes, std::size_t, std::size_t count, State* self)
{
    if (self->isRetired() || self->isFinished_)
        return 0;
    self->lastActivity = Clock::now();
    if (!self->responseStart)
        self->responseStart = now();
    switch (self->head_.take({bytes, count})) {
    case HTTPHead::Reading::goesOn:
        break;
    case HTTPHead::Reading::isWhole:
        self->handleHead();
        break;
    case HTTPHead::Reading::isTooLong:
        self->failure_ = NSURLErrorDataLengthExceedsMaximum;
        break;
    }
    return self->isRetired() || self->failure_ ? 0 : count;
}

void HTTPTransfer::State::handleHead()
{
    auto fields = head_.takeFields();
    auto length = fields.find("Content-Length");
    auto coding = fields.find("Transfer-Encoding");
    bool isChunked = coding != fields.end() && endsInChunks(coding->second);
    endIsKnown_ = length != fields.end() || isChunked || request_.isHTTP2();
    // Of several lengths that differ, a proxy might believe another one; beside a coding without chunks none is believed.
    if (length != fields.end() && !isChunked
        && (coding != fields.end() || !parseContentLength(length->second))) {
        failure_ = NSURLErrorCannotParseResponse;
        return;
    }
    // Chunks say better how long they are. The length of what is unpacked is another.
    bool isUnpacked = request_.decodes() && fields.contains("Content-Encoding");
    if (length != fields.end() && (isChunked || isUnpacked))
        fields.erase(length);
    if (auto listener = listener_.lock())
        listener->handleHead(std::make_shared<HTTPURLResponse>(
            url_, head_.status(), request_.isHTTP2() ? "HTTP/2" : "HTTP/1.1", std::move(fields)));
}

std::size_t HTTPTransfer::State::takeBytes(char* bytes, std::size_t, std::size_t count, State* self)
{
    if (self->isRetired() || self->isFinished_ || !self->head_.isWhole())
        return 0;
    if (self->isPaused || self->isHeld_) {
        self->isHeld_ = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    if (self->isBomb(count)) {
        self->failure_ = NSURLErrorCannotDecodeRawData;
        return 0;
    }
    auto listener = self->listener_.lock();
    auto intake = listener ? listener->takeBytes({bytes, count}) : Intake::taken;
    if (self->isRetired())
        return 0;
    self->lastActivity = Clock::now();
    if (intake == Intake::refused) {
        self->isHeld_ = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    self->unpacked_ += static_cast<std::int64_t>(count);
    self->hasNews_ = true;
    NetworkThread::shared().connections().noteBytes(self->shared_from_this());
    return count;
}

bool HTTPTransfer::State::isBomb(std::size_t next)
{
    auto whole = unpacked_ + static_cast<std::int64_t>(next);
    if (whole <= mostUnpacked)
        return false;
    // Packed for the transport it may be unasked.
    curl_off_t packed = 0;
    ::curl_easy_getinfo(handle(), CURLINFO_SIZE_DOWNLOAD_T, &packed);
    return whole / mostExpansion > packed;
}

void HTTPTransfer::State::handleBatch()
{
    auto listener = std::exchange(hasNews_, false) ? listener_.lock() : nullptr;
    if (listener)
        listener->handlePause();
}

void HTTPTransfer::State::handleResume()
{
    lastActivity = Clock::now();
    if (isPaused)
        return;
    if (isFinished_)
        return tellEnd();
    if (!std::exchange(isHeld_, false))
        return;
    // This offers the bytes at once.
    auto code = ::curl_easy_pause(handle(), CURLPAUSE_CONT);
    if (code != CURLE_OK && !isRetired())
        handleEnd(code);
}

void HTTPTransfer::State::handleEnd(CURLcode code)
{
    if (std::exchange(isFinished_, true))
        return;
    outcome_ = outcome(code);
    if (!isPaused)
        tellEnd();
}

std::optional<long> HTTPTransfer::State::outcome(CURLcode code)
{
    if (failure_)
        return failure_;
    // A single line may be longer than the library has room for.
    if (code == CURLE_OUT_OF_MEMORY && !head_.isWhole())
        return NSURLErrorDataLengthExceedsMaximum;
    // Of bytes that are refused here the reason is known: these are ones that the library could not unpack.
    if (code == CURLE_WRITE_ERROR && head_.isWhole())
        return NSURLErrorCannotDecodeRawData;
    if (code != CURLE_OK)
        return transferErrorCode(handle(), code);
    return head_.isWhole() ? std::nullopt : std::optional(NSURLErrorNetworkConnectionLost);
}

void HTTPTransfer::State::tellEnd()
{
    if (std::exchange(hasEnded_, true))
        return;
    timer_.cancel();
    handleBatch();
    auto listener = isRetired() ? nullptr : listener_.lock();
    if (listener)
        listener->handleEnd(outcome_);
}

void HTTPTransfer::State::scheduleTimeout(Clock::duration delay)
{
    timer_ = NetworkThread::shared().after(delay, [this] { checkTimeout(); });
}

// The timer is not moved at each byte: it looks, when it fires, how long ago the last one was.
void HTTPTransfer::State::checkTimeout()
{
    auto left = timeout_ - (Clock::now() - lastActivity);
    if (isPaused || isHeld_ || isFinished_)
        return scheduleTimeout(timeout_);
    if (left > Clock::duration::zero())
        return scheduleTimeout(left);
    failure_ = NSURLErrorTimedOut;
    handleEnd(CURLE_OPERATION_TIMEDOUT);
}

HTTPTransfer::Listener::~Listener() = default;

HTTPTransfer::HTTPTransfer(const URLRequest& request, Encoding encoding, std::weak_ptr<Listener> listener)
    : state_(std::make_shared<State>(request, encoding, std::move(listener)))
{
    state_->start();
}

HTTPTransfer::~HTTPTransfer()
{
    // Perhaps from within a call of the library's.
    NetworkThread::shared().connections().retire(std::move(state_));
}

void HTTPTransfer::setPaused(bool isPaused)
{
    if (!std::exchange(state_->isPaused, isPaused) || isPaused)
        return;
    state_->lastActivity = Clock::now();
    resume();
}

void HTTPTransfer::resume()
{
    NetworkThread::shared().connections().resume(state_);
}

std::optional<Date> HTTPTransfer::requestStart() const
{
    return state_->requestStart;
}

std::optional<Date> HTTPTransfer::responseStart() const
{
    return state_->responseStart;
}

bool HTTPTransfer::endIsKnown() const
{
    return state_->endIsKnown();
}

bool HTTPTransfer::isHTTP2() const
{
    return state_->isHTTP2();
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/network/HTTPConnections_p.h"

#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// Of connections that nobody uses at present.
constexpr long mostKept = 64;
// Of handles that wait for their next request: to make one takes longer than to reset it.
constexpr std::size_t mostSpare = 64;

} // namespace

HTTPConnections::Client::~Client() = default;

HTTPConnections::HTTPConnections()
{
    bool isReady = ::curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    multi_ = isReady ? ::curl_multi_init() : nullptr;
    precondition(multi_, "the HTTP library cannot be used");
    ::curl_multi_setopt(multi_, CURLMOPT_MAXCONNECTS, mostKept);
    // An answer over HTTP/2 that nobody reads would hold up all others on its connection.
    ::curl_multi_setopt(multi_, CURLMOPT_PIPELINING, static_cast<long>(CURLPIPE_NOTHING));
}

CURL* HTTPConnections::takeHandle()
{
    if (spare_.empty()) {
        auto* made = ::curl_easy_init();
        precondition(made, "the HTTP library has no memory");
        return made;
    }
    auto* handle = spare_.back();
    spare_.pop_back();
    return handle;
}

void HTTPConnections::giveBack(CURL* handle)
{
    if (spare_.size() >= mostSpare)
        return ::curl_easy_cleanup(handle);
    ::curl_easy_reset(handle);
    spare_.push_back(handle);
}

void HTTPConnections::start(ClientPointer client)
{
    starting_.push_back(std::move(client));
}

void HTTPConnections::resume(ClientPointer client)
{
    resuming_.push_back(std::move(client));
}

void HTTPConnections::retire(ClientPointer client)
{
    client->isRetired_ = true;
    retiring_.push_back(std::move(client));
}

void HTTPConnections::noteBytes(ClientPointer client)
{
    if (!std::exchange(client->hasBytes_, true))
        withBytes_.push_back(std::move(client));
}

void HTTPConnections::drive()
{
    settle();
    int runningCount = 0;
    ::curl_multi_perform(multi_, &runningCount);
    tellBatches();
    tellEnds();
}

void HTTPConnections::settle()
{
    for (auto& client : std::exchange(retiring_, {})) {
        if (client->isStarted_)
            ::curl_multi_remove_handle(multi_, client->handle());
    }
    for (auto& client : std::exchange(starting_, {})) {
        if (client->isRetired_)
            continue;
        ::curl_easy_setopt(client->handle(), CURLOPT_PRIVATE, client.get());
        client->isStarted_ = ::curl_multi_add_handle(multi_, client->handle()) == CURLM_OK;
        if (!client->isStarted_)
            client->handleEnd(CURLE_OUT_OF_MEMORY);
    }
    for (auto& client : std::exchange(resuming_, {})) {
        if (!client->isRetired_)
            client->handleResume();
    }
}

void HTTPConnections::tellBatches()
{
    for (auto& client : std::exchange(withBytes_, {})) {
        client->hasBytes_ = false;
        if (!client->isRetired_)
            client->handleBatch();
    }
}

void HTTPConnections::tellEnds()
{
    int left = 0;
    while (auto* message = ::curl_multi_info_read(multi_, &left)) {
        void* client = nullptr;
        ::curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &client);
        auto* known = static_cast<Client*>(client);
        if (message->msg == CURLMSG_DONE && !known->isRetired_)
            known->handleEnd(message->data.result);
    }
}

void HTTPConnections::wait(std::chrono::steady_clock::time_point until, std::span<const Other> others)
{
    bool isSettled = starting_.empty() && resuming_.empty() && retiring_.empty();
    auto left = until - std::chrono::steady_clock::now();
    auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(left).count();
    std::vector<curl_waitfd> descriptors;
    for (auto& [descriptor, events] : others) // the library's bits are those of poll()
        descriptors.push_back({descriptor, events, 0});
    ::curl_multi_poll(multi_, descriptors.data(), static_cast<unsigned>(descriptors.size()),
                      isSettled ? static_cast<int>(std::max<long>(milliseconds, 0)) : 0, nullptr);
}

void HTTPConnections::wake()
{
    ::curl_multi_wakeup(multi_);
}

} // namespace platform

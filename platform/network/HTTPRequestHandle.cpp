// SPDX-License-Identifier: MIT
#include "platform/network/HTTPRequestHandle_p.h"

#include "platform/foundation/Precondition.h"
#include "platform/network/HTTPConnections_p.h"
#include "platform/network/NetworkThread_p.h"
#include "platform/network/Redirection_p.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sys/socket.h>

namespace platform {

namespace {

// What comes at once. Of packed bytes less, as the library keeps what it has unpacked when nobody takes it.
constexpr long bufferSize = 256 * 1024;

const char* fileFromEnvironment(const char* name)
{
    auto* value = std::getenv(name);
    return value && *value ? value : nullptr;
}

// Programs that are started meanwhile inherit no connection.
curl_socket_t openSocket(void*, curlsocktype, curl_sockaddr* address)
{
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

} // namespace

HTTPRequestHandle::HTTPRequestHandle(const URLRequest& request, Compression compression)
    : handle_(NetworkThread::shared().connections().takeHandle())
    , body_(request.httpBody)
    , decodes_(compression == Compression::wanted && !request.value("Accept-Encoding"))
{
    // Signals are not its to send, names that nobody asks for any more are not waited for.
    ::curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
    ::curl_easy_setopt(handle_, CURLOPT_QUICK_EXIT, 1L);
    ::curl_easy_setopt(handle_, CURLOPT_OPENSOCKETFUNCTION, &openSocket);
    ::curl_easy_setopt(handle_, CURLOPT_PROTOCOLS_STR, "http,https");
    ::curl_easy_setopt(handle_, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_2TLS);
    ::curl_easy_setopt(handle_, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    // One that is too long for the library is refused as no URL at all.
    ::curl_easy_setopt(handle_, CURLOPT_URL, addressOf(request.url).c_str());
    ::curl_easy_setopt(handle_, CURLOPT_PATH_AS_IS, 1L);
    if (decodes_)
        ::curl_easy_setopt(handle_, CURLOPT_ACCEPT_ENCODING, "");
    else
        ::curl_easy_setopt(handle_, CURLOPT_BUFFERSIZE, bufferSize);
    setMethod(request);
    setFields(request);
    setTrust();
}

HTTPRequestHandle::~HTTPRequestHandle()
{
    NetworkThread::shared().connections().giveBack(handle_);
    ::curl_slist_free_all(fields_);
}

void HTTPRequestHandle::setMethod(const URLRequest& request)
{
    auto& method = request.httpMethod;
    if (method == "HEAD") {
        ::curl_easy_setopt(handle_, CURLOPT_NOBODY, 1L);
        return;
    }
    // Those of which servers want to know that their body is empty.
    sendsBody_ = !body_.empty() || method == "POST" || method == "PUT" || method == "PATCH";
    if (sendsBody_) {
        ::curl_easy_setopt(handle_, CURLOPT_POST, 1L);
        ::curl_easy_setopt(handle_, CURLOPT_POSTFIELDS, body_.data());
        ::curl_easy_setopt(handle_, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body_.size()));
    }
    if (method != (sendsBody_ ? "POST" : "GET"))
        ::curl_easy_setopt(handle_, CURLOPT_CUSTOMREQUEST, method.c_str());
}

void HTTPRequestHandle::setFields(const URLRequest& request)
{
    // How long the body is and how it is sent is not the caller's to say.
    constexpr auto own = std::to_array<std::string_view>({"Content-Length", "Transfer-Encoding"});
    for (auto& [name, value] : request.allHTTPHeaderFields) {
        if (std::ranges::none_of(own, [&](auto other) { return isSameHTTPHeaderField(name, other); }))
            addField(value.empty() ? name + ";" : name + ": " + value);
    }
    // Fields that the library would add to a body of its own accord are removed by their bare name.
    for (auto* name : {"Expect", "Content-Type"}) {
        if (sendsBody_ && !request.value(name))
            addField(std::string(name) + ":");
    }
    if (!decodes_ && !request.value("Accept-Encoding"))
        addField("Accept-Encoding: identity");
    ::curl_easy_setopt(handle_, CURLOPT_USERAGENT, "zelk");
    ::curl_easy_setopt(handle_, CURLOPT_HTTPHEADER, fields_);
}

void HTTPRequestHandle::addField(const std::string& line)
{
    auto* longer = ::curl_slist_append(fields_, line.c_str());
    precondition(longer, "there is no memory for a request's fields");
    fields_ = longer;
}

// The system's certificates, or those that the environment names instead, as for other programs.
void HTTPRequestHandle::setTrust()
{
    auto* file = fileFromEnvironment("SSL_CERT_FILE");
    auto* directory = fileFromEnvironment("SSL_CERT_DIR");
    if (!file && !directory)
        return;
    ::curl_easy_setopt(handle_, CURLOPT_CAINFO, file);
    ::curl_easy_setopt(handle_, CURLOPT_CAPATH, directory);
}

bool HTTPRequestHandle::isHTTP2() const
{
    long version = 0;
    ::curl_easy_getinfo(handle_, CURLINFO_HTTP_VERSION, &version);
    return version == CURL_HTTP_VERSION_2_0;
}

} // namespace platform

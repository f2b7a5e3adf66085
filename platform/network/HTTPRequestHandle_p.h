// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/URLRequest.h"

#include <curl/curl.h>

#include <memory>
#include <string>

namespace platform {

// A request as the library takes it: where to, by what methods, trusting whom. Network thread only.
class HTTPRequestHandle {
public:
    // Of the body; a request that speaks of it itself (Accept-Encoding) gets the bytes as they are.
    enum class Compression { wanted, refused };

    HTTPRequestHandle(const URLRequest& request, Compression compression);
    ~HTTPRequestHandle();
    HTTPRequestHandle(const HTTPRequestHandle&) = delete; // the library holds addresses of its parts
    HTTPRequestHandle& operator=(const HTTPRequestHandle&) = delete;

    CURL* handle() const { return handle_; }
    // Whether the bytes that come are unpacked ones, where the server has packed them.
    bool decodes() const { return decodes_; }
    // Of the answer.
    bool isHTTP2() const;

private:
    void setMethod(const URLRequest& request);
    void setFields(const URLRequest& request);
    void setTrust();
    void addField(const std::string& line);

    CURL* handle_;
    curl_slist* fields_ = nullptr;
    std::string body_;
    bool decodes_;
    bool sendsBody_ = false;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/network/HTTPHead_p.h"

#include "platform/network/HTTPMessage_p.h"

#include <algorithm>
#include <charconv>

namespace platform {

namespace {

// Of "HTTP/1.1 200 OK"; 0 when there is none.
int statusOf(std::string_view line)
{
    auto code = trimmed(line.substr(std::min(line.find(' '), line.size())));
    int status = 0;
    std::from_chars(code.data(), code.data() + std::min<std::size_t>(code.size(), 3), status);
    return status;
}

} // namespace

HTTPHead::Reading HTTPHead::take(std::string_view line)
{
    byteCount_ += line.size();
    if (byteCount_ > mostBytes)
        return Reading::isTooLong;
    if (isWhole_)
        return Reading::goesOn;
    auto text = trimmed(line);
    bool continues = line.starts_with(' ') || line.starts_with('\t');
    if (continues && !text.empty()) {
        value_.append(value_.empty() ? "" : " ").append(text);
        return Reading::goesOn;
    }
    addPending();
    if (fields_.size() > HTTPHeaderFields::mostFields)
        return Reading::isTooLong;
    if (text.empty()) {
        isWhole_ = status_ >= 200;
        return isWhole_ ? Reading::isWhole : Reading::goesOn;
    }
    if (line.starts_with("HTTP/")) {
        fields_.clear();
        status_ = statusOf(text);
    } else if (auto colon = line.find(':'); colon != std::string_view::npos) {
        name_ = line.substr(0, colon);
        value_ = trimmed(line.substr(colon + 1));
    }
    return Reading::goesOn;
}

void HTTPHead::addPending()
{
    bool addsNothing = value_.empty() && fields_.contains(name_);
    if (!addsNothing && isValidHTTPHeaderField(name_, value_))
        fields_.add(name_, value_);
    name_.clear();
    value_.clear();
}

} // namespace platform

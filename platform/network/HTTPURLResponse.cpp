// SPDX-License-Identifier: MIT
#include "platform/network/HTTPURLResponse.h"

#include "platform/network/HTTPMessage_p.h"

#include <algorithm>
#include <array>
#include <utility>

namespace platform {

namespace {

ContentType contentType(const HTTPHeaderFields& fields)
{
    auto value = valueForHTTPHeaderField(fields, "Content-Type");
    return value ? parseContentType(*value) : ContentType();
}

std::int64_t expectedLength(const HTTPHeaderFields& fields)
{
    auto encoding = valueForHTTPHeaderField(fields, "Content-Encoding");
    auto length = valueForHTTPHeaderField(fields, "Content-Length");
    bool isAsSent = !encoding || encoding->empty() || *encoding == "identity";
    return length && isAsSent ? parseContentLength(*length).value_or(URLResponseUnknownLength)
                              : URLResponseUnknownLength;
}

struct StatusText {
    int code;
    const char* text;
};
constexpr auto statusTexts = std::to_array<StatusText>({
    {100, "continue"},
    {101, "switching protocols"},
    {102, "processing"},
    {103, "early hints"},
    {200, "no error"},
    {201, "created"},
    {202, "accepted"},
    {203, "non authoritative information"},
    {204, "no content"},
    {205, "reset content"},
    {206, "partial content"},
    {207, "multi-status"},
    {208, "already reported"},
    {226, "IM used"},
    {300, "multiple choices"},
    {301, "moved permanently"},
    {302, "found"},
    {303, "see other"},
    {304, "not modified"},
    {305, "needs proxy"},
    {307, "temporarily redirected"},
    {308, "permanently redirected"},
    {400, "bad request"},
    {401, "unauthorized"},
    {402, "payment required"},
    {403, "forbidden"},
    {404, "not found"},
    {405, "method not allowed"},
    {406, "unacceptable"},
    {407, "proxy authentication required"},
    {408, "request timed out"},
    {409, "conflict"},
    {410, "no longer exists"},
    {411, "length required"},
    {412, "precondition failed"},
    {413, "request too large"},
    {414, "requested URL too long"},
    {415, "unsupported media type"},
    {416, "requested range not satisfiable"},
    {417, "expectation failed"},
    {421, "misdirected request"},
    {422, "unprocessable content"},
    {423, "locked"},
    {424, "failed dependency"},
    {425, "too early"},
    {426, "upgrade required"},
    {428, "precondition required"},
    {429, "too many requests"},
    {431, "request header fields too large"},
    {451, "unavailable for legal reasons"},
    {500, "internal server error"},
    {501, "unimplemented"},
    {502, "bad gateway"},
    {503, "service unavailable"},
    {504, "gateway timed out"},
    {505, "unsupported version"},
    {507, "insufficient storage"},
    {508, "loop detected"},
    {511, "network authentication required"},
});

} // namespace

HTTPURLResponse::HTTPURLResponse(URL url, int statusCode, std::string httpVersion, HTTPHeaderFields fields)
    : HTTPURLResponse(std::move(url), contentType(fields), statusCode, std::move(httpVersion),
                      std::move(fields))
{
}

HTTPURLResponse::HTTPURLResponse(URL url, ContentType type, int statusCode, std::string httpVersion,
                                 HTTPHeaderFields&& fields)
    : URLResponse(std::move(url), std::move(type.mimeType), expectedLength(fields), std::move(type.charset))
    , statusCode_(statusCode)
    , httpVersion_(std::move(httpVersion))
    , fields_(std::move(fields))
{
}

std::string HTTPURLResponse::suggestedFilename() const
{
    if (auto disposition = value("Content-Disposition")) {
        if (auto name = safeFilename(parseDispositionFilename(*disposition).value_or("")); !name.empty())
            return name;
    }
    return URLResponse::suggestedFilename();
}

std::string HTTPURLResponse::localizedStringForStatusCode(int statusCode)
{
    auto found = std::ranges::find(statusTexts, statusCode, &StatusText::code);
    if (found != statusTexts.end())
        return found->text;
    switch (statusCode / 100) {
    case 1:
        return "informational";
    case 2:
        return "success";
    case 3:
        return "redirected";
    case 4:
        return "client error";
    case 5:
        return "server error";
    default:
        return "server error";
    }
}

} // namespace platform

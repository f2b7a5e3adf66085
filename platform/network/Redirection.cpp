// SPDX-License-Identifier: MIT
#include "platform/network/Redirection_p.h"

#include "platform/foundation/Precondition.h"
#include "platform/network/NSURLErrorCodes.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <curl/curl.h>
#include <idn2.h>
#include <memory>
#include <string_view>

namespace platform {

namespace {

constexpr auto secrets = std::to_array<std::string_view>({"Authorization", "Cookie", "Proxy-Authorization"});
constexpr auto aboutHost = std::to_array<std::string_view>({"Host"});
constexpr auto aboutBody = std::to_array<std::string_view>(
    {"Content-Length", "Content-Type", "Content-Encoding", "Content-Language", "Content-Location"});

// As the domain name system knows the host; empty when it cannot. (The loading library would ask the locale what the bytes
// mean.)
std::string asciiHost(const std::string& host)
{
    if (std::ranges::all_of(host, [](unsigned char c) { return c < 0x80; }))
        return host;
    char* text = nullptr;
    if (::idn2_to_ascii_8z(host.c_str(), &text, IDN2_NFC_INPUT | IDN2_NONTRANSITIONAL) != IDN2_OK)
        return {};
    std::unique_ptr<char, decltype(&::idn2_free)> owner(text, &::idn2_free);
    return text;
}

// A URL as the library reads it that loads it, without the user's name, which is never told.
class LibraryURL {
public:
    explicit LibraryURL(const URL& url)
        : parts_(::curl_url())
    {
        precondition(parts_ != nullptr, "there is no memory for a URL");
        isValid_ = set(withoutUser(url.absoluteString()), CURLU_NON_SUPPORT_SCHEME | CURLU_PATH_AS_IS);
    }

    bool isValid() const { return isValid_; }
    // Goes where `reference` leads from here; false when that is nowhere.
    bool follow(const std::string& reference)
    {
        dropFragment();
        return set(reference, CURLU_NON_SUPPORT_SCHEME);
    }
    void dropFragment() { ::curl_url_set(parts_.get(), CURLUPART_FRAGMENT, nullptr, 0); }
    std::string text() const
    {
        auto text = get(CURLUPART_URL);
        // To a server no query is another than an empty one; the library forgets that.
        if (hasEmptyQuery_ && !text.empty())
            text.insert(std::min(text.find('#'), text.size()), "?");
        return text;
    }
    // As servers are to read it; empty when there is none.
    std::string get(CURLUPart part, unsigned flags = 0) const
    {
        char* text = nullptr;
        if (::curl_url_get(parts_.get(), part, &text, flags) != CURLUE_OK)
            return {};
        std::unique_ptr<char, decltype(&::curl_free)> owner(text, &::curl_free);
        return text;
    }

private:
    struct Deleter {
        void operator()(CURLU* parts) const { ::curl_url_cleanup(parts); }
    };

    static std::string withoutUser(std::string text)
    {
        auto slashes = text.find("//");
        if (slashes == text.npos)
            return text;
        auto begin = slashes + 2;
        auto authority = std::string_view(text).substr(begin, text.find_first_of("/?#", begin) - begin);
        return text.erase(begin, authority.rfind('@') + 1); // nothing when there is none
    }

    bool set(const std::string& text, unsigned flags)
    {
        auto mark = text.find('?');
        hasEmptyQuery_ = mark != text.npos && (mark + 1 == text.size() || text[mark + 1] == '#');
        if (::curl_url_set(parts_.get(), CURLUPART_URL, text.c_str(), flags) != CURLUE_OK)
            return false;
        auto host = get(CURLUPART_HOST);
        auto ascii = asciiHost(host);
        return ascii == host || ::curl_url_set(parts_.get(), CURLUPART_HOST, ascii.c_str(), 0) == CURLUE_OK;
    }

    std::unique_ptr<CURLU, Deleter> parts_;
    bool isValid_ = false;
    bool hasEmptyQuery_ = false;
};

bool isWeb(const URL& url)
{
    auto scheme = url.scheme();
    return scheme == "http" || scheme == "https";
}

// What servers write though it should be escaped: spaces, bytes beyond ASCII and percent signs that begin no escape.
std::string escaped(std::string_view reference)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    auto isDigit = [&](std::size_t at) {
        return at < reference.size() && std::isxdigit(static_cast<unsigned char>(reference[at]));
    };
    std::string result;
    for (std::size_t i = 0; i < reference.size(); ++i) {
        auto byte = static_cast<unsigned char>(reference[i]);
        bool stands = byte == '%' ? isDigit(i + 1) && isDigit(i + 2) : byte != ' ' && byte < 0x7F;
        if (stands) {
            result += reference[i];
        } else {
            result += '%';
            result += digits[byte >> 4];
            result += digits[byte & 15];
        }
    }
    return result;
}

// Where `reference` leads from `base`.
std::optional<URL> resolved(const URL& base, std::string_view reference)
{
    auto text = escaped(reference);
    auto absolute = URL::parse(text);
    if (absolute && (!isWeb(*absolute) || absolute->host().empty()))
        return absolute;       // nowhere that anything is loaded from
    if (text.starts_with('#')) // another place in the same file
        return URL::parse(base.absoluteString().substr(0, base.absoluteString().find('#')) + text);
    LibraryURL target(base);
    bool leadsSomewhere = !text.empty() && !text.starts_with("///") && target.follow(text);
    return leadsSomewhere ? URL::parse(target.text()) : std::nullopt;
}

// Whether nothing about the host could be written in another way. Most are so, and no library need look at them.
bool isPlain(const URL& url)
{
    auto text = std::string_view(url.absoluteString());
    text.remove_prefix(text.find(':') + 1);
    if (!text.starts_with("//"))
        return false;
    text.remove_prefix(2);
    auto authority = text.substr(0, text.find_first_of("/?#"));
    auto host = authority.substr(0, authority.find(':'));
    auto port = authority.substr(std::min(host.size() + 1, authority.size()));
    bool isPort = port.size() < 5 || (port.size() == 5 && port <= "65535");
    return isPort && !host.empty() && std::isalnum(static_cast<unsigned char>(host.front()))
        && host.find("..") == host.npos && host.find("--") == host.npos
        && std::ranges::all_of(port, [](unsigned char c) { return std::isdigit(c); })
        && std::ranges::all_of(host, [](unsigned char c) { return std::isalnum(c) || c == '.' || c == '-'; });
}

bool haveSameHost(const LibraryURL& a, const LibraryURL& b)
{
    return a.isValid() && b.isValid() && a.get(CURLUPART_HOST) == b.get(CURLUPART_HOST)
        && a.get(CURLUPART_ZONEID) == b.get(CURLUPART_ZONEID)
        && a.get(CURLUPART_PORT, CURLU_DEFAULT_PORT) == b.get(CURLUPART_PORT, CURLU_DEFAULT_PORT);
}

bool haveSameOrigin(const URL& a, const URL& b)
{
    return a.scheme() == b.scheme() && haveSameHost(LibraryURL(a), LibraryURL(b));
}

template <std::size_t count>
void drop(HTTPHeaderFields& fields, const std::array<std::string_view, count>& names)
{
    for (auto name : names)
        fields.erase(name);
}

} // namespace

bool isLoadable(const URL& url)
{
    return isWeb(url) && (isPlain(url) || (!url.host().empty() && !addressOf(url).empty()));
}

std::string addressOf(const URL& url)
{
    if (isPlain(url))
        return url.absoluteString().substr(0, url.absoluteString().find('#'));
    LibraryURL parts(url);
    parts.dropFragment();
    return parts.isValid() ? parts.text() : std::string();
}

bool mayBeTold(std::string_view field, const URL& first, const URL& url)
{
    bool isSecret =
        std::ranges::any_of(secrets, [&](auto name) { return isSameHTTPHeaderField(name, field); });
    return !isSecret || haveSameOrigin(first, url);
}

std::optional<std::expected<URLRequest, long>> redirection(const URLRequest& request,
                                                           const HTTPURLResponse& response)
{
    constexpr auto codes = std::to_array({301, 302, 303, 307, 308});
    auto location = response.value("Location");
    if (!location || std::ranges::find(codes, response.statusCode()) == codes.end())
        return std::nullopt;

    auto url = resolved(request.url, *location);
    if (!url)
        return std::unexpected(NSURLErrorRedirectToNonExistentLocation);
    if (!isLoadable(*url))
        return std::unexpected(NSURLErrorUnsupportedURL);
    if (request.url.scheme() == "https" && url->scheme() == "http")
        return std::unexpected(NSURLErrorAppTransportSecurityRequiresSecureConnection);

    auto next = request;
    next.url = *url;
    auto status = response.statusCode();
    bool becomesGet = (status == 303 && request.httpMethod != "HEAD")
        || ((status == 301 || status == 302) && request.httpMethod == "POST");
    if (becomesGet) {
        next.httpMethod = "GET";
        next.httpBody.clear();
        drop(next.allHTTPHeaderFields, aboutBody);
    }
    if (!haveSameOrigin(request.url, *url))
        drop(next.allHTTPHeaderFields, secrets);
    if (!haveSameHost(LibraryURL(request.url), LibraryURL(*url)))
        drop(next.allHTTPHeaderFields, aboutHost);
    return next;
}

} // namespace platform

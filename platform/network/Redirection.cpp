// SPDX-License-Identifier: MIT
#include "platform/network/Redirection_p.h"

#include "platform/network/NSURLErrorCodes.h"

#include <QtCore/QUrl>

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace platform {

namespace {

constexpr auto secrets = std::to_array<std::string_view>({"Authorization", "Cookie", "Proxy-Authorization"});
constexpr auto aboutHost = std::to_array<std::string_view>({"Host"});
constexpr auto aboutBody = std::to_array<std::string_view>(
    {"Content-Length", "Content-Type", "Content-Encoding", "Content-Language", "Content-Location"});

QUrl libraryURL(const URL& url)
{
    return QUrl::fromEncoded(QByteArray::fromStdString(url.absoluteString()));
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

int portOf(const QUrl& url)
{
    return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
}

bool haveSameOrigin(const QUrl& a, const QUrl& b)
{
    return a.scheme() == b.scheme() && a.host() == b.host() && portOf(a) == portOf(b);
}

template <std::size_t count>
void drop(HTTPHeaderFields& fields, const std::array<std::string_view, count>& names)
{
    for (auto name : names) {
        if (auto found = fields.find(name); found != fields.end())
            fields.erase(found);
    }
}

} // namespace

bool isLoadable(const URL& url)
{
    auto scheme = url.scheme();
    return (scheme == "http" || scheme == "https")
        && (isPlain(url) || (!url.host().empty() && libraryURL(url).isValid()));
}

std::string addressOf(const URL& url)
{
    if (isPlain(url))
        return url.absoluteString().substr(0, url.absoluteString().find('#'));
    return libraryURL(url).toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment).toStdString();
}

bool mayBeTold(std::string_view field, const URL& first, const URL& url)
{
    HTTPFieldNameLess less;
    bool isSecret =
        std::ranges::any_of(secrets, [&](auto name) { return !less(name, field) && !less(field, name); });
    return !isSecret || haveSameOrigin(libraryURL(first), libraryURL(url));
}

std::optional<std::expected<URLRequest, long>> redirection(const URLRequest& request,
                                                           const HTTPURLResponse& response)
{
    constexpr auto codes = std::to_array({301, 302, 303, 307, 308});
    auto location = response.value("Location");
    if (!location || std::ranges::find(codes, response.statusCode()) == codes.end())
        return std::nullopt;

    auto from = libraryURL(request.url);
    auto relative = QUrl::fromEncoded(QByteArray::fromStdString(*location));
    auto target = relative.isValid() ? from.resolved(relative) : QUrl();
    auto url = target.isValid() ? URL::parse(target.toEncoded().toStdString()) : std::nullopt;
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
    if (!haveSameOrigin(from, target))
        drop(next.allHTTPHeaderFields, secrets);
    if (from.host() != target.host() || portOf(from) != portOf(target))
        drop(next.allHTTPHeaderFields, aboutHost);
    return next;
}

} // namespace platform

// SPDX-License-Identifier: MIT
// The sections named here are those of RFC 9111, HTTP Caching.
#include "platform/network/HTTPCaching.h"

#include "platform/network/HTTPCachingFields_p.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>

namespace platform::httpcaching {

namespace {

const HTTPURLResponse* httpResponse(const CachedURLResponse& stored)
{
    return dynamic_cast<const HTTPURLResponse*>(stored.response().get());
}

std::optional<Date> dateField(const HTTPURLResponse& response, std::string_view name, Date now)
{
    auto text = response.value(name);
    return text ? parseDate(*text, now) : std::nullopt;
}

Directives directives(const HTTPURLResponse& response)
{
    return parseDirectives(response.value("Cache-Control").value_or(""));
}

// 5.4: Pragma is what older programs say, and counts only where Cache-Control says nothing.
Directives directives(const URLRequest& request)
{
    auto control = request.value("Cache-Control");
    auto said = parseDirectives(control.value_or(""));
    if (!control)
        forEachElement(request.value("Pragma").value_or(""), [&said](std::string_view element) {
            said.isNoCache = said.isNoCache || equalsIgnoringCase(element, "no-cache");
        });
    return said;
}

// Such requests want an answer about what they have themselves, or a part.
bool asksForItself(const URLRequest& request)
{
    constexpr std::array names{"If-None-Match",       "If-Modified-Since", "If-Match",
                               "If-Unmodified-Since", "If-Range",          "Range"};
    return std::any_of(names.begin(), names.end(),
                       [&request](const char* name) { return request.value(name).has_value(); });
}

// Status codes that say nothing about how long they hold and may be kept all the same (RFC 9110, 15.1), without 206.
bool isCacheableByDefault(int status)
{
    constexpr std::array codes{200, 203, 204, 300, 301, 308, 404, 405, 410, 414, 501};
    return std::find(codes.begin(), codes.end(), status) != codes.end();
}

std::string_view withoutFragment(const URL& url)
{
    std::string_view text = url.absoluteString();
    return text.substr(0, text.find('#'));
}

bool isOfSameURL(const URLRequest& request, const CachedURLResponse& stored)
{
    return withoutFragment(request.url) == withoutFragment(stored.response()->url());
}

bool hasValidators(const HTTPURLResponse& response)
{
    return response.value("ETag") || response.value("Last-Modified");
}

Plan validateOrLoad(const URLRequest& request, const CachedURLResponse& stored)
{
    auto response = httpResponse(stored);
    return response && isOfSameURL(request, stored) && hasValidators(*response) ? Plan::validateStored
                                                                                : Plan::load;
}

// 4.2 and 5.2.1: whether what is stored may be used without asking.
bool mayUse(const Directives& asked, const CachedURLResponse& stored, Date now)
{
    auto response = httpResponse(stored);
    if (!response || asked.isNoCache)
        return false;
    auto said = directives(*response);
    if (said.isNoCache)
        return false;
    auto age = currentAge(stored, now);
    if (asked.maxAge && age > static_cast<double>(*asked.maxAge))
        return false;
    auto remaining = freshnessLifetime(stored, now) - age;
    if (asked.minFresh)
        return remaining >= static_cast<double>(*asked.minFresh);
    if (remaining > 0)
        return true;
    return asked.maxStale && !said.mustRevalidate && -remaining <= static_cast<double>(*asked.maxStale);
}

Plan planByProtocol(const URLRequest& request, const std::optional<CachedURLResponse>& stored, Date now)
{
    if (asksForItself(request))
        return Plan::load;
    auto asked = directives(request);
    if (stored && mayUse(asked, *stored, now))
        return Plan::useStored;
    if (asked.isOnlyIfCached)
        return Plan::fail;
    return stored ? validateOrLoad(request, *stored) : Plan::load;
}

// 3.2 and 3.1: what a 304 cannot change, since it is about the body that stays, and what belongs to one connection.
bool isKeptAtRefresh(std::string_view name)
{
    constexpr std::array names{"Content-Length",
                               "Content-Encoding",
                               "Content-Type",
                               "Content-Range",
                               "Connection",
                               "Proxy-Connection",
                               "Keep-Alive",
                               "Proxy-Authentication-Info",
                               "Proxy-Authenticate",
                               "Proxy-Authorization",
                               "TE",
                               "Transfer-Encoding",
                               "Upgrade"};
    return std::any_of(names.begin(), names.end(),
                       [name](const char* kept) { return equalsIgnoringCase(kept, name); });
}

std::string_view withoutWeakness(std::string_view tag)
{
    if (tag.starts_with("W/"))
        tag.remove_prefix(2);
    return tag;
}

// 4.3.4: which answer a 304 is about. Without a validator it is about the one that was asked about.
bool isAbout(const HTTPURLResponse& notModified, const HTTPURLResponse& stored)
{
    if (auto tag = notModified.value("ETag")) {
        auto own = stored.value("ETag");
        return own && withoutWeakness(*own) == withoutWeakness(*tag);
    }
    auto modified = notModified.value("Last-Modified");
    return !modified || stored.value("ETag") || modified == stored.value("Last-Modified");
}

// Scheme, host and port of an absolute URL, as it is written.
std::string_view origin(std::string_view url)
{
    auto scheme = url.find("://");
    return scheme == std::string_view::npos ? std::string_view()
                                            : url.substr(0, url.find_first_of("/?#", scheme + 3));
}

// A reference of the request's own origin; nothing for any other, whose servers would be told what they stored.
std::optional<URL> ownURL(std::string_view reference, const URL& base)
{
    auto own = origin(base.absoluteString());
    if (reference.starts_with('/') && !reference.starts_with("//"))
        return URL::parse(std::string(own).append(reference));
    auto url = URL::parse(reference);
    return url && origin(url->absoluteString()) == own ? url : std::nullopt;
}

} // namespace

Plan plan(const URLRequest& request, const std::optional<CachedURLResponse>& stored, Date now)
{
    switch (request.cachePolicy) {
    case URLRequestCachePolicy::reloadIgnoringLocalCacheData:
    case URLRequestCachePolicy::reloadIgnoringLocalAndRemoteCacheData:
        return Plan::load;
    case URLRequestCachePolicy::returnCacheDataElseLoad:
        return stored ? Plan::useStored : Plan::load;
    case URLRequestCachePolicy::returnCacheDataDontLoad:
        return stored ? Plan::useStored : Plan::fail;
    case URLRequestCachePolicy::reloadRevalidatingCacheData:
        return stored && !asksForItself(request) ? validateOrLoad(request, *stored) : Plan::load;
    case URLRequestCachePolicy::useProtocolCachePolicy:
        break;
    }
    return planByProtocol(request, stored, now);
}

// 4.3.1. Both validators go: a server that knows tags goes by the tag.
URLRequest validating(URLRequest request, const CachedURLResponse& stored)
{
    if (validateOrLoad(request, stored) != Plan::validateStored)
        return request;
    auto response = httpResponse(stored);
    if (auto tag = response->value("ETag"))
        request.setValue(*tag, "If-None-Match");
    if (auto modified = response->value("Last-Modified"))
        request.setValue(*modified, "If-Modified-Since");
    return request;
}

std::optional<CachedURLResponse> refreshed(const CachedURLResponse& stored,
                                           const HTTPURLResponse& notModified, HTTPExchangeTimes times)
{
    auto response = httpResponse(stored);
    if (!response || !isAbout(notModified, *response))
        return std::nullopt;
    auto fields = response->allHeaderFields();
    fields.erase("Age"); // of the former answer; a cache on the way has written its own
    for (const auto& [name, value] : notModified.allHeaderFields())
        if (!isKeptAtRefresh(name) && (fields.contains(name) || fields.size() < HTTPHeaderFields::mostFields))
            fields.insert_or_assign(name, value);
    auto renewed = std::make_shared<const HTTPURLResponse>(response->url(), response->statusCode(),
                                                           response->httpVersion(), std::move(fields));
    return CachedURLResponse(std::move(renewed), stored.sharedData(), stored.storagePolicy(), times);
}

// 3. Of Authorization (3.5) only shared caches beware; here it selects, see selectingFields().
bool mayStore(const URLRequest& request, const HTTPURLResponse& response)
{
    auto status = response.statusCode();
    if (request.httpMethod != "GET" || request.value("Range") || status < 200 || status == 206
        || status == 304)
        return false;
    auto said = directives(response);
    if (said.isNoStore || directives(request).isNoStore || !selectingFields(request, response))
        return false;
    return isCacheableByDefault(status) || said.isPublic || said.maxAge || response.value("Expires");
}

// 4.4
std::vector<URL> invalidatedBy(const URLRequest& request, const HTTPURLResponse& response)
{
    constexpr std::array safe{"GET", "HEAD", "OPTIONS", "TRACE"};
    auto isSafe = std::any_of(safe.begin(), safe.end(),
                              [&request](const char* method) { return request.httpMethod == method; });
    if (isSafe || response.statusCode() < 200 || response.statusCode() >= 400)
        return {};
    std::vector<URL> urls{request.url};
    for (auto name : {"Location", "Content-Location"})
        if (auto reference = response.value(name))
            if (auto url = ownURL(*reference, request.url))
                urls.push_back(*std::move(url));
    return urls;
}

// 4.2.3
double currentAge(const CachedURLResponse& stored, Date now)
{
    auto [requested, answered] = stored.times();
    double apparent = 0;
    double said = 0;
    if (auto response = httpResponse(stored)) {
        if (auto date = dateField(*response, "Date", now))
            apparent = std::max(0.0, answered.timeIntervalSince1970 - date->timeIntervalSince1970);
        said = static_cast<double>(parseDeltaSeconds(response->value("Age").value_or("")).value_or(0));
    }
    auto delay = std::max(0.0, answered.timeIntervalSince1970 - requested.timeIntervalSince1970);
    // A clock that was set back makes nothing younger than it was when it came.
    auto resident = std::max(0.0, now.timeIntervalSince1970 - answered.timeIntervalSince1970);
    return std::max(apparent, said + delay) + resident;
}

// 4.2.1 and 4.2.2. s-maxage is for shared caches.
double freshnessLifetime(const CachedURLResponse& stored, Date now)
{
    auto response = httpResponse(stored);
    if (!response)
        return 0;
    if (auto maxAge = directives(*response).maxAge)
        return static_cast<double>(*maxAge);
    auto date = dateField(*response, "Date", now).value_or(stored.times().answered);
    if (response->value("Expires")) {
        // What is no date, "0" above all, means the past (5.3).
        auto expires = dateField(*response, "Expires", now);
        return expires ? std::max(0.0, expires->timeIntervalSince1970 - date.timeIntervalSince1970) : 0;
    }
    if (!isCacheableByDefault(response->statusCode()) && !directives(*response).isPublic)
        return 0;
    // A tenth of the time for which nothing has changed, but no longer than a day: it is a guess.
    constexpr double longestGuess = 24 * 3600;
    auto modified = dateField(*response, "Last-Modified", now);
    return modified
        ? std::clamp((date.timeIntervalSince1970 - modified->timeIntervalSince1970) / 10, 0.0, longestGuess)
        : 0;
}

// 4.1
std::optional<std::vector<std::string>> selectingFields(const URLRequest& request,
                                                        const URLResponse& response)
{
    std::vector<std::string> names;
    auto isEverything = false;
    if (auto http = dynamic_cast<const HTTPURLResponse*>(&response))
        forEachElement(http->value("Vary").value_or(""), [&](std::string_view name) {
            isEverything = isEverything || name == "*";
            names.emplace_back(name);
        });
    if (isEverything)
        return std::nullopt;
    if (request.value("Authorization"))
        names.emplace_back("authorization");
    for (auto& name : names)
        std::transform(name.begin(), name.end(), name.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::string selection(const URLRequest& request, const std::vector<std::string>& fields)
{
    std::string text;
    for (const auto& name : fields) {
        // Absent differs from empty, and lengths keep one value from passing for two.
        text.append(name);
        if (auto value = request.value(name))
            text.append(":").append(std::to_string(value->size())).append(":").append(*value);
        text.append("\n");
    }
    return text;
}

} // namespace platform::httpcaching

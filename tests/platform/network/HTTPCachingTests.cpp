// SPDX-License-Identifier: MIT
#include "platform/network/HTTPCaching.h"

#include "platform/network/HTTPCachingFields_p.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

using namespace platform;
using namespace platform::httpcaching;
using enum Plan;
using Policy = URLRequestCachePolicy;

namespace {

using Fields = HTTPHeaderFields;

// The answers of these tests came at this moment: Sun, 06 Nov 1994 08:49:37 GMT.
constexpr double arrival = 784111777;
constexpr const char* arrivalText = "Sun, 06 Nov 1994 08:49:37 GMT";
constexpr const char* hundredLater = "Sun, 06 Nov 1994 08:51:17 GMT";
constexpr const char* thousandBefore = "Sun, 06 Nov 1994 08:32:57 GMT";

URL pageURL()
{
    return *URL::parse("http://example.org/page");
}

URLRequest asking(Fields fields = {}, Policy policy = Policy::useProtocolCachePolicy)
{
    URLRequest request(pageURL(), policy);
    request.allHTTPHeaderFields = std::move(fields);
    return request;
}

HTTPURLResponse answering(Fields fields, int status = 200)
{
    return {pageURL(), status, "HTTP/1.1", std::move(fields)};
}

CachedURLResponse stored(Fields fields, int status = 200, double delay = 0)
{
    return {std::make_shared<const HTTPURLResponse>(pageURL(), status, "HTTP/1.1", std::move(fields)),
            std::make_shared<const std::string>("body"),
            URLCacheStoragePolicy::allowed,
            {Date{arrival - delay}, Date{arrival}}};
}

TEST(HTTPCachingTests, AStoredAnswerIsUsedAskedAboutOrPassedOver)
{
    struct Case {
        const char* name;
        Fields asked;
        Fields said;
        double age; // seconds since it came
        Plan expected;
        int status = 200;
        Policy policy = Policy::useProtocolCachePolicy;
    };
    const Fields stale{{"Cache-Control", "max-age=10"}, {"ETag", "\"a\""}};
    const Fields fresh{{"Cache-Control", "max-age=1000"}, {"ETag", "\"a\""}};
    const Case cases[] = {
        {"within max-age", {}, stale, 9, useStored},
        {"at its very end", {}, stale, 10, validateStored},
        {"past it without validators", {}, {{"cache-control", "MAX-AGE=10"}}, 11, load},
        {"the Age that it came with counts", {}, {{"Cache-Control", "max-age=10"}, {"Age", "8"}}, 3, load},
        {"an old Date counts", {}, {{"Cache-Control", "max-age=100"}, {"Date", thousandBefore}}, 0, load},
        {"s-maxage is not for private caches",
         {},
         {{"Cache-Control", "s-maxage=0, max-age=10"}},
         5,
         useStored},
        {"max-age goes before Expires",
         {},
         {{"Cache-Control", "max-age=10"}, {"Expires", "0"}},
         5,
         useStored},
        {"before Expires", {}, {{"Date", arrivalText}, {"Expires", hundredLater}}, 99, useStored},
        {"after Expires", {}, {{"Date", arrivalText}, {"Expires", hundredLater}}, 101, load},
        {"Expires that is no date", {}, {{"Expires", "-1"}}, 0, load},
        {"nothing said, nothing known", {}, {}, 0, load},
        {"a tenth of the time without change", {}, {{"Last-Modified", thousandBefore}}, 99, useStored},
        {"more than a tenth", {}, {{"Last-Modified", thousandBefore}}, 101, validateStored},
        {"no guess for 302", {}, {{"Last-Modified", thousandBefore}}, 0, validateStored, 302},
        {"max-age that is no number",
         {},
         {{"Cache-Control", "max-age=ten"}, {"ETag", "a"}},
         0,
         validateStored},
        {"max-age that is said twice", {}, {{"Cache-Control", "max-age=100, max-age=5"}}, 6, load},
        {"max-age beyond all numbers",
         {},
         {{"Cache-Control", "max-age=99999999999999999999"}},
         1e9,
         useStored},
        {"max-age in quotes",
         {},
         {{"Cache-Control", "private=\"a,no-cache\", max-age=\"10\""}},
         5,
         useStored},
        {"no-cache of the answer",
         {},
         {{"Cache-Control", "no-cache, max-age=9"}, {"ETag", "a"}},
         0,
         validateStored},
        {"no-cache of the request", {{"Cache-Control", "no-cache"}}, fresh, 0, validateStored},
        {"Pragma of the request", {{"Pragma", "no-cache"}}, fresh, 0, validateStored},
        {"Pragma beside Cache-Control",
         {{"Pragma", "no-cache"}, {"Cache-Control", "max-age=9"}},
         fresh,
         0,
         useStored},
        {"max-age of the request", {{"Cache-Control", "max-age=5"}}, fresh, 6, validateStored},
        {"min-fresh that is left", {{"Cache-Control", "min-fresh=10"}}, fresh, 990, useStored},
        {"min-fresh that is not left", {{"Cache-Control", "min-fresh=10"}}, fresh, 991, validateStored},
        {"max-stale that suffices", {{"Cache-Control", "max-stale=5"}}, stale, 15, useStored},
        {"max-stale that does not", {{"Cache-Control", "max-stale=5"}}, stale, 16, validateStored},
        {"max-stale of any age", {{"Cache-Control", "max-stale"}}, stale, 1e6, useStored},
        {"max-stale against must-revalidate",
         {{"Cache-Control", "max-stale"}},
         {{"Cache-Control", "max-age=1, must-revalidate"}, {"ETag", "a"}},
         2,
         validateStored},
        {"only-if-cached, fresh", {{"Cache-Control", "only-if-cached"}}, fresh, 0, useStored},
        {"only-if-cached, stale", {{"Cache-Control", "only-if-cached"}}, stale, 99, fail},
        {"a condition of the request's own", {{"If-None-Match", "\"z\""}}, fresh, 0, load},
        {"a range", {{"Range", "bytes=0-1"}}, fresh, 0, load},
        {"a policy that reloads", {}, fresh, 0, load, 200, Policy::reloadIgnoringLocalCacheData},
        {"a policy that reloads everywhere",
         {},
         fresh,
         0,
         load,
         200,
         Policy::reloadIgnoringLocalAndRemoteCacheData},
        {"a policy that takes anything", {}, stale, 1e6, useStored, 200, Policy::returnCacheDataElseLoad},
        {"a policy that never loads", {}, stale, 1e6, useStored, 200, Policy::returnCacheDataDontLoad},
        {"a policy that always asks", {}, fresh, 0, validateStored, 200, Policy::reloadRevalidatingCacheData},
        {"a clock that was set back", {}, stale, -500, useStored},
    };
    for (const auto& test : cases)
        EXPECT_EQ(
            plan(asking(test.asked, test.policy), stored(test.said, test.status), Date{arrival + test.age}),
            test.expected)
            << test.name;

    EXPECT_EQ(plan(asking(), std::nullopt, Date{arrival}), load);
    EXPECT_EQ(plan(asking({}, Policy::returnCacheDataElseLoad), std::nullopt, Date{arrival}), load);
    EXPECT_EQ(plan(asking({}, Policy::returnCacheDataDontLoad), std::nullopt, Date{arrival}), fail);
    EXPECT_EQ(plan(asking({{"Cache-Control", "only-if-cached"}}), std::nullopt, Date{arrival}), fail);
    // The way it took counts as age where a cache on the way said one.
    EXPECT_DOUBLE_EQ(currentAge(stored({{"Age", "3"}}, 200, 4), Date{arrival + 10}), 17);
}

TEST(HTTPCachingTests, AnAnswerIsKeptOrNot)
{
    struct Case {
        const char* name;
        Fields asked;
        Fields said;
        int status;
        bool expected;
        const char* method = "GET";
    };
    const Case cases[] = {
        {"plain", {}, {}, 200, true},
        {"not found", {}, {}, 404, true},
        {"a part", {}, {{"Cache-Control", "max-age=9"}}, 206, false},
        {"not modified", {}, {{"Cache-Control", "max-age=9"}}, 304, false},
        {"an informational one", {}, {{"Cache-Control", "max-age=9"}}, 103, false},
        {"a fault of the server", {}, {}, 500, false},
        {"a fault that says how long", {}, {{"Cache-Control", "max-age=9"}}, 503, true},
        {"a passing redirection", {}, {}, 302, false},
        {"one that expires", {}, {{"Expires", hundredLater}}, 302, true},
        {"one that is public", {}, {{"Cache-Control", "public"}}, 307, true},
        {"no-store of the answer", {}, {{"Cache-Control", "max-age=9, No-Store"}}, 200, false},
        {"no-store of the request", {{"Cache-Control", "no-store"}}, {}, 200, false},
        {"no-store inside of a quoted text", {}, {{"Cache-Control", "x=\"a, no-store\""}}, 200, true},
        {"private", {}, {{"Cache-Control", "private"}}, 200, true},
        {"with an account", {{"Authorization", "Basic eg"}}, {}, 200, true},
        {"by everything", {}, {{"Vary", "Accept, *"}}, 200, false},
        {"another method", {}, {{"Cache-Control", "max-age=9"}}, 200, false, "POST"},
        {"a head", {}, {}, 200, false, "HEAD"},
    };
    for (const auto& test : cases) {
        auto request = asking(test.asked);
        request.httpMethod = test.method;
        EXPECT_EQ(mayStore(request, answering(test.said, test.status)), test.expected) << test.name;
    }
}

TEST(HTTPCachingTests, AnswersAreSelectedByWhatTheyDependOn)
{
    auto fields = selectingFields(asking({{"Authorization", "a"}}),
                                  answering({{"Vary", "Accept-Language, accept,,ACCEPT"}}));
    ASSERT_TRUE(fields);
    EXPECT_EQ(*fields, (std::vector<std::string>{"accept", "accept-language", "authorization"}));
    const auto base = selection(asking({{"Accept", "a"}, {"Authorization", "x"}}), *fields);
    EXPECT_EQ(base, selection(asking({{"ACCEPT", "a"}, {"authorization", "x"}, {"Other", "y"}}), *fields));
    // Another value, another account, absent against empty, and what tries to look like two fields.
    for (const Fields& other : {Fields{{"Accept", "b"}, {"Authorization", "x"}}, Fields{{"Accept", "a"}},
                                Fields{{"Accept", "a"}, {"Authorization", "x"}, {"Accept-Language", ""}},
                                Fields{{"Accept", "a\naccept-language"}, {"Authorization", "x"}}})
        EXPECT_NE(base, selection(asking(other), *fields));
}

TEST(HTTPCachingTests, WhatIsStaleIsAskedAboutAndRenewed)
{
    auto old = stored({{"ETag", "W/\"a\""},
                       {"Last-Modified", thousandBefore},
                       {"Content-Type", "image/png"},
                       {"Age", "50"}});
    auto asked = validating(asking(), old);
    EXPECT_EQ(asked.value("If-None-Match"), "W/\"a\"");
    EXPECT_EQ(asked.value("If-Modified-Since"), thousandBefore);
    URLRequest elsewhere(
        *URL::parse("http://example.org/moved")); // what a redirection led to is stored under it
    EXPECT_EQ(validating(elsewhere, old), elsewhere);

    auto renewed = refreshed(old,
                             answering({{"etag", "\"a\""},
                                        {"Cache-Control", "max-age=60"},
                                        {"Content-Type", "text/html"},
                                        {"Connection", "x"}},
                                       304),
                             {Date{arrival + 500}, Date{arrival + 500}});
    ASSERT_TRUE(renewed);
    auto& head = dynamic_cast<const HTTPURLResponse&>(*renewed->response());
    EXPECT_EQ(head.statusCode(), 200);
    EXPECT_EQ(head.allHeaderFields(),
              (Fields{{"ETag", "\"a\""},
                      {"Last-Modified", thousandBefore},
                      {"Content-Type", "image/png"},
                      {"Cache-Control", "max-age=60"}}));
    EXPECT_EQ(renewed->data(), "body");
    EXPECT_EQ(plan(asking(), *renewed, Date{arrival + 530}), useStored);
    EXPECT_FALSE(refreshed(old, answering({{"ETag", "\"b\""}}, 304), {})) << "it speaks of another state";
}

TEST(HTTPCachingTests, AChangeMakesWhatIsStoredUntrueOnItsOwnOriginOnly)
{
    struct Case {
        const char* method;
        int status;
        Fields said;
        std::vector<std::string> expected;
    };
    const std::string page = "http://example.org/page";
    const Case cases[] = {
        {"GET", 200, {{"Location", "/x"}}, {}},
        {"POST",
         201,
         {{"Location", "/new?a"}, {"Content-Location", "http://example.org/c"}},
         {page, "http://example.org/new?a", "http://example.org/c"}},
        {"DELETE",
         204,
         {{"Location", "http://example.org.evil/x"}, {"Content-Location", "//evil/x"}},
         {page}},
        {"PUT", 500, {}, {}},
    };
    for (const auto& test : cases) {
        auto request = asking();
        request.httpMethod = test.method;
        std::vector<std::string> urls;
        for (const auto& url : invalidatedBy(request, answering(test.said, test.status)))
            urls.push_back(url.absoluteString());
        EXPECT_EQ(urls, test.expected) << test.method;
    }
}

TEST(HTTPCachingTests, DatesAreReadInAllTheirFormsAndNothingElseIs)
{
    struct Case {
        const char* text;
        std::optional<double> expected;
    };
    const Case cases[] = {
        {arrivalText, arrival},
        {"Sunday, 06-Nov-94 08:49:37 GMT", arrival},
        {"Sun Nov  6 08:49:37 1994", arrival},
        {" Thu, 29 Feb 2024 23:59:60 GMT ", 1709251200},
        {"Thu, 29 Feb 2023 00:00:00 GMT", std::nullopt},
        {"Sun, 06 Nov 1994 24:49:37 GMT", std::nullopt},
        {"Sun, 06 Nov 1994 08:49:37 UTC", std::nullopt},
        {"Sun, 06 Nov 1994 08:49:37 GMT+1", std::nullopt},
        {"Sun, 6 Nov 1994 08:49:37 GMT", std::nullopt},
        {"0", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& test : cases) {
        auto date = parseDate(test.text, Date{arrival});
        EXPECT_EQ(date ? std::optional(date->timeIntervalSince1970) : std::nullopt, test.expected)
            << test.text;
    }
    // Two digits mean the last such year that is not more than 50 years ahead.
    EXPECT_EQ(parseDate("Sunday, 06-Nov-94 08:49:37 GMT", Date{1'763'000'000})->timeIntervalSince1970,
              arrival);
}

} // namespace

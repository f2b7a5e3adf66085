// SPDX-License-Identifier: MIT
// What strangers write into heads, and where they may lead.
#include "platform/network/HTTPMessage_p.h"

#include "platform/network/HTTPHead_p.h"
#include "platform/network/HTTPURLResponse.h"
#include "platform/network/NSURLErrorCodes.h"
#include "platform/network/Redirection_p.h"

#include <gtest/gtest.h>

namespace platform {

TEST(HTTPMessage, ofAHeadOnlyWhatMayBeBelievedIsKept)
{
    struct Case {
        std::vector<std::string> lines;
        int status;
        HTTPHeaderFields fields;
    };
    const Case cases[] = {
        {{"HTTP/2 204 \r\n", "\r\n"}, 204, {}},
        {{"HTTP/1.0 404\n", "a:1\n", "A:  2 \n", "\n"}, 404, {{"a", "1, 2"}}},
        {{"HTTP/1.1 200 OK\r\n", "A: x\r\n", " y\r\n", "\tz\r\n", "B: 1\r\n", "\r\n"},
         200,
         {{"A", "x y z"}, {"B", "1"}}},
        {{"HTTP/1.1 200 OK\r\n", " lost\r\n", "A b: 1\r\n", "C : 1\r\n", ": 1\r\n", "none\r\n",
          std::string("D: \x01\0\r\n", 7), "\r\n"},
         200,
         {}},
        {{"HTTP/1.1 103 Early\r\n", "A: 1\r\n", "\r\n", "HTTP/1.1 200 OK\r\n", "\r\n", "B: behind\r\n",
          "\r\n"},
         200,
         {}},
        {{"HTTP/1.1 101 Switching\r\n", "\r\n"}, 101, {}},
    };
    for (auto& [lines, status, fields] : cases) {
        SCOPED_TRACE(lines[1]);
        HTTPHead head;
        int whole = 0;
        for (auto& line : lines)
            whole += head.take(line) == HTTPHead::Reading::isWhole ? 1 : 0;
        EXPECT_EQ(whole, status >= 200 ? 1 : 0);
        EXPECT_EQ(head.status(), status);
        EXPECT_EQ(head.takeFields(), fields);
    }
    HTTPHead endless;
    std::size_t count = 0;
    while (endless.take("f" + std::to_string(count) + ": x\r\n") != HTTPHead::Reading::isTooLong)
        ASSERT_LE(++count, HTTPHeaderFields::mostFields + 1);
    EXPECT_EQ(count, HTTPHeaderFields::mostFields + 1);

    EXPECT_EQ(HTTPHeaderFields({{"a", "1"}, {"B", "2"}}),
              HTTPHeaderFields({{"b", "2"}, {"A", "1"}, {"a", "3"}}));
    EXPECT_NE(HTTPHeaderFields({{"a", "1"}, {"B", "2"}}), HTTPHeaderFields({{"a", "1"}, {"b", "1"}}));
}

TEST(HTTPMessage, namesOfFilesAreSafe)
{
    struct Case {
        const char* disposition; // null: none
        const char* url;
        std::string name;
    };
    const Case cases[] = {
        {nullptr, "http://h/a/b.txt?q=1", "b.txt"},
        {nullptr, "http://h/a/%2e%2e%2fetc", "etc"},
        {nullptr, "http://h/", "h"},
        {"attachment; filename=\"x.txt\"", "http://h/b", "x.txt"},
        {"attachment; filename=x.txt", "http://h/b", "x.txt"},
        {"attachment; filename=\"a \\\"b\\\"; c.txt\"", "http://h/b", "a \"b\"; c.txt"},
        {"attachment; filename=\"plain\"; filename*=UTF-8''na%C3%AFve", "http://h/b", "naïve"},
        {"attachment; filename*=iso-8859-1'en'na%EFve", "http://h/b", "naïve"},
        {"attachment; filename*=utf-8''%ff", "http://h/b", "b"},
        {"attachment; filename*=UTF-8''%2", "http://h/b", "b"},
        {"attachment; filename=\"../../etc/passwd\"", "http://h/b", "passwd"},
        {"attachment; filename=\"C:\\\\dir\\\\x.txt\"", "http://h/b", "x.txt"},
        {"attachment; filename=\"..\"", "http://h/b", "b"},
        {"attachment; filename=\"a\tb\"", "http://h/b", "ab"},
        {"attachment; filename=\"unclosed", "http://h/b", "\"unclosed"},
    };
    for (auto& [disposition, url, name] : cases) {
        HTTPHeaderFields fields;
        if (disposition)
            fields.emplace("content-disposition", disposition);
        HTTPURLResponse response(*URL::parse(url), 200, "HTTP/1.1", fields);
        EXPECT_EQ(response.suggestedFilename(), name) << (disposition ? disposition : url);
    }
    EXPECT_EQ(safeFilename("x" + std::string(300, 'y')).size(), 255u);
}

TEST(HTTPMessage, lengthsRangesAndTagsAreBelievedOnlyWhenTheyAreWhole)
{
    HTTPURLResponse text(*URL::parse("http://h/"), 200, "HTTP/1.1",
                         {{"content-type", "Text/HTML; charset=UTF-8"}, {"content-length", "5"}});
    EXPECT_EQ(text.mimeType(), "text/html");
    EXPECT_EQ(text.textEncodingName(), "UTF-8");
    EXPECT_EQ(text.expectedContentLength(), 5);
    EXPECT_EQ(parseContentLength("5, 5"), 5);
    for (auto* bad : {"", "-1", "+1", "5,6", "0x5", "5 5", "99999999999999999999"})
        EXPECT_EQ(parseContentLength(bad), std::nullopt) << bad;

    auto range = parseContentRange("bytes 5-9/10");
    ASSERT_TRUE(range);
    EXPECT_EQ(range->first, 5);
    EXPECT_EQ(range->total, 10);
    EXPECT_EQ(parseContentRange("bytes 5-9/*")->total, std::nullopt);
    for (auto* bad :
         {"", "bytes */10", "bytes 9-5/10", "bytes 5-10/10", "bytes -5/10", "pages 5-9/10", "bytes 5/9-10"})
        EXPECT_FALSE(parseContentRange(bad)) << bad;

    EXPECT_EQ(strongValidator({{"etag", "\"a\""}}), "\"a\"");
    for (auto* bad : {"W/\"a\"", "a", "\"", ""})
        EXPECT_EQ(strongValidator({{"ETag", bad}}), std::nullopt) << bad;
    EXPECT_EQ(HTTPURLResponse::localizedStringForStatusCode(404), "not found");
    EXPECT_EQ(HTTPURLResponse::localizedStringForStatusCode(499), "client error");
}

TEST(HTTPMessage, redirectionsChangeMethodsAndKeepSecrets)
{
    struct Case {
        int status;
        const char* from;
        const char* location;
        const char* method;
        const char* to; // null: refused
        const char* newMethod;
        bool keepsAuthorization;
        long code;
    };
    constexpr auto http = "http://a/x/y?q";
    const Case cases[] = {
        {301, http, "z", "GET", "http://a/x/z", "GET", true, 0},
        {302, http, "/z", "POST", "http://a/z", "GET", true, 0},
        {303, http, "//b/z", "PUT", "http://b/z", "GET", false, 0},
        {307, http, "http://a:81/z", "POST", "http://a:81/z", "POST", false, 0},
        {308, http, "http://a:80/z", "POST", "http://a:80/z", "POST", true, 0},
        {302, http, "https://a/z", "GET", "https://a/z", "GET", false, 0},
        {302, http, "../../z?r", "GET", "http://a/z?r", "GET", true, 0},
        {302, http, "?r", "GET", "http://a/x/y?r", "GET", true, 0},
        {302, http, "?", "GET", "http://a/x/y?", "GET", true, 0},
        {302, http, "http://a/z?#end", "GET", "http://a/z?#end", "GET", true, 0},
        {303, http, "#end", "POST", "http://a/x/y?q#end", "GET", true, 0},
        {302, "http://[fe80::1%25a]/", "//[fe80::1%25b]/", "GET", "http://[fe80::1%25b]/", "GET", false, 0},
        {302, http, "///b", "GET", nullptr, "", false, NSURLErrorRedirectToNonExistentLocation},
        {302, http, "/z w/\xC3\xA9%41%zz", "GET", "http://a/z%20w/%C3%A9%41%25zz", "GET", true, 0},
        {302, http, "//b\xC3\xBC.example/", "GET", "http://xn--b-eha.example/", "GET", false, 0},
        {302, http, "", "GET", nullptr, "", false, NSURLErrorRedirectToNonExistentLocation},
        {302, http, "http://a:99999/", "GET", nullptr, "", false, NSURLErrorRedirectToNonExistentLocation},
        {302, "https://a/", "http://a/z", "GET", nullptr, "", false,
         NSURLErrorAppTransportSecurityRequiresSecureConnection},
        {302, http, "javascript:alert(1)", "GET", nullptr, "", false, NSURLErrorUnsupportedURL},
        {302, http, "data:,x", "GET", nullptr, "", false, NSURLErrorUnsupportedURL},
        {302, http, "http:/b//c", "GET", nullptr, "", false, NSURLErrorUnsupportedURL},
        {302, http, "file:/etc/passwd", "GET", nullptr, "", false, NSURLErrorUnsupportedURL},
    };
    for (auto& [status, from, location, method, to, newMethod, keepsAuthorization, code] : cases) {
        SCOPED_TRACE(location);
        URLRequest request(*URL::parse(from));
        request.httpMethod = method;
        request.httpBody = "body";
        request.setValue("secret", "authorization");
        request.setValue("another.name", "host");
        auto next =
            redirection(request, HTTPURLResponse(request.url, status, "HTTP/1.1", {{"Location", location}}));
        ASSERT_TRUE(next);
        ASSERT_EQ(next->has_value(), to != nullptr);
        if (!to) {
            EXPECT_EQ(next->error(), code);
            continue;
        }
        EXPECT_EQ((*next)->url.absoluteString(), to);
        EXPECT_EQ((*next)->httpMethod, newMethod);
        EXPECT_EQ((*next)->httpBody.empty(), (*next)->httpMethod != method && (*next)->httpMethod == "GET");
        EXPECT_EQ((*next)->value("Authorization").has_value(), keepsAuthorization);
        EXPECT_EQ((*next)->value("Host").has_value(), keepsAuthorization);
    }
    EXPECT_EQ(addressOf(*URL::parse("http://me:secret@b\xC3\xBC.example/x?y#z")),
              "http://xn--b-eha.example/x?y");
    EXPECT_EQ(addressOf(*URL::parse("http://me:p@ss@a_b/x?#z")), "http://a_b/x?");
    EXPECT_FALSE(isLoadable(*URL::parse("http://a b/")));
}

} // namespace platform

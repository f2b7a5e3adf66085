// SPDX-License-Identifier: MIT
#include "platform/foundation/URL.h"

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace platform {

using namespace std::string_view_literals;
using ::tests::TemporaryDirectory;

TEST(URLTests, A_path_travels_through_a_file_URL_unchanged)
{
    struct Case {
        std::string_view path, text;
    };
    constexpr Case cases[] = {
        {"/", "file:///"},
        {"/a/b.srt", "file:///a/b.srt"},
        {"/with space", "file:///with%20space"},
        {"/100%", "file:///100%25"},
        {"/what?#now", "file:///what%3F%23now"},
        {"/é", "file:///%C3%A9"},
        {"/\xFF\xFE not UTF-8", "file:///%FF%FE%20not%20UTF-8"},
        {"/line\nend\t", "file:///line%0Aend%09"},
        {"/a;b=c&d,e@f:g+h!i$j'k(l)m*n~o", "file:///a;b=c&d,e@f:g+h!i$j'k(l)m*n~o"},
        {"/\"<>[]^`{|}\\", "file:///%22%3C%3E%5B%5D%5E%60%7B%7C%7D%5C"},
        {"/a/../b/./c", "file:///a/../b/./c"},
        {"//twice", "file:////twice"},
        {"/zero\0byte"sv, "file:///zero%00byte"},
    };
    for (auto& [path, text] : cases) {
        auto url = URL::fileURL(path);
        EXPECT_EQ(url.absoluteString(), text);
        EXPECT_EQ(url.path(), path);
        auto parsed = URL::parse(text);
        ASSERT_TRUE(parsed) << text;
        EXPECT_EQ(*parsed, url);
        EXPECT_TRUE(parsed->isFileURL());
    }
}

TEST(URLTests, Every_byte_survives_encoding)
{
    std::string path = "/";
    for (int byte = 0; byte < 256; ++byte)
        path += static_cast<char>(byte);
    auto url = URL::fileURL(path);
    for (char c : url.absoluteString())
        EXPECT_TRUE(c > ' ' && c < 0x7F);
    EXPECT_EQ(url.path(), path);
    EXPECT_EQ(URL::parse(url.absoluteString()), url);
}

TEST(URLTests, Spellings_of_the_same_file_are_equal)
{
    auto file = URL::fileURL("/a b.srt");
    for (std::string_view text : {"file:///a%20b.srt", "file:/a%20b.srt", "file://localhost/a%20b.srt",
                                  "FILE://LocalHost/a%20b.srt", "file:///a b.srt", "file:///%61%20b%2esrt"}) {
        auto parsed = URL::parse(text);
        ASSERT_TRUE(parsed) << text;
        EXPECT_EQ(*parsed, file) << text;
        EXPECT_EQ(std::hash<URL>()(*parsed), std::hash<URL>()(file));
    }
}

TEST(URLTests, What_is_no_absolute_URL_is_refused)
{
    for (std::string_view text : {"", "a.srt", "/a.srt", ":x", "1a:x", "fi le:///a", "file:", "file:a.srt",
                                  "file://", "file://server/a", "file://server", "file://localhost",
                                  "file://127.0.0.1/a", "file://user@localhost/a", "file:///%", "file:///%4",
                                  "file:///%zz", "file:///a\nb", "http://host/%g0"})
        EXPECT_FALSE(URL::parse(text)) << text;
    EXPECT_FALSE(URL::parse("file:///a\0b"sv));
}

TEST(URLTests, A_relative_path_begins_at_the_working_directory_even_a_deleted_one)
{
    auto before = std::filesystem::current_path();
    auto directory = std::make_optional<TemporaryDirectory>();
    std::filesystem::current_path(directory->path());
    // the directory may be reached through a link
    auto here = std::filesystem::current_path().string();
    for (auto [name, path] :
         {std::pair("a.srt", "/a.srt"), {"./a", "/a"}, {"../a", "/../a"}, {"", ""}, {"-x", "/-x"}})
        EXPECT_EQ(URL::fileURL(name).path(), here + path);
    directory.reset();
    auto path = URL::fileURL("a.srt").path();
    std::filesystem::current_path(before);
    EXPECT_TRUE(path.starts_with('/') && path.ends_with("/a.srt")) << path;
}

TEST(URLTests, Components_are_those_of_the_decoded_path)
{
    struct Case {
        std::string_view path, name, extension, parent;
    };
    constexpr Case cases[] = {
        {"/", "/", "", "/"},
        {"/a", "a", "", "/"},
        {"/a/b.en.srt", "b.en.srt", "srt", "/a"},
        {"/a/b.srt/", "b.srt", "srt", "/a"},
        {"/a//", "a", "", "/"},
        {"/.hidden", ".hidden", "", "/"},
        {"/.hidden.srt", ".hidden.srt", "srt", "/"},
        {"/name.", "name.", "", "/"},
        {"/d.x/name", "name", "", "/d.x"},
        {"/d/100% ?.s#t", "100% ?.s#t", "s#t", "/d"},
        {"/\xFF.\xFE", "\xFF.\xFE", "\xFE", "/"},
    };
    for (auto& [path, name, extension, parent] : cases) {
        auto url = URL::fileURL(path);
        EXPECT_EQ(url.lastPathComponent(), name) << path;
        EXPECT_EQ(url.pathExtension(), extension) << path;
        EXPECT_EQ(url.deletingLastPathComponent().path(), parent) << path;
    }
}

TEST(URLTests, An_appended_component_is_encoded_and_meets_one_slash)
{
    EXPECT_EQ(URL::fileURL("/a").appendingPathComponent("b c").absoluteString(), "file:///a/b%20c");
    EXPECT_EQ(URL::fileURL("/a/").appendingPathComponent("/b/c").path(), "/a/b/c");
    EXPECT_EQ(URL::fileURL("/").appendingPathComponent("50%41").path(), "/50%41");
    EXPECT_EQ(URL::parse("https://host/a?q#f")->appendingPathComponent("b"), URL::parse("https://host/a/b"));
}

TEST(URLTests, Other_schemes_keep_what_the_server_reads)
{
    auto url = URL::parse("HTTPS://User@EXAMPLE.org:8080/a%2Fb/ü?q=1 2&r=/?#top");
    ASSERT_TRUE(url);
    EXPECT_EQ(url->absoluteString(), "https://User@example.org:8080/a%2Fb/%C3%BC?q=1%202&r=/?#top");
    EXPECT_EQ(url->host(), "example.org");
    EXPECT_EQ(url->path(), "/a/b/ü");
    EXPECT_FALSE(url->isFileURL());
    EXPECT_EQ(URL::parse("http://[::1]:80/")->host(), "[::1]");
    auto umlaut = URL::parse("http://MÜNCHEN.example/");
    EXPECT_EQ(URL::parse(umlaut.value().absoluteString()), umlaut);
    EXPECT_EQ(URL::parse("file:///a?q#f")->path(), "/a");
}

} // namespace platform

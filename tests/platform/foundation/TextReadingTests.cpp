// SPDX-License-Identifier: MIT
#include "platform/foundation/String.h"
#include "platform/foundation/TextDecoding.h"
#include "platform/foundation/TextHead.h"
#include "platform/foundation/URL.h"
#include "tests/platform/foundation/EncodedSamples.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform {

using ::tests::TemporaryDirectory;

namespace {

void expectError(const URL& url, NSCocoaError code, std::string clause, std::string name = "")
{
    auto text = String::contentsOf(url);
    ASSERT_FALSE(text) << clause;
    auto& error = text.error().bridged();
    EXPECT_EQ(error, NSError(code)) << error.code();
    EXPECT_EQ(error.userInfo().find(NSFilePathErrorKey)->second, url.lastPathComponent());
    if (name.empty())
        name = url.lastPathComponent();
    EXPECT_EQ(error.localizedDescription(),
              "The file “" + name + "” couldn’t be opened because " + clause + ".");
    clause[0] = static_cast<char>(std::toupper(clause[0]));
    EXPECT_EQ(error.localizedFailureReason(), clause);
}

} // namespace

TEST(TextReadingTests, Empty_files_and_sizes_around_the_detected_beginning_and_a_piece_are_read_exactly)
{
    TemporaryDirectory directory;
    std::string text;
    for (int i = 0; text.size() < 3 * textDetectionSample; ++i)
        text += "Zeile " + std::to_string(i) + " hört auf\r\n";
    for (std::size_t base : {5ul, 4096ul, textDetectionSample, 2 * textDetectionSample}) {
        for (std::size_t size = base - 5; size < base + 5; ++size) {
            for (std::string_view mark : {"", "\xEF\xBB\xBF"}) {
                auto contents = text.substr(0, size);
                while (!contents.empty() && static_cast<unsigned char>(contents.back()) >= 0x80)
                    contents.pop_back(); // of a character that is cut
                for (unsigned threads : {1u, 2u}) {
                    auto read = readText(directory.write("a.srt", std::string(mark) + contents),
                                         {.piecesPerTurn = 1, .threads = threads});
                    ASSERT_TRUE(read);
                    ASSERT_TRUE(read->text.utf8() == contents) << size;
                    EXPECT_EQ(*read->text.survey(), surveyText(contents)) << size;
                    EXPECT_EQ(read->hadMark(), !mark.empty());
                }
            }
        }
    }
}

TEST(TextReadingTests, Every_encoding_is_read_from_a_file_in_pieces)
{
    TemporaryDirectory directory;
    for (auto& sample : tests::scriptSamples) {
        for (auto encoding : tests::allEncodings) {
            auto bytes = tests::mark(encoding)
                + (encoding == TextEncoding::utf8 ? std::string(sample.utf8)
                                                  : tests::encoded(sample.characters, encoding));
            auto url = directory.write("a.srt", bytes);
            for (std::size_t piece : {1u, 2u, 3u, 5u, 7u, 64u}) {
                auto read =
                    readText(url, {.blockSize = piece, .pieceSize = piece, .piecesPerTurn = 1, .threads = 2});
                ASSERT_TRUE(read) << sample.name << ' ' << piece;
                EXPECT_EQ(read->text.utf8(), sample.utf8);
                EXPECT_EQ(read->encoding, encoding);
            }
        }
    }
}

TEST(TextReadingTests, A_name_that_is_not_UTF8_is_opened_and_shown_repaired)
{
    TemporaryDirectory directory;
    auto text = String::contentsOf(directory.write("\xFF\xFE.srt", "found"));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->utf8(), "found");
    expectError(directory.url("\xFF\n.srt"), NSCocoaError::fileReadNoSuchFile, "there is no such file",
                "\uFFFD?.srt");
}

TEST(TextReadingTests, What_is_no_regular_file_is_refused_with_its_kind)
{
    TemporaryDirectory directory;
    ASSERT_EQ(::mkfifo(directory.path("pipe").c_str(), 0600), 0);
    int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {.sun_family = AF_UNIX, .sun_path = {}};
    directory.path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    std::filesystem::create_symlink("pipe", directory.path("link"));
    std::filesystem::create_symlink("circle", directory.path("circle"));
    const std::pair<std::string, std::string> cases[] = {
        {directory.path("pipe"), "it is a named pipe"},
        {directory.path("link"), "it is a named pipe"},
        {directory.path("socket"), "it is a socket"},
        {directory.path(), "it is a directory"},
        {"/dev/null", "it is a device"},
        {"/dev/zero", "it is a device"},
        {directory.path("circle"), "its symbolic links lead in a circle"}};
    for (auto& [path, clause] : cases)
        expectError(URL::fileURL(path), NSCocoaError::fileReadUnknown, clause);
    ::close(socket);
}

TEST(TextReadingTests, Missing_unnameable_and_foreign_files_have_their_codes)
{
    using enum NSCocoaError;
    TemporaryDirectory directory;
    directory.write("file", "");
    expectError(directory.url("none.srt"), fileReadNoSuchFile, "there is no such file");
    expectError(directory.url("file/a.srt"), fileReadNoSuchFile, "there is no such file");
    expectError(*URL::parse("file:///a%00.srt"), fileReadInvalidFileName,
                "its name is not one that a file can have", "a?.srt");
    expectError(directory.url(std::string(300, 'x')), fileReadInvalidFileName,
                "its name is not one that a file can have");
    expectError(*URL::parse("https://example.org/a.srt"), fileReadUnsupportedScheme,
                "URLs of type “https” aren’t supported");
    expectError(directory.write("binary.srt", std::string_view("caf\xE9\0", 5)),
                fileReadUnknownStringEncoding, "the text encoding of its contents can’t be determined");
    expectError(directory.write("cut.srt", "\xFF\xFEz"), fileReadInapplicableStringEncoding,
                "its contents are not valid in the text encoding Unicode (UTF-16LE) that they begin in");
}

TEST(TextReadingTests, An_unreadable_file_says_that_the_permission_is_missing)
{
    TemporaryDirectory directory;
    auto url = directory.write("secret.srt", "x");
    ASSERT_EQ(::chmod(directory.path("secret.srt").c_str(), 0), 0);
    // The superuser may read everything: become somebody else for a moment.
    bool isRoot = ::geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(::chmod(directory.path().c_str(), 0755), 0);
        ASSERT_EQ(::seteuid(65534), 0);
    }
    auto text = String::contentsOf(url);
    if (isRoot) {
        ASSERT_EQ(::seteuid(0), 0);
    }
    ASSERT_FALSE(text);
    EXPECT_EQ(text.error(), Error(NSError(NSCocoaError::fileReadNoPermission)));
    EXPECT_EQ(text.error().localizedDescription(),
              "The file “secret.srt” couldn’t be opened because you don’t have permission to view it.");
}

TEST(TextReadingTests, A_file_that_cannot_fit_into_memory_is_refused_at_once)
{
    TemporaryDirectory directory;
    auto url = directory.write("huge.srt", "");
    if (::truncate(directory.path("huge.srt").c_str(), 1L << 42) != 0)
        GTEST_SKIP() << "this file system has no sparse files of 4 TiB";
    EXPECT_EQ(String::contentsOf(url).error(), Error(NSError(NSCocoaError::fileReadTooLarge)));
}

TEST(TextReadingTests, Files_of_the_kernel_that_lie_about_their_size_are_read)
{
    auto status = String::contentsOf(URL::fileURL("/proc/self/status")); // size 0
    ASSERT_TRUE(status);
    EXPECT_NE(status->utf8().find("VmRSS"), std::string_view::npos);
    EXPECT_EQ(status->survey()->size, status->size());
}

namespace {

using namespace std::string_literals;

TEST(TextHeadTests, aBeginningIsDecodedByWholeLinesOrElseWholeCharacters)
{
    struct Case {
        const char* name;
        std::string bytes;
        std::size_t limit;
        std::string text;
        bool isWhole;
    };
    const Case cases[] = {
        {"all of it", "one\ntwo", 7, "one\ntwo", true},
        {"a byte less", "one\ntwo", 6, "one\n", false},
        {"nothing", "", 8, "", true},
        {"no line end: up to a word", "one two", 6, "one ", false},
        {"neither: up to a character", "öööö", 5, "öö", false},
        {"line ends of one carriage return", "one\rtwo\r", 6, "one\r", false},
        {"UTF-16, where a line feed's byte is half of a letter",
         "\xFF\xFE"
         "h\0\n\0\x0A\x04\x0A\x04\x0A\x04"s,
         9, "h\n", false},
        {"UTF-16, big-endian", "\xFE\xFF\0h\0\n\0i\0j"s, 9, "h\n", false},
        {"UTF-16, between the halves of a character", "\xFF\xFE\x3D\xD8\x00\xDE\x3D\xD8\x00\xDE"s, 8,
         "\U0001F600", false},
        {"UTF-32", "\xFF\xFE\0\0h\0\0\0\n\0\0\0i\0\0\0j\0\0\0"s, 18, "h\n", false},
        {"UTF-8 whose next character is cut stays UTF-8", "Grüße\n\xE6\xBC\xA2\xE5\xAD\x97\n", 11, "Grüße\n",
         false},
    };
    ::tests::TemporaryDirectory folder;
    for (auto& each : cases) {
        SCOPED_TRACE(each.name);
        auto head = readTextHead(folder.write("a.srt", each.bytes), each.limit);
        ASSERT_TRUE(head);
        EXPECT_EQ(head->decoded.text.utf8(), each.text);
        EXPECT_EQ(head->isWhole, each.isWhole);
    }
    EXPECT_FALSE(readTextHead(folder.write("b.srt",
                                           "\x7F"
                                           "ELF\2\1\1\0\0\0\xFF\xC0\0\0\1"s),
                              64));
    EXPECT_FALSE(readTextHead(folder.url("none.srt"), 64));
}

} // namespace
} // namespace platform

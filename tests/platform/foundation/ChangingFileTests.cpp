// SPDX-License-Identifier: MIT
// Files that change, end early or break while they are read.
#include "platform/foundation/TextReading_p.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <mutex>

namespace platform {

namespace {

// A file in memory that a test changes between two reads.
class ScriptedFile final : public ByteSource {
public:
    explicit ScriptedFile(std::string contents)
        : contents_(std::move(contents))
    {
    }

    // Runs before each read; reads are counted from 1.
    std::function<void(int count)> willRead;
    // bytes that one read gives at most
    std::size_t most = SIZE_MAX;
    // what the next read answers instead, a negated error number
    int error = 0;

    void replace(std::string contents)
    {
        contents_ = std::move(contents);
        ++modified_;
    }
    void append(std::string_view more) { replace(contents_ + std::string(more)); }
    const std::string& contents() const { return contents_; }
    int reads() const { return reads_; }
    // what status() says instead of the truth
    std::optional<std::uint64_t> claimedSize;

    std::expected<Status, int> status() override
    {
        std::lock_guard lock(mutex_);
        return Status{.size = claimedSize.value_or(contents_.size()), .modified = modified_};
    }
    ssize_t read(std::span<char> into, std::uint64_t offset) override
    {
        std::lock_guard lock(mutex_);
        ++reads_;
        if (willRead)
            willRead(reads_);
        if (int answer = std::exchange(error, 0))
            return answer;
        if (offset >= contents_.size())
            return 0;
        auto count = std::min({into.size(), contents_.size() - static_cast<std::size_t>(offset), most});
        std::memcpy(into.data(), contents_.data() + offset, count);
        return static_cast<ssize_t>(count);
    }

private:
    std::mutex mutex_;
    std::string contents_;
    std::int64_t modified_ = 0;
    int reads_ = 0;
};

std::string lines(std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += "line " + std::to_string(i) + " ü\r\n";
    return text;
}

// Larger than the detected beginning, so that most is read by the threads.
const std::string& large()
{
    static const std::string text = lines(60'000);
    return text;
}

constexpr TextScanOptions twoThreads{.blockSize = 4096, .pieceSize = 4096, .piecesPerTurn = 1, .threads = 2};

void expectText(const FileOutcome<DecodedText>& outcome, std::string_view expected)
{
    ASSERT_TRUE(outcome) << outcome.error().clause;
    EXPECT_TRUE(outcome->text.utf8() == expected)
        << outcome->text.size() << " bytes, not " << expected.size();
    EXPECT_EQ(*outcome->text.survey(), surveyText(expected, twoThreads));
}

} // namespace

TEST(ChangingFileTests, Reads_that_are_short_or_interrupted_by_a_signal_are_continued)
{
    for (std::size_t most : {1u, 3u, 4095u}) {
        ScriptedFile file(most < 4095 ? lines(500) : large());
        file.most = most;
        file.willRead = [&](int count) { file.error = count % 2 == 1 ? -EINTR : 0; };
        expectText(readTextFrom(file, {}, twoThreads), file.contents());
    }
}

TEST(ChangingFileTests, A_file_that_changes_once_is_read_as_it_is_then_and_never_as_a_mixture)
{
    struct Case {
        const char* name;
        std::string before, after;
    };
    const Case cases[] = {
        {"it shrinks", large(), lines(20'000)},
        {"it is emptied", large(), ""},
        {"it grows", large(), large() + lines(40'000)},
        {"it is written anew", std::string(300'000, '1'), std::string(300'000, '2')},
    };
    for (auto& [name, before, after] : cases) {
        for (int when : {1, 2, 3, 5, 8, 10, 12, 20, 30, 50}) {
            SCOPED_TRACE(name + std::to_string(when));
            ScriptedFile file(before);
            file.willRead = [&](int count) {
                if (count == when)
                    file.replace(after);
            };
            auto outcome = readTextFrom(file, {}, twoThreads);
            expectText(outcome, file.reads() < when ? before : after);
        }
    }
}

TEST(ChangingFileTests, A_log_that_never_rests_is_shown_as_far_as_it_went)
{
    ScriptedFile file(lines(100));
    file.willRead = [&](int) { file.append("more é\n"); };
    auto text = readTextFrom(file, {}, twoThreads);
    ASSERT_TRUE(text) << text.error().clause;
    EXPECT_TRUE(text->text.utf8().starts_with(lines(100) + "more é\n"));
    EXPECT_TRUE(file.contents().starts_with(text->text.utf8()));
    EXPECT_LT(file.reads(), 20);
}

TEST(ChangingFileTests, A_file_that_is_rewritten_all_the_time_is_refused)
{
    ScriptedFile file(lines(1000));
    file.willRead = [&](int count) { file.replace(std::to_string(count) + lines(1000)); };
    auto text = readTextFrom(file, {}, twoThreads);
    ASSERT_FALSE(text);
    EXPECT_EQ(text.error().clause, "it changed while it was being read");
    EXPECT_LT(file.reads(), 20);
}

TEST(ChangingFileTests, A_size_that_is_not_true_is_not_believed)
{
    for (std::uint64_t claimed : {0ul, 1ul, 5'000ul, 10'000'000ul}) {
        ScriptedFile file(lines(700));
        file.claimedSize = claimed;
        expectText(readTextFrom(file, {}, twoThreads), file.contents());
    }
}

TEST(ChangingFileTests, A_device_error_anywhere_is_the_read_error)
{
    for (int when : {1, 2, 50, 1000}) {
        ScriptedFile file(large());
        int last = 0;
        file.willRead = [&](int count) {
            last = count;
            file.error = count >= when || count == 60 ? -EIO : 0;
        };
        auto text = readTextFrom(file, {}, twoThreads);
        ASSERT_FALSE(text) << when;
        EXPECT_EQ(text.error().code, NSCocoaError::fileReadUnknown);
        EXPECT_NE(text.error().clause.find("Input/output error"), std::string::npos);
        EXPECT_LE(last, 62); // the other thread stops soon
    }
}

TEST(ChangingFileTests, Binary_contents_are_not_read_to_the_end)
{
    auto contents = large() + large() + large() + large();
    contents[5000] = '\xFF';
    contents[5001] = '\0';
    ScriptedFile file(contents);
    auto text = readTextFrom(file, {}, twoThreads);
    ASSERT_FALSE(text);
    EXPECT_EQ(text.error().code, NSCocoaError::fileReadUnknownStringEncoding);
    EXPECT_EQ(file.reads(), 1);
}

} // namespace platform

// SPDX-License-Identifier: MIT
// The library counts in 32 bits and keeps what it has seen, so it is shown a window of the text at a time. A
// window begins where a character does, which is all the context that the rules of clusters ask for.
#include "platform/foundation/GraphemeClusters.h"

#include "platform/foundation/Precondition.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <algorithm>

namespace platform {

namespace {

constexpr std::size_t firstWindowSize = 4096;
constexpr std::size_t largestWindowSize = std::size_t{1} << 30;

bool isPrintableASCII(char byte)
{
    return byte >= 0x20 && byte < 0x7F;
}

bool continues(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::unique_ptr<icu::BreakIterator> makeIterator()
{
    // Reading the rules takes longer than breaking a line; copies share them. Never destroyed: threads may still run while
    // the process exits.
    static const auto* original = [] {
        auto status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> made(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        precondition(U_SUCCESS(status), "the rules of user-perceived characters are missing from ICU's data");
        return made.release();
    }();
    return std::unique_ptr<icu::BreakIterator>(original->clone());
}

} // namespace

class GraphemeClusters::Breaker {
public:
    Breaker() = default;
    Breaker(const Breaker&) = delete; // owns the library's text
    Breaker& operator=(const Breaker&) = delete;
    ~Breaker() { utext_close(&window_); }

    // The end of the character that begins at `at`.
    std::size_t endAfter(std::string_view text, std::size_t at)
    {
        for (auto size = firstWindowSize;; size *= 8) {
            if (at < begin_ || at >= end_ || size > firstWindowSize)
                show(text, at, std::min(size, largestWindowSize));
            auto next = iterator_->following(static_cast<std::int32_t>(at - begin_));
            auto found = next == icu::BreakIterator::DONE ? end_ : begin_ + static_cast<std::size_t>(next);
            if (found < end_ || end_ == text.size() || size >= largestWindowSize)
                return found;
        }
    }

private:
    void show(std::string_view text, std::size_t begin, std::size_t size)
    {
        begin_ = begin;
        end_ = text.size() - begin > size ? begin + size : text.size();
        while (end_ < text.size() && continues(text[end_]))
            --end_;
        auto status = U_ZERO_ERROR;
        utext_openUTF8(&window_, text.data() + begin_, static_cast<std::int64_t>(end_ - begin_), &status);
        iterator_->setText(&window_, status);
        precondition(U_SUCCESS(status), "ICU has no memory for a window of text");
    }

    UText window_ = UTEXT_INITIALIZER;
    std::unique_ptr<icu::BreakIterator> iterator_ = makeIterator();
    // of the text, as shown to the iterator; empty at first
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

GraphemeClusters::GraphemeClusters(std::string_view utf8)
    : text_(utf8)
{
}

GraphemeClusters::GraphemeClusters(GraphemeClusters&&) noexcept = default;
GraphemeClusters::~GraphemeClusters() = default;

std::size_t GraphemeClusters::endOfCluster()
{
    // Two printable ASCII characters never join.
    if (isPrintableASCII(text_[at_]) && (at_ + 1 == text_.size() || isPrintableASCII(text_[at_ + 1])))
        return at_ + 1;
    if (!breaker_)
        breaker_ = std::make_unique<Breaker>();
    return breaker_->endAfter(text_, at_);
}

std::optional<std::string_view> GraphemeClusters::next()
{
    if (at_ == text_.size())
        return std::nullopt;
    auto begin = at_;
    at_ = endOfCluster();
    return text_.substr(begin, at_ - begin);
}

} // namespace platform

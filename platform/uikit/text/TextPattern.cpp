// SPDX-License-Identifier: MIT
#include "platform/uikit/text/TextSearch.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <QtCore/QChar>
#include <QtCore/QList>
#include <QtCore/QString>

namespace platform {

namespace {

// Sixteen bytes in one register; a comparison gives 0xFF where it holds.
using Block = unsigned char __attribute__((vector_size(16)));

Block load(const char* bytes)
{
    Block block;
    std::memcpy(&block, bytes, sizeof block);
    return block;
}

std::string encode(char32_t character)
{
    return QString::fromUcs4(&character, 1).toStdString();
}

std::vector<std::string> casesOf(char32_t character)
{
    std::vector<std::string> cases;
    for (auto each : {character, static_cast<char32_t>(QChar::toLower(character)),
                      static_cast<char32_t>(QChar::toUpper(character)),
                      static_cast<char32_t>(QChar::toTitleCase(character))}) {
        auto bytes = encode(each);
        if (std::ranges::find(cases, bytes) == cases.end())
            cases.push_back(std::move(bytes));
    }
    return cases;
}

} // namespace

TextPattern::TextPattern(std::string_view text)
{
    bool isUniform = true;
    for (auto character : QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toUcs4()) {
        auto cases = casesOf(character);
        auto [least, most] = std::ranges::minmax(cases, {}, &std::string::size);
        shortest_ += least.size();
        longest_ += most.size();
        isUniform = isUniform && least.size() == most.size();
        characters_.push_back({std::move(cases)});
    }
    if (!isUniform || characters_.empty())
        return;
    // The last bytes of the first and of the last character tell most: the others are the same for half an alphabet.
    first_ = probeFor(characters_.front(), characters_.front().variants.front().size());
    second_ = probeFor(characters_.back(), longest_);
    if (!first_ || !second_)
        first_ = second_ = std::nullopt;
}

// The last byte of the character that ends `end` bytes after a match's beginning.
std::optional<TextPattern::Probe> TextPattern::probeFor(const Character& character, std::size_t end)
{
    std::vector<unsigned char> values;
    for (auto& variant : character.variants) {
        auto value = static_cast<unsigned char>(variant.back());
        if (std::ranges::find(values, value) == values.end())
            values.push_back(value);
    }
    if (values.size() > 2)
        return std::nullopt;
    return Probe{end - 1, {values.front(), values.back()}};
}

// The size of the match that begins at `at`; 0 when none does.
std::size_t TextPattern::matchAt(std::string_view bytes, std::size_t at) const
{
    auto rest = bytes.substr(at);
    for (auto& character : characters_) {
        auto found = std::ranges::find_if(character.variants,
                                          [&](const std::string& each) { return rest.starts_with(each); });
        if (found == character.variants.end())
            return 0;
        rest.remove_prefix(found->size());
    }
    return bytes.size() - at - rest.size();
}

std::optional<TextPattern::Match> TextPattern::findSlowly(std::string_view bytes, std::size_t from) const
{
    for (auto at = from; at + shortest_ <= bytes.size(); ++at) {
        if (auto size = matchAt(bytes, at))
            return Match{at, size};
    }
    return std::nullopt;
}

std::optional<TextPattern::Match> TextPattern::find(std::string_view bytes, std::size_t from) const
{
    if (isEmpty())
        return std::nullopt;
    if (!first_)
        return findSlowly(bytes, from);
    auto *a = bytes.data() + first_->distance, *b = bytes.data() + second_->distance;
    auto [a0, a1] = first_->values;
    auto [b0, b1] = second_->values;
    while (from + longest_ + sizeof(Block) <= bytes.size()) {
        auto firsts = load(a + from), seconds = load(b + from);
        auto hits = ((firsts == a0) | (firsts == a1)) & ((seconds == b0) | (seconds == b1));
        std::array<std::uint64_t, 2> halves;
        std::memcpy(&halves, &hits, sizeof halves);
        if ((halves[0] | halves[1]) != 0) {
            for (std::size_t lane = 0; lane < sizeof(Block); ++lane) {
                if (!hits[lane])
                    continue;
                if (auto size = matchAt(bytes, from + lane))
                    return Match{from + lane, size};
            }
        }
        from += sizeof(Block);
    }
    return findSlowly(bytes, from);
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/foundation/ByteScan_p.h"

#include "platform/foundation/UTF8.h"

#include <gtest/gtest.h>

#include <random>

namespace platform {

using namespace std::string_view_literals;

namespace {

class ByteScanTests : public testing::TestWithParam<ByteScanKernels> { };

bool isWellFormedByByte(std::string_view bytes)
{
    return wellFormedPrefixByByte(bytes) == bytes.size();
}

} // namespace

TEST(ByteScanByByteTests, Well_formed_is_what_the_standard_says)
{
    for (auto bytes : {""sv, "\0a\x7F"sv, "\xC2\x80\xDF\xBF"sv, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"sv,
                       "\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"sv})
        EXPECT_EQ(wellFormedPrefixByByte(bytes), bytes.size()) << testing::PrintToString(bytes);
    const std::vector<std::string_view> faults[] = {
        {"\x80", "\xBFz"},                                            // a continuation byte alone
        {"\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF"}, // a longer form
        {"\xED\xA0\x80", "\xED\xBF\xBF"},                             // surrogates
        {"\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFE", "\xFF"},     // beyond Unicode
        {"\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xE2\x82\x41"},         // cut off
    };
    for (auto& group : faults) {
        for (auto fault : group)
            EXPECT_EQ(wellFormedPrefixByByte("é" + std::string(fault)), 2u) << testing::PrintToString(fault);
    }
}

TEST(ByteScanByByteTests, Each_maximal_faulty_part_is_replaced_once)
{
    for (auto [bytes, repaired] : {std::pair("plain é", "plain é"),
                                   {"a\xFF\xFEz", "a\uFFFD\uFFFDz"},
                                   {"\xE2\x82", "\uFFFD"},
                                   {"\xF0\x9F\x98z", "\uFFFDz"},
                                   {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
                                   {"\xC3\xC3\xA9", "\uFFFDé"}})
        EXPECT_EQ(repairedUTF8(bytes), repaired);
}

TEST_P(ByteScanTests, Sequences_are_judged_alike_at_every_place_of_a_vector)
{
    constexpr unsigned char leads[] = {0x41, 0x80, 0xBF, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1,
                                       0xED, 0xEF, 0xF0, 0xF1, 0xF4, 0xF5, 0xFF};
    constexpr unsigned char others[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC2, 0xF0};
    std::string text(300, 'a');
    for (auto lead : leads) {
        for (auto second : others) {
            for (auto third : others) {
                for (auto fourth : others) {
                    const unsigned char sequence[] = {lead, second, third, fourth};
                    // around vector borders, and between ASCII that takes the short way and text that does not
                    for (std::size_t at :
                         {0u, 13u, 14u, 15u, 16u, 30u, 31u, 61u, 126u, 127u, 158u, 256u, 296u}) {
                        auto copy = text;
                        copy.replace(at, 4, reinterpret_cast<const char*>(sequence), 4);
                        ASSERT_EQ(GetParam().isWellFormed(copy), isWellFormedByByte(copy))
                            << std::hex << +lead << ' ' << +second << ' ' << +third << ' ' << +fourth
                            << " at " << at;
                    }
                }
            }
        }
    }
}

TEST_P(ByteScanTests, Texts_cut_anywhere_or_with_one_wrong_bit_are_found_wrong)
{
    std::string text;
    while (text.size() < 600)
        text += "Ünïcödé 日本語 😀 plain ASCII for a while, so that the short way is taken too.......... ";
    ASSERT_TRUE(GetParam().isWellFormed(text));
    for (std::size_t bit = 0; bit < text.size() * 8; ++bit) {
        auto copy = text;
        copy[bit / 8] = static_cast<char>(copy[bit / 8] ^ 1 << bit % 8);
        ASSERT_EQ(GetParam().isWellFormed(copy), isWellFormedByByte(copy)) << bit;
        copy = text.substr(0, bit / 8);
        ASSERT_EQ(GetParam().isWellFormed(copy), isWellFormedByByte(copy)) << bit;
    }
}

TEST_P(ByteScanTests, Line_ends_and_characters_are_counted_alike_for_every_size)
{
    std::minstd_rand random(7);
    constexpr std::string_view alphabet = "\r\n\r\nab\xC3\xA9\xE2\x82\xAC";
    std::string text(20'000, ' ');
    for (char& c : text)
        c = alphabet[random() % alphabet.size()];
    for (auto next : {NextByte::lineFeed, NextByte::other}) {
        for (std::size_t size = 0; size < 300; ++size) {
            auto block = std::string_view(text).substr(size, size);
            ASSERT_EQ(GetParam().count(block, next), countBlockByByte(block, next)) << size;
        }
        // beyond what counters of one byte hold
        EXPECT_EQ(GetParam().count(text, next), countBlockByByte(text, next));
        std::string lineFeeds(20'000, '\n');
        EXPECT_EQ(GetParam().count(lineFeeds, next).lineEnds, lineFeeds.size());
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, ByteScanTests, testing::ValuesIn(byteScanKernels()),
                         [](auto& kernels) { return std::string(kernels.param.name); });

} // namespace platform

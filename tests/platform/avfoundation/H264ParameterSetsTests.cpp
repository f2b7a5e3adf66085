// SPDX-License-Identifier: MIT
#include "platform/avfoundation/H264ParameterSets_p.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace platform;

namespace {

using Bytes = std::vector<std::uint8_t>;

// A sequence set of number 0 (1 bit "1") and picture sets of numbers 0 and 5 ("1", "00110").
const Bytes sequence0{0x67, 66, 0xC0, 30, 0b1000'0000};
const Bytes picture0{0x68, 0b1000'0000};
const Bytes picture5{0x68, 0b0011'0000};

Bytes joined(std::initializer_list<Bytes> parts)
{
    Bytes all;
    for (auto& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

const Bytes record =
    joined({{1, 66, 0xC0, 30, 0xFF, 0xE1, 0, 5}, sequence0, {2, 0, 2}, picture0, {0, 2}, picture5});

TEST(H264ParameterSets, a_record_says_the_same_when_it_is_written_again)
{
    auto sets = H264ParameterSets::parse(record);
    ASSERT_TRUE(sets);
    EXPECT_EQ(sets->record(), record);
    EXPECT_EQ(sets->lengthSize, 4);
    for (int id = 0; id < 32; ++id)
        EXPECT_EQ(sets->usesID(id), id == 0 || id == 5) << id;
    // The same units behind start codes of three and four bytes.
    auto stream = joined({{0, 0, 0, 1}, sequence0, {0, 0, 1}, picture0, {0, 0, 0, 1}, picture5});
    EXPECT_EQ(H264ParameterSets::fromByteStream(stream), sets);
}

TEST(H264ParameterSets, a_record_that_is_cut_or_lies_is_none)
{
    for (std::size_t size = 0; size < record.size(); ++size)
        EXPECT_FALSE(H264ParameterSets::parse(std::span(record).first(size))) << size;
    auto other = [](std::size_t place, std::uint8_t value) {
        auto bytes = record;
        bytes[place] = value;
        return H264ParameterSets::parse(bytes);
    };
    EXPECT_FALSE(other(0, 0)) << "another version";
    EXPECT_FALSE(other(5, 0xE0)) << "no sequence sets";
    EXPECT_FALSE(other(7, 1)) << "a set of one byte";
    EXPECT_FALSE(other(6, 0xFF)) << "a length beyond the end";
    EXPECT_FALSE(H264ParameterSets::fromByteStream({}));
}

TEST(H264ParameterSets, merged_sets_are_those_of_both_once)
{
    auto own = *H264ParameterSets::parse(record);
    auto other = own;
    other.profile = 100;
    other.level = 20;
    other.picture.push_back("\x68\x11");
    auto both = own.merged(other);
    EXPECT_EQ(both.sequence, own.sequence);
    EXPECT_EQ(both.picture, other.picture);
    EXPECT_EQ(both.profile, 100);
    EXPECT_EQ(both.level, 30);
}

TEST(H264ParameterSets, a_sample_holds_slices_behind_their_lengths)
{
    const Bytes slice(300, 0x41), refresh{0x65, 1, 2};
    auto packet =
        joined({{0, 0, 1}, sequence0, {0, 0, 0, 1, 0x06, 5}, {0, 0, 1}, slice, {0, 0, 1}, refresh, {0}});
    EXPECT_EQ(sliceUnits(packet, 2), joined({{1, 44}, slice, {0, 3}, refresh}));
    EXPECT_EQ(sliceUnits(packet, 4).size(), 4 + 300 + 4 + 3U);
    EXPECT_TRUE(sliceUnits({}, 4).empty());

    EXPECT_TRUE(isInstantaneousRefresh(sliceUnits(packet, 2), 2));
    EXPECT_FALSE(isInstantaneousRefresh(joined({{1, 44}, slice}), 2));
    EXPECT_FALSE(isInstantaneousRefresh(Bytes{255, 255, 0x65}, 4)) << "less than a length";
    EXPECT_TRUE(isInstantaneousRefresh(Bytes{255, 255, 255, 255, 0x65}, 4)) << "a length beyond the end";
}

} // namespace

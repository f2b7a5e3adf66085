// SPDX-License-Identifier: MIT
#include "platform/foundation/PropertyListWriter.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>

namespace platform {

namespace {

using namespace std::chrono_literals;

std::string reason(const Result<std::string>& result)
{
    return result ? "no error" : result.error().bridged().localizedFailureReason();
}

PropertyListValue nested(std::size_t depth)
{
    PropertyListValue value{PropertyListArray()};
    for (std::size_t i = 1; i < depth; ++i)
        value = PropertyListValue(PropertyListArray{std::move(value)});
    return value;
}

} // namespace

TEST(PropertyListWriterTests, What_is_written_is_read_back_as_an_equal_value)
{
    PropertyListArray values;
    for (std::string_view text : {"", " \t padded \n", "a\rb\r\nc\n", "]]> <key> & &amp; \"'",
                                  "é ‫עברית‬ 👩‍👩‍👧", "\x7F\uFFFD\uE000", "\U0010FFFF"})
        values.emplace_back(std::string(text));
    using Integers = std::numeric_limits<std::int64_t>;
    for (std::int64_t integer : {std::int64_t(0), std::int64_t(-1), Integers::min(), Integers::max()})
        values.emplace_back(integer);
    using Reals = std::numeric_limits<double>;
    for (double real : {0.0, 1.0, 0.1, -1e300, Reals::min(), Reals::denorm_min(), Reals::max(),
                        Reals::infinity(), -Reals::infinity(), 1.0 / 3})
        values.emplace_back(real);
    for (bool truth : {true, false})
        values.emplace_back(truth);
    for (auto date : {PropertyListDate(), PropertyListDate(-1s), PropertyListDate(1709251199s),
                      PropertyListDate(-62167219200s), PropertyListDate(253402300799s)})
        values.emplace_back(date);
    // every byte, and every length around the ends of a group and of a line
    for (std::size_t size : {0, 1, 2, 3, 56, 57, 58, 256}) {
        PropertyListData data(size);
        for (std::size_t i = 0; i < size; ++i)
            data[i] = static_cast<std::byte>(255 - i);
        values.emplace_back(data);
    }
    values.emplace_back(nested(5));
    PropertyListDictionary root{
        {"", "the empty key"}, {"<&\r>", PropertyListDictionary()}, {"values", values}};
    auto xml = propertyListXML(root);
    ASSERT_TRUE(xml) << reason(xml);
    auto back = parsePropertyList(*xml);
    ASSERT_TRUE(back) << back.error().localizedDescription() << *xml;
    EXPECT_EQ(*back, PropertyListValue(root)) << *xml;
    // what equality does not see
    for (double real : {-0.0, Reals::quiet_NaN()}) {
        auto same = parsePropertyList(propertyListXML(PropertyListValue(real)).value());
        EXPECT_EQ(std::isnan(*same->as<double>()), std::isnan(real));
        EXPECT_EQ(std::signbit(*same->as<double>()), std::signbit(real));
    }
}

TEST(PropertyListWriterTests, What_the_form_cannot_hold_is_refused_with_its_place)
{
    const std::pair<PropertyListValue, std::string_view> cases[] = {
        {std::string("a\0b", 3), "the text holds the character U+0000"},
        {PropertyListDictionary{
             {"windows", PropertyListArray{true, PropertyListDictionary{{"title", "\x1B"}}}}},
         "the text at windows/1/title holds the character U+001B"},
        {PropertyListArray{"\uFFFE"}, "the text at 0 holds the character U+FFFE"},
        {PropertyListArray{"ok", "é\uFFFF"}, "the text at 1 holds the character U+FFFF"},
        {"\xED\xA0\x80", "the text is not UTF-8"},
        {PropertyListDictionary{{"\x01", "key"}}, "the text at \x01 holds the character U+0001"},
        {PropertyListValue(PropertyListDate(253402300800s)), "the date is outside of the years 0 to 9999"},
        {PropertyListValue(PropertyListDate(-62167219201s)), "the date is outside of the years 0 to 9999"},
        {PropertyListValue(PropertyListDate::max()), "the date is outside of the years 0 to 9999"},
        {PropertyListValue(PropertyListDate::min()), "the date is outside of the years 0 to 9999"},
    };
    for (auto& [value, expected] : cases) {
        auto xml = propertyListXML(value);
        EXPECT_EQ(reason(xml), expected);
        EXPECT_TRUE(!xml && xml.error() == Error(NSError(NSCocoaError::propertyListWriteInvalid)));
    }
}

TEST(PropertyListWriterTests, The_limits_are_exactly_the_parsers)
{
    PropertyListArray three{"1", "2", "3"};
    auto size = propertyListXML(three)->size();
    const std::tuple<PropertyListValue, PropertyListLimits, PropertyListLimits> cases[] = {
        {nested(9), {.depth = 9}, {.depth = 8}},
        {three, {.values = 4}, {.values = 3}},
        {three, {.bytes = size}, {.bytes = size - 1}},
        {PropertyListValue(PropertyListData(300)), {.bytes = 600}, {.bytes = 299}},
    };
    for (auto& [value, enough, tooFew] : cases) {
        auto xml = propertyListXML(value, enough);
        ASSERT_TRUE(xml) << reason(xml);
        EXPECT_TRUE(parsePropertyList(*xml, enough));
        EXPECT_FALSE(propertyListXML(value, tooFew));
        EXPECT_FALSE(parsePropertyList(*xml, tooFew));
    }
    EXPECT_FALSE(propertyListXML(nested(1000)));
}

} // namespace platform

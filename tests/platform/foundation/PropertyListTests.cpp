// SPDX-License-Identifier: MIT
#include "platform/foundation/PropertyList.h"

#include "platform/foundation/PropertyListWriter.h"
#include "platform/foundation/URL.h"
#include "tests/support/TemporaryDirectory.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>

namespace platform {

namespace {

using namespace std::chrono_literals;
using ::tests::TemporaryDirectory;

Result<PropertyListValue> parsed(std::string_view values)
{
    return parsePropertyList("<plist version=\"1.0\">" + std::string(values) + "</plist>");
}

template <class Value>
std::string reason(const Result<Value>& result)
{
    return result ? "no error" : result.error().bridged().localizedFailureReason();
}

PropertyListData bytes(std::string_view text)
{
    auto* begin = reinterpret_cast<const std::byte*>(text.data());
    return PropertyListData(begin, begin + text.size());
}

} // namespace

TEST(PropertyListTests, Scalars_have_their_types)
{
    using Storage = PropertyListValue::Storage;
    const std::pair<std::string_view, Storage> cases[] = {
        {"<string/>", std::string()},
        {"<string>  a &lt;b&gt; &#xE9; <![CDATA[<c>]]> </string>", std::string("  a <b> é <c> ")},
        {"<string>a<!-- not here -->b</string>", std::string("ab")},
        {"<integer>42</integer>", std::int64_t(42)},
        {"<integer> -0x10 </integer>", std::int64_t(-16)},
        {"<integer>+7</integer>", std::int64_t(7)},
        {"<integer>-9223372036854775808</integer>", std::numeric_limits<std::int64_t>::min()},
        {"<integer>9223372036854775807</integer>", std::numeric_limits<std::int64_t>::max()},
        {"<real>-1.5e3</real>", -1500.0},
        {"<true/>", true},
        {"<false></false>", false},
        {"<date>1970-01-02T00:00:01Z</date>", PropertyListDate(24h + 1s)},
        {"<date>2024-02-29T23:59:59Z</date>", PropertyListDate(1709251199s)},
        {"<data/>", PropertyListData()},
        {"<data>\n  YQ==\n</data>", bytes("a")},
        {"<data>YWI=</data>", bytes("ab")},
        {"<data>YWJj/+8=</data>", bytes("abc\xFF\xEF")},
    };
    for (auto& [xml, expected] : cases) {
        auto value = parsed(xml);
        ASSERT_TRUE(value) << xml << ": " << reason(value);
        EXPECT_EQ(*value, PropertyListValue(expected)) << xml;
    }
}

TEST(PropertyListTests, Containers_nest_and_the_last_of_equal_keys_counts)
{
    auto value = parsed("<dict><key>a</key><array><integer>1</integer><dict/></array>"
                        "<key>b</key><string>old</string><key>b</key><string>new</string></dict>");
    ASSERT_TRUE(value) << reason(value);
    PropertyListArray array{PropertyListValue(std::int64_t(1)), PropertyListValue(PropertyListDictionary())};
    EXPECT_EQ(*value->find("a"), PropertyListValue(array));
    EXPECT_EQ(*value->find("b"), PropertyListValue("new"));
    EXPECT_EQ(value->find("c"), nullptr);
    EXPECT_EQ(value->find("a")->find("x"), nullptr);
}

TEST(PropertyListTests, Faults_are_refused_with_their_line)
{
    struct Case {
        std::string_view xml, line, what;
    };
    const Case cases[] = {
        {"", "line 1", "no element found"},
        {"<plist>\n</plist>", "line 2", "there is no value"},
        {"<plist>\n\n<dict>", "line 3", "no element found"},
        {"<dict/>", "line 1", "outermost tag is not plist"},
        {"<plist><plist><true/></plist></plist>", "line 1", "the tag plist is unknown"},
        {"<plist><true/>\n<true/></plist>", "line 2", "more than one value"},
        {"<plist>\nstray</plist>", "line 2", "text outside"},
        {"<plist><dict>\n<string>x</string></dict></plist>", "line 2", "no key"},
        {"<plist><dict>\n<key>k</key>\n</dict></plist>", "line 3", "key k has no value"},
        {"<plist><dict><key>k</key><key>l</key></dict></plist>", "line 1", "key k has no value"},
        {"<plist><key>k</key></plist>", "line 1", "outside of a dictionary"},
        {"<plist><array><key>k</key></array></plist>", "line 1", "outside of a dictionary"},
        {"<plist><string>a<string>b</string></string></plist>", "line 1", "string is inside string"},
        {"<plist><set/></plist>", "line 1", "the tag set is unknown"},
        {"<plist><integer/></plist>", "line 1", "not of type integer"},
        {"<plist><integer>1x</integer></plist>", "line 1", "not of type integer"},
        {"<plist><integer>9223372036854775808</integer></plist>", "line 1", "not of type integer"},
        {"<plist><real>1,5</real></plist>", "line 1", "not of type real"},
        {"<plist><true>yes</true></plist>", "line 1", "not of type true"},
        {"<plist><date>2023-02-29T00:00:00Z</date></plist>", "line 1", "not of type date"},
        {"<plist><date>2023-02-28 00:00:00</date></plist>", "line 1", "not of type date"},
        {"<plist><data>YQ</data></plist>", "line 1", "not of type data"},
        {"<plist><data>Y===</data></plist>", "line 1", "not of type data"},
        {"<plist><data>YQ==YQ==</data></plist>", "line 1", "not of type data"},
        {"<plist><string>\xFF</string></plist>", "line 1", "not well-formed"},
        {"<plist><string>&nbsp;</string></plist>", "line 1", "undefined entity"},
        {"<plist><true/></plist>\n<plist/>", "line 2", "junk after document"},
    };
    for (auto& [xml, line, what] : cases) {
        auto value = parsePropertyList(xml);
        ASSERT_FALSE(value) << xml;
        EXPECT_EQ(value.error(), Error(NSError(NSCocoaError::propertyListReadCorrupt)));
        EXPECT_NE(reason(value).find(line), std::string::npos) << xml << ": " << reason(value);
        EXPECT_NE(reason(value).find(what), std::string::npos) << xml << ": " << reason(value);
    }
}

TEST(PropertyListTests, Entities_are_refused_before_they_can_grow_or_reach_out)
{
    for (std::string_view subset : {"<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\">",
                                    "<!ENTITY a SYSTEM \"file:///etc/passwd\">", "<!ENTITY % a \"x\">"}) {
        auto value = parsePropertyList("<!DOCTYPE plist [" + std::string(subset)
                                       + "]><plist><string>&b;</string></plist>");
        EXPECT_NE(reason(value).find("declares an entity"), std::string::npos) << reason(value);
    }
    auto elsewhere = parsePropertyList(
        "<!DOCTYPE plist SYSTEM \"http://127.0.0.1/x.dtd\"><plist><string>&b;</string></plist>");
    EXPECT_NE(reason(elsewhere).find("declared elsewhere"), std::string::npos) << reason(elsewhere);
}

TEST(PropertyListTests, Limits_on_bytes_depth_and_values_hold)
{
    auto nested = [](int depth) {
        std::string xml = "<plist>";
        for (int i = 0; i < 2 * depth; ++i)
            xml += i < depth ? "<array>" : "</array>";
        return xml + "</plist>";
    };
    EXPECT_TRUE(parsePropertyList(nested(64)));
    EXPECT_NE(reason(parsePropertyList(nested(65))).find("deeper than 64"), std::string::npos);
    EXPECT_FALSE(parsePropertyList(nested(50'000)));
    auto small = nested(3);
    EXPECT_TRUE(parsePropertyList(small, {.bytes = small.size(), .values = 3}));
    EXPECT_FALSE(parsePropertyList(small, {.bytes = small.size() - 1}));
    EXPECT_FALSE(parsePropertyList(small, {.values = 2}));
}

TEST(PropertyListTests, A_list_cut_at_any_byte_is_refused_and_not_misread)
{
    std::string whole =
        "<?xml version=\"1.0\"?><!DOCTYPE plist PUBLIC \"-//E//E 1.0//EN\" \"http://[::1]:9/x\">"
        "<plist version=\"1.0\"><dict><key>k</key><array><string>é&amp;</string>"
        "<data>YWJj</data><integer>1</integer></array></dict></plist>";
    ASSERT_TRUE(parsePropertyList(whole));
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(parsePropertyList(std::string_view(whole).substr(0, size))) << size;
}

TEST(PropertyListTests, A_file_must_hold_a_dictionary_and_its_errors_name_it)
{
    TemporaryDirectory directory;
    auto good =
        readPropertyList(directory.write("good.plist", "<plist><dict><key>k</key><true/></dict></plist>"));
    ASSERT_TRUE(good);
    EXPECT_EQ(good->size(), 1u);
    struct Case {
        std::string contents, clause;
    };
    const Case cases[] = {
        {"<plist><array/></plist>", "the root of its property list is not a dictionary"},
        {"<plist>\n<dict><set/></dict></plist>",
         "it is not a valid property list (line 2: a value has no key)"},
        {std::string(5000, ' '), "it is not a valid property list (it is larger than 4999 bytes)"},
    };
    for (auto& [contents, clause] : cases) {
        auto bad = readPropertyList(directory.write("bad.plist", contents), {.bytes = 4999});
        ASSERT_FALSE(bad) << clause;
        EXPECT_EQ(bad.error().localizedDescription(),
                  "The file “bad.plist” couldn’t be opened because " + clause + ".");
    }
    EXPECT_EQ(readPropertyList(directory.url("missing.plist")).error(),
              Error(NSError(NSCocoaError::fileReadNoSuchFile)));
}

namespace {

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

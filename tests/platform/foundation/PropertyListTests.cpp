// SPDX-License-Identifier: MIT
#include "platform/foundation/PropertyList.h"

#include "platform/foundation/URL.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace platform {

namespace {

using namespace std::chrono_literals;
using ::tests::TemporaryDirectory;

Result<PropertyListValue> parsed(std::string_view values)
{
    return parsePropertyList("<plist version=\"1.0\">" + std::string(values) + "</plist>");
}

std::string reason(const Result<PropertyListValue>& result)
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

} // namespace platform

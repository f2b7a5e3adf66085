// SPDX-License-Identifier: MIT
#include "kit/data/UserDefaultsBacked.h"

#include "platform/dispatch/RunLoop.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <unordered_map>

namespace zelk {

namespace {

using namespace platform;
using Object = PropertyListValue;

enum class Quality : std::uint8_t { low, high = 7 };
enum class Appearance { light, dark };
std::string_view rawValue(Appearance appearance)
{
    return appearance == Appearance::light ? "light" : "dark";
}
[[maybe_unused]] constexpr std::array<Appearance, 2> allCases(Appearance)
{
    return {Appearance::light, Appearance::dark};
}

// Settings in a folder of their own.
class Store {
public:
    Store()
    {
        ::setenv("XDG_CONFIG_HOME", directory_.path().c_str(), 1);
        defaults = std::make_shared<NSUserDefaults>("backed");
        ::unsetenv("XDG_CONFIG_HOME");
    }
    // Nothing may be left to write when the folder goes.
    ~Store() { EXPECT_TRUE(defaults->synchronize()); }
    Store(const Store&) = delete; // the folder is removed once
    Store& operator=(const Store&) = delete;

private:
    tests::TemporaryDirectory directory_;

public:
    std::shared_ptr<NSUserDefaults> defaults;
};

// Stores `value`, reads it with another wrapper, and says what the store holds.
template <class Value>
std::optional<Object> kept(const Value& value, const Value& otherDefault)
{
    Store store;
    UserDefaultsBacked<Value> setting(otherDefault, "k", store.defaults);
    EXPECT_EQ(store.defaults->objectForKey("k"), std::nullopt) << "construction stores nothing";
    EXPECT_EQ(setting.wrappedValue(), otherDefault);
    setting.setWrappedValue(value);
    EXPECT_EQ(UserDefaultsBacked<Value>(otherDefault, "k", store.defaults).wrappedValue(), value);
    return store.defaults->objectForKey("k");
}

// What a setting of this type with that default reads when the store holds `object`; the store must stay as it is.
template <class Value>
Value read(const Object& object, const Value& defaultValue)
{
    Store store;
    store.defaults->setObject(object, "k");
    auto value = UserDefaultsBacked<Value>(defaultValue, "k", store.defaults).wrappedValue();
    bool isNaN = object.as<double>() && std::isnan(*object.as<double>()); // equals nothing
    EXPECT_TRUE(isNaN || store.defaults->objectForKey("k") == object);
    return value;
}

} // namespace

TEST(UserDefaultsBackedTests, Every_type_is_kept_as_its_property_list_object)
{
    EXPECT_EQ(kept<std::string>("text", ""), Object("text"));
    EXPECT_EQ(kept<String>("text", ""), Object("text"));
    EXPECT_EQ(kept(true, false), Object(true));
    EXPECT_EQ(kept(-5, 1), Object(-5));
    EXPECT_EQ(kept(std::numeric_limits<std::int64_t>::min(), std::int64_t(0)),
              Object(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(kept<std::uint32_t>(4'000'000'000u, 0), Object(std::int64_t(4'000'000'000)));
    EXPECT_EQ(kept(0.1f, 0.f), Object(double(0.1f)));
    EXPECT_EQ(kept(1.0, 0.5), Object(1.0));
    EXPECT_EQ(kept(PropertyListDate(std::chrono::seconds(7)), {}),
              Object(PropertyListDate(std::chrono::seconds(7))));
    EXPECT_EQ(kept(PropertyListData(2), {}), Object(PropertyListData(2)));
    EXPECT_EQ(kept<Object>("any", false), Object("any"));
    EXPECT_EQ(kept(Quality::high, Quality::low), Object(7));
    EXPECT_EQ(kept(Appearance::dark, Appearance::light), Object("dark"));
    EXPECT_EQ(kept<std::vector<bool>>({true, false}, {}), Object(PropertyListArray{true, false}));
    EXPECT_EQ((kept<std::map<std::string, std::vector<Appearance>>>({{"a", {Appearance::dark}}}, {})),
              Object(PropertyListDictionary{{"a", PropertyListArray{"dark"}}}));
    EXPECT_EQ((kept<std::unordered_map<std::string, double>>({{"a", 1}}, {})),
              Object(PropertyListDictionary{{"a", 1.0}}));
    EXPECT_EQ(kept<std::optional<int>>(3, std::nullopt), Object(3));
}

TEST(UserDefaultsBackedTests, What_does_not_convert_reads_as_the_default_and_stays)
{
    EXPECT_EQ(read<std::string>(5, "default"), "default");
    EXPECT_EQ(read<int>("5", -1), -1);
    EXPECT_EQ(read<PropertyListData>("5", PropertyListData(1)), PropertyListData(1));
    EXPECT_EQ(read<std::optional<int>>("5", 9), 9);
    EXPECT_EQ(read<std::vector<int>>(PropertyListArray{1, "2"}, {-1}), std::vector<int>{-1});
    EXPECT_EQ((read<std::map<std::string, int>>(PropertyListArray{}, {{"a", 1}})).size(), 1u);
    EXPECT_EQ(read(Object("DARK"), Appearance::light), Appearance::light);
    EXPECT_EQ(read(Object(256), Quality::high), Quality::high);

    // numbers go by their value
    EXPECT_EQ(read<int>(2.0, -1), 2);
    EXPECT_EQ(read<int>(true, -1), 1);
    EXPECT_EQ(read<bool>(0.0, true), false);
    EXPECT_EQ(read<double>(3, -1), 3);
    EXPECT_EQ(read<int>(2.5, -1), -1);
    EXPECT_EQ(read<bool>(2, false), false);
    EXPECT_EQ(read<std::int64_t>(0x1p63, -1), -1);
    EXPECT_EQ(read<std::int64_t>(std::nan(""), -1), -1);
    EXPECT_EQ(read<std::uint8_t>(-1, 9), 9);
    EXPECT_EQ(read<int>(std::int64_t(1) << 31, -1), -1);
    EXPECT_EQ(read<double>((std::int64_t(1) << 53) + 1, -1), -1);
    EXPECT_EQ(read<double>(std::numeric_limits<std::int64_t>::max(), -1), -1);
    EXPECT_EQ(read<float>(0.1, -1), -1);
    EXPECT_TRUE(std::isnan(read<float>(std::nan(""), -1)));
    EXPECT_EQ(read<float>(1e300, -1), -1);
    EXPECT_EQ(read<float>(std::numeric_limits<double>::infinity(), -1),
              std::numeric_limits<float>::infinity());
}

TEST(UserDefaultsBackedTests, Nothing_removes_the_key_and_the_default_is_read_again)
{
    Store store;
    UserDefaultsBacked<std::optional<std::optional<int>>> setting(9, "k", store.defaults);
    for (bool isWrapped : {false, true}) {
        std::optional<std::optional<int>> nothing;
        if (isWrapped)
            nothing.emplace();
        setting.setWrappedValue(5);
        EXPECT_EQ(setting.wrappedValue(), 5);
        setting.setWrappedValue(nothing);
        EXPECT_EQ(store.defaults->objectForKey("k"), std::nullopt);
        EXPECT_EQ(setting.wrappedValue(), 9);
    }
    auto copy = setting;
    copy.setWrappedValue(6);
    EXPECT_EQ(setting.wrappedValue(), 6);
    EXPECT_DEATH(UserDefaultsBacked<int>(1, "k", nullptr), "a setting needs a store");
}

TEST(UserDefaultsBackedTests, Changes_are_told_on_the_main_loop_several_at_once)
{
    RunLoop::main();
    Store store;
    std::vector<NSUserDefaults::ChangedKeys> calls;
    NSUserDefaults::Observation observation;
    observation = store.defaults->observe([&](auto& keys) {
        assertOnMainThread();
        calls.push_back(keys);
        observation = {}; // ends itself
    });
    UserDefaultsBacked<int> a(0, "a", store.defaults), b(0, "b", store.defaults);
    a.setWrappedValue(1);
    b.setWrappedValue(1);
    b.setWrappedValue(2);
    store.defaults->setBool(true, "gone");
    store.defaults->removeObjectForKey("never there");
    EXPECT_TRUE(calls.empty());
    RunLoop::main().runPending();
    a.setWrappedValue(2);
    RunLoop::main().runPending();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0], (NSUserDefaults::ChangedKeys{"a", "b", "gone"}));
}

} // namespace zelk

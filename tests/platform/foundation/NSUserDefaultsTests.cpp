// SPDX-License-Identifier: MIT
#include "platform/foundation/NSUserDefaults.h"

#include "platform/foundation/DefaultsArguments_p.h"
#include "platform/foundation/DefaultsFile_p.h"
#include "platform/foundation/Logger.h"
#include "tests/support/FullDisk.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

using Storage = PropertyListValue::Storage;

// A configuration folder of its own for one test, and what was logged as an error meanwhile.
class Home {
public:
    Home() { ::setenv("XDG_CONFIG_HOME", directory.path().c_str(), 1); }
    ~Home() { ::unsetenv("XDG_CONFIG_HOME"); }

    std::string path(std::string_view name = DefaultsFile::fileName) const
    {
        return directory.path("app/" + std::string(name));
    }
    std::string bytes() const { return directory.read("app/defaults.plist"); }
    std::vector<std::string> takeErrors()
    {
        std::lock_guard lock(mutex);
        return std::exchange(errors, {});
    }
    // What another process does: it has neither our memory nor our locks.
    Result<DefaultsSnapshotRef> writeElsewhere(const DefaultsChanges& changes) const
    {
        return DefaultsFile(directory.url("app")).merge(changes, std::make_shared<DefaultsSnapshot>());
    }

    tests::TemporaryDirectory directory;

private:
    std::mutex mutex;
    std::vector<std::string> errors;
    LogCapture capture{[this](const LogRecord& record) {
        std::lock_guard lock(mutex);
        errors.emplace_back(record.message);
    }};
};

std::shared_ptr<NSUserDefaults> opened()
{
    return std::make_shared<NSUserDefaults>("app");
}

// Gathers the keys that an observer is told, and waits for one of them.
class Keys {
public:
    explicit Keys(NSUserDefaults& defaults)
        : observation(defaults.observe([this](auto& keys) {
            std::lock_guard lock(mutex);
            seen.insert(keys.begin(), keys.end());
            changed.notify_all();
        }))
    {
    }
    bool wait(const std::string& key)
    {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, std::chrono::seconds(20), [&] { return seen.contains(key); });
    }
    std::mutex mutex;
    std::condition_variable changed;
    NSUserDefaults::ChangedKeys seen;
    NSUserDefaults::Observation observation;
};

} // namespace

TEST(NSUserDefaultsTests, Values_of_other_types_convert_as_the_platform_converts_them)
{
    Home home;
    auto defaults = opened();
    using Integers = std::numeric_limits<std::int64_t>;
    constexpr auto infinity = std::numeric_limits<double>::infinity();
    struct Case {
        Storage stored;
        std::optional<std::string> text;
        std::int64_t integer;
        double real;
        bool truth;
    };
    const Case cases[] = {
        {std::int64_t(-7), "-7", -7, -7, true},
        {0.5, "0.5", 0, 0.5, true},
        {-1e300, "-1e+300", Integers::min(), -1e300, true},
        {1e19, "1e+19", Integers::max(), 1e19, true},
        {true, "1", 1, 1, true},
        {false, "0", 0, 0, false},
        {std::string("  +12 bottles"), "  +12 bottles", 12, 12, true},
        {std::string("-3.5e1x"), "-3.5e1x", -3, -35, true},
        {std::string("99999999999999999999"), "99999999999999999999", Integers::max(), 1e20, true},
        {std::string("-1e999"), "-1e999", -1, -infinity, true},
        {std::string("1e-999"), "1e-999", 1, 0, true},
        {std::string("+-1"), "+-1", 0, 0, false},
        {std::string("inf"), "inf", 0, 0, false},
        {std::string("YES"), "YES", 0, 0, true},
        {std::string("tomato"), "tomato", 0, 0, true},
        {std::string("000"), "000", 0, 0, false},
        {std::string("no"), "no", 0, 0, false},
        {std::string(), "", 0, 0, false},
        {PropertyListDate(), std::nullopt, 0, 0, false},
        {PropertyListData(3), std::nullopt, 0, 0, false},
        {PropertyListArray{"1"}, std::nullopt, 0, 0, false},
    };
    for (auto& [stored, text, integer, real, truth] : cases) {
        defaults->setObject(stored, "k");
        auto shown = text.value_or("index " + std::to_string(stored.index()));
        EXPECT_EQ(defaults->stringForKey("k"), text) << shown;
        EXPECT_EQ(defaults->integerForKey("k"), integer) << shown;
        EXPECT_EQ(defaults->doubleForKey("k"), real) << shown;
        EXPECT_EQ(defaults->boolForKey("k"), truth) << shown;
        EXPECT_EQ(defaults->objectForKey("k"), PropertyListValue(stored)) << shown;
        EXPECT_EQ(defaults->dataForKey("k").has_value(), std::holds_alternative<PropertyListData>(stored));
    }
    EXPECT_EQ(defaults->stringArrayForKey("k"), std::vector<std::string>{"1"});
    defaults->setObject(PropertyListArray{"1", 2}, "k");
    EXPECT_EQ(defaults->stringArrayForKey("k"), std::nullopt);
    for (auto& url : {URL::fileURL("/a b/\xFF"), *URL::parse("https://example.org/?q=1")}) {
        defaults->setURL(url, "k");
        EXPECT_EQ(defaults->URLForKey("k"), url);
    }
    defaults->setObject("~/x", "k");
    EXPECT_EQ(defaults->URLForKey("k"), URL::fileURL(std::string(std::getenv("HOME")) + "/x"));
    EXPECT_TRUE(defaults->synchronize()); // nothing is left to write when the folder goes
}

TEST(NSUserDefaultsTests, Arguments_come_before_settings_and_registered_defaults_after)
{
    const std::pair<std::vector<std::string>, PropertyListDictionary> cases[] = {
        {{}, {}},
        {{"-a"}, {}},
        {{"-a", "text", "file", "-b", "<integer>5</integer>"}, {{"a", "text"}, {"b", 5}}},
        {{"-flag", "-a", "-3", "-b", "-.5", "-c", "-"}, {{"a", "-3"}, {"b", "-.5"}}},
        {{"--long", "x", "-a", "", "--", "-b", "x"}, {{"a", ""}}},
        {{"-a", "1", "-a", "2"}, {{"a", "2"}}},
        {{"-a", "<array><true/>", "-b", "<b>", "-c", "\xFF"},
         {{"a", "<array><true/>"}, {"b", "<b>"}, {"c", "\uFFFD"}}},
        {{"-a", " <plist version=\"1.0\"><array><true/></array></plist>"}, {{"a", PropertyListArray{true}}}},
    };
    for (auto& [arguments, expected] : cases)
        EXPECT_EQ(defaultsFromArguments(arguments), expected) << testing::PrintToString(arguments);

    Home home;
    auto defaults = opened();
    defaults->registerDefaults({{"order.a", "registered"}, {"order.b", "registered"}});
    defaults->setObject("stored", "order.a");
    EXPECT_EQ(defaults->stringForKey("order.a"), "stored");
    EXPECT_EQ(defaults->dictionaryRepresentation().at("order.a"), PropertyListValue("stored"));
    EXPECT_EQ(defaults->dictionaryRepresentation().at("order.b"), PropertyListValue("registered"));
    defaults->setValue(std::nullopt, "order.a");
    EXPECT_EQ(defaults->stringForKey("order.a"), "registered");
    ASSERT_TRUE(defaults->synchronize());
    EXPECT_EQ(home.bytes().find("registered"), std::string::npos);
    EXPECT_DEATH(NSUserDefaults("../app"), "must be that of a folder");
}

TEST(NSUserDefaultsTests, Processes_see_each_others_changes_and_keep_what_they_do_not_know)
{
    Home home;
    auto defaults = opened();
    Keys keys(*defaults);
    // the folder does not exist yet
    ASSERT_TRUE(home.writeElsewhere({{"theirs", "1"}, {"odd", PropertyListArray{PropertyListDate()}}}));
    ASSERT_TRUE(keys.wait("theirs"));
    EXPECT_EQ(defaults->stringForKey("theirs"), "1");
    defaults->setObject("mine", "ours");
    ASSERT_TRUE(home.writeElsewhere({{"theirs", std::nullopt}, {"ours", "2"}, {"late", "3"}}));
    // nothing was read in between, and still only the key that was set here is written
    ASSERT_TRUE(defaults->synchronize());
    auto held = home.writeElsewhere({}).value()->values;
    EXPECT_EQ(held.size(), 3u);
    EXPECT_EQ(held.count("odd") + held.count("late"), 2u);
    EXPECT_FALSE(defaults->objectForKey("theirs"));
    // the folder goes and comes back
    ASSERT_TRUE(keys.wait("late"));
    {
        std::lock_guard lock(keys.mutex);
        keys.seen.clear();
    }
    std::filesystem::remove_all(home.directory.path("app"));
    ASSERT_TRUE(keys.wait("late"));
    EXPECT_EQ(defaults->dictionaryRepresentation().count("late"), 0u);
    ASSERT_TRUE(home.writeElsewhere({{"again", "4"}}));
    EXPECT_TRUE(keys.wait("again"));
    EXPECT_EQ(home.takeErrors().size(), 0u);
}

TEST(NSUserDefaultsTests, A_damaged_file_is_set_aside_once_and_settings_go_on)
{
    const std::string cases[] = {"", "<plist><dict>", "<plist version=\"1.0\"><array/></plist>",
                                 std::string(defaultsLimits.bytes + 1, ' ')};
    for (auto& damaged : cases) {
        Home home;
        home.directory.write("app/defaults.damaged-1.plist", "from earlier");
        home.directory.write("app/.zelk-draft", "of a process that was killed");
        home.directory.write("app/defaults.plist", damaged);
        auto defaults = opened();
        auto errors = home.takeErrors();
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_EQ(errors[0],
                  "the settings of app are damaged; they are set aside as defaults.damaged-2.plist");
        EXPECT_FALSE(defaults->objectForKey("k"));
        defaults->setObject("v", "k");
        EXPECT_TRUE(defaults->synchronize());
        EXPECT_NE(home.bytes().find("<key>k</key>"), std::string::npos);
        EXPECT_EQ(home.directory.read("app/defaults.damaged-2.plist"), damaged);
        EXPECT_EQ(home.directory.read("app/defaults.damaged-1.plist"), "from earlier");
        EXPECT_FALSE(std::filesystem::exists(home.path(".zelk-draft")));
        EXPECT_EQ(home.takeErrors().size(), 0u);
    }
}

TEST(NSUserDefaultsTests, What_cannot_be_used_is_left_alone_and_writing_reports_it)
{
    using Prepare = void (*)(Home&);
    const std::pair<std::string_view, Prepare> cases[] = {
        {"a link",
         [](Home& home) { ::symlink(home.directory.file("other", "x").c_str(), home.path().c_str()); }},
        {"a pipe", [](Home& home) { ::mkfifo(home.path().c_str(), 0600); }},
        {"a folder", [](Home& home) { ::mkdir(home.path().c_str(), 0700); }},
        {"a lock that is a link",
         [](Home& home) { ::symlink("/dev/null", home.path("defaults.lock").c_str()); }},
        {"a folder under a file",
         [](Home& home) { ::setenv("XDG_CONFIG_HOME", home.directory.file("file", "").c_str(), 1); }},
        {"a file system that takes no files", [](Home&) { ::setenv("XDG_CONFIG_HOME", "/proc", 1); }},
        {"no home", [](Home&) { ::setenv("XDG_CONFIG_HOME", "relative", 1), ::unsetenv("HOME"); }},
    };
    std::string realHome = std::getenv("HOME");
    for (auto& [name, prepare] : cases) {
        Home home;
        ::mkdir(home.directory.path("app").c_str(), 0700);
        prepare(home);
        struct stat before, after;
        bool existed = ::lstat(home.path().c_str(), &before) == 0;
        auto defaults = opened();
        EXPECT_FALSE(defaults->objectForKey("k")) << name;
        defaults->setObject("v", "k");
        EXPECT_FALSE(defaults->synchronize()) << name;
        EXPECT_FALSE(defaults->synchronize()) << name;
        EXPECT_EQ(defaults->stringForKey("k"), "v") << name;
        auto errors = home.takeErrors();
        EXPECT_EQ(errors.size(), 1u) << name << testing::PrintToString(errors);
        for (auto& error : errors)
            EXPECT_EQ(error.find('/'), std::string::npos) << error;
        if (existed) {
            ASSERT_EQ(::lstat(home.path().c_str(), &after), 0) << name;
            EXPECT_EQ(before.st_ino, after.st_ino) << name;
        }
        ::setenv("HOME", realHome.c_str(), 1);
    }
}

TEST(NSUserDefaultsTests, A_full_disk_keeps_the_last_good_file_and_the_value_in_memory)
{
    Home home;
    auto defaults = opened();
    defaults->setObject("small", "k");
    ASSERT_TRUE(defaults->synchronize());
    auto good = home.bytes();
    defaults->setObject(std::string(100'000, 'x'), "k");
    {
        tests::FullDisk disk(4096);
        auto full = defaults->synchronize();
        ASSERT_FALSE(full);
        EXPECT_EQ(full.error(), Error(NSError(NSCocoaError::fileWriteOutOfSpace)));
        EXPECT_EQ(home.bytes(), good);
    }
    EXPECT_EQ(defaults->stringForKey("k")->size(), 100'000u);
    EXPECT_TRUE(defaults->synchronize());
    EXPECT_GT(home.bytes().size(), 100'000u);
    EXPECT_EQ(home.takeErrors().size(), 1u);
}

TEST(NSUserDefaultsTests, A_value_that_cannot_be_saved_stays_here_and_keeps_no_other_back)
{
    Home home;
    auto defaults = opened();
    defaults->setObject("\x01", "bad");
    defaults->setObject("v", "good");
    auto saved = defaults->synchronize();
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error().bridged().localizedFailureReason(), "the text at bad holds the character U+0001");
    EXPECT_EQ(defaults->stringForKey("bad"), "\x01");
    EXPECT_NE(home.bytes().find("good"), std::string::npos);
    defaults->removeObjectForKey("bad");
    EXPECT_TRUE(defaults->synchronize());
}

TEST(NSUserDefaultsTests, A_burst_of_changes_is_few_writes)
{
    Home home;
    auto defaults = opened();
    ASSERT_TRUE(home.writeElsewhere({{"k", "v"}}));
    int events = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(::inotify_add_watch(events, home.directory.path("app").c_str(), IN_CREATE), 0);
    auto begin = std::chrono::steady_clock::now();
    int last = 0;
    while (std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(250))
        defaults->setInteger(++last, "k");
    ASSERT_TRUE(defaults->synchronize());
    auto rests = (std::chrono::steady_clock::now() - begin) / std::chrono::milliseconds(100);
    char buffer[65536];
    auto size = ::read(events, buffer, sizeof buffer);
    ::close(events);
    constexpr auto eventSize = static_cast<long>(sizeof(inotify_event) + 48); // the draft's name, padded
    EXPECT_LE(size / eventSize, rests + 3);
    EXPECT_GT(size, 0);
    EXPECT_EQ(home.writeElsewhere({}).value()->values.at("k"), PropertyListValue(last));
}

TEST(NSUserDefaultsTests, Threads_may_do_everything_at_once)
{
    Home home;
    auto defaults = opened();
    std::atomic<int> calls = 0;
    auto work = [&](int self) {
        auto own = opened(); // the same store
        for (int i = 1; i <= 200; ++i) {
            auto observation = own->observe([&](auto&) { ++calls; });
            own->setInteger(i, "thread" + std::to_string(self));
            EXPECT_LE(own->integerForKey("thread" + std::to_string(1 - self)), 200);
            if (i % 50 == 0) {
                EXPECT_TRUE(own->synchronize());
                EXPECT_GE(own->dictionaryRepresentation().size(), 1u);
            }
        }
    };
    std::thread other(work, 1);
    work(0);
    other.join();
    ASSERT_TRUE(defaults->synchronize());
    auto held = home.writeElsewhere({}).value()->values;
    EXPECT_EQ(held.at("thread0"), PropertyListValue(200));
    EXPECT_EQ(held.at("thread1"), PropertyListValue(200));
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/foundation/FileManager.h"

#include "platform/foundation/FileWriting.h"
#include "tests/support/FullDisk.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

using Variables = std::map<std::string, std::string>;

FileManager managerWith(Variables variables)
{
    return FileManager(
        [variables = std::move(variables)](const std::string& name) -> std::optional<std::string> {
            auto found = variables.find(name);
            return found == variables.end() ? std::nullopt : std::optional(found->second);
        });
}

unsigned permissionsOf(const std::string& path)
{
    struct stat status{};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

std::optional<NSCocoaError> codeOf(const Result<void>& result)
{
    if (result)
        return std::nullopt;
    EXPECT_EQ(result.error().bridged().domain(), NSCocoaErrorDomain);
    return static_cast<NSCocoaError>(result.error().bridged().code());
}

} // namespace

TEST(FileWritingTests, A_file_is_replaced_whole_with_its_permissions_and_through_links)
{
    tests::TemporaryDirectory directory;
    ASSERT_TRUE(writeFileAtomically(directory.url("new"), "first", {.permissions = 0600}));
    EXPECT_EQ(permissionsOf(directory.path("new")), 0600u);
    ::chmod(directory.path("new").c_str(), 0640);
    ::symlink("new", directory.path("link").c_str());
    ASSERT_TRUE(writeFileAtomically(directory.url("link"), std::string("se\0cond", 7)));
    EXPECT_EQ(directory.read("new"), std::string("se\0cond", 7));
    EXPECT_EQ(permissionsOf(directory.path("new")), 0640u);
    EXPECT_EQ(std::filesystem::read_symlink(directory.path("link")), "new");
    ASSERT_TRUE(writeFileAtomically(directory.url("new"), ""));
    EXPECT_EQ(directory.read("new"), "");
    EXPECT_EQ(directory.fileCount(), 2); // nothing is left beside it
}

TEST(FileWritingTests, A_new_file_is_never_seen_in_part)
{
    tests::TemporaryDirectory directory;
    int nameless = ::open(directory.path().c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0600);
    if (nameless < 0)
        GTEST_SKIP() << "this file system makes files in sight only";
    ::close(nameless);
    int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(::inotify_add_watch(watch, directory.path().c_str(), IN_CREATE | IN_MODIFY), 0);
    ASSERT_TRUE(writeNewFile(directory.url("new"), std::string(100'000, 'x')));
    alignas(inotify_event) char events[4096];
    auto length = ::read(watch, events, sizeof events);
    ::close(watch);
    std::vector<std::uint32_t> seen; // of what has the name
    for (ssize_t at = 0; at < length;) {
        auto& event = reinterpret_cast<inotify_event&>(events[at]);
        if (event.len > 0 && std::string_view(event.name) == "new")
            seen.push_back(event.mask);
        at += static_cast<ssize_t>(sizeof event + event.len);
    }
    EXPECT_EQ(seen, std::vector<std::uint32_t>{IN_CREATE});
    EXPECT_EQ(directory.read("new"), std::string(100'000, 'x'));
}

TEST(FileWritingTests, What_cannot_be_written_leaves_the_old_contents_and_says_why)
{
    tests::TemporaryDirectory directory;
    directory.write("folder/file", "old");
    struct Case {
        URL url;
        NSCocoaError code;
    };
    const Case cases[] = {
        {directory.url("missing/file"), NSCocoaError::fileNoSuchFile},
        {directory.url("folder/file/below"), NSCocoaError::fileNoSuchFile},
        {directory.url("folder"), NSCocoaError::fileWriteUnknown},
        {directory.url("folder/"), NSCocoaError::fileWriteUnknown},
        {URL::fileURL("/dev/null"), NSCocoaError::fileWriteUnknown},
        {directory.url(std::string(300, 'x')), NSCocoaError::fileWriteInvalidFileName},
        {directory.url(std::string("a\0b", 3)), NSCocoaError::fileWriteInvalidFileName},
        {URL::fileURL("/proc/self/new"), NSCocoaError::fileNoSuchFile},
        {*URL::parse("https://host/file"), NSCocoaError::fileWriteUnsupportedScheme},
    };
    for (auto& [url, code] : cases)
        EXPECT_EQ(codeOf(writeFileAtomically(url, "new")), code) << url.absoluteString();
    EXPECT_EQ(codeOf(writeNewFile(directory.url("missing/file"), "new")), NSCocoaError::fileNoSuchFile);
    ::symlink("nowhere", directory.path("link").c_str());
    for (auto name : {"folder/file", "folder/", "link"})
        EXPECT_EQ(codeOf(writeNewFile(directory.url(name), "new")), NSCocoaError::fileWriteFileExists);
    {
        tests::FullDisk disk(2);
        EXPECT_EQ(codeOf(writeNewFile(directory.url("full"), "new")), NSCocoaError::fileWriteOutOfSpace);
    }
    EXPECT_FALSE(std::filesystem::exists(directory.path("full")));
    EXPECT_EQ(directory.read("folder/file"), "old");
    auto error = writeFileAtomically(directory.url("missing/a\nb"), "new").error();
    EXPECT_EQ(error.localizedDescription(),
              "“a?b” couldn’t be saved because there is no such file or folder.");
}

TEST(FileManagerTests, An_enumeration_visits_parents_first_follows_no_links_and_bears_removals)
{
    tests::TemporaryDirectory directory;
    for (auto name : {"b/2", "b/1/deep", "a", "c/x"})
        directory.write(name, "");
    ::symlink("b", directory.path("link").c_str());
    ::symlink(".", directory.path("b/loop").c_str());
    auto& manager = FileManager::defaultManager();
    auto visit = [&](std::string_view removed) {
        std::vector<std::string> seen;
        auto entries = manager.enumerator(directory.path() + "/");
        while (auto entry = entries->next()) {
            seen.push_back(*entry);
            if (*entry == removed) {
                EXPECT_TRUE(manager.removeItem(directory.url(*entry)));
            }
        }
        return seen;
    };
    EXPECT_EQ(visit(""),
              (std::vector<std::string>{"a", "b", "b/1", "b/1/deep", "b/2", "b/loop", "c", "c/x", "link"}));
    EXPECT_EQ(visit("b"), (std::vector<std::string>{"a", "b", "c", "c/x", "link"}));
    EXPECT_EQ(manager.enumerator(directory.path("a")), nullptr);
    EXPECT_EQ(manager.enumerator(directory.path("missing")), nullptr);
}

TEST(FileManagerTests, Items_are_made_copied_moved_and_removed_whole_and_never_replaced)
{
    using enum NSCocoaError;
    tests::TemporaryDirectory directory;
    auto& manager = FileManager::defaultManager();
    auto at = [&](std::string_view name) { return directory.url(name); };
    directory.write("tree/file", "text");
    ::chmod(directory.path("tree/file").c_str(), 0750);
    ::symlink("file", directory.path("tree/link").c_str());

    EXPECT_EQ(codeOf(manager.createDirectory(at("x/y"), IntermediateDirectories::required)), fileNoSuchFile);
    EXPECT_TRUE(manager.createDirectory(at("x/y/"), IntermediateDirectories::created));
    EXPECT_TRUE(manager.createDirectory(at("x/y"), IntermediateDirectories::created));
    EXPECT_EQ(codeOf(manager.createDirectory(at("x/y"), IntermediateDirectories::required)),
              fileWriteFileExists);

    EXPECT_TRUE(manager.copyItem(at("tree"), at("x/copy")));
    EXPECT_EQ(directory.read("x/copy/file"), "text");
    EXPECT_EQ(permissionsOf(directory.path("x/copy/file")), 0750u);
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("x/copy/link")));
    EXPECT_EQ(codeOf(manager.copyItem(at("tree"), at("x/copy"))), fileWriteFileExists);
    EXPECT_EQ(codeOf(manager.copyItem(at("missing"), at("z"))), fileNoSuchFile);
    EXPECT_EQ(codeOf(manager.copyItem(at("x"), at("x/copy/itself"))), fileWriteInvalidFileName);
    EXPECT_FALSE(manager.fileExists(directory.path("x/copy/itself")));

    EXPECT_EQ(codeOf(manager.moveItem(at("tree/file"), at("x/copy/file"))), fileWriteFileExists);
    EXPECT_TRUE(manager.moveItem(at("tree"), at("moved/")));
    EXPECT_FALSE(manager.fileExists(directory.path("tree")));
    EXPECT_EQ(codeOf(manager.moveItem(at("tree"), at("elsewhere"))), fileNoSuchFile);

    ::symlink("moved", directory.path("alias").c_str());
    EXPECT_TRUE(manager.removeItem(at("alias")));
    EXPECT_TRUE(manager.fileExists(directory.path("moved/file")));
    EXPECT_TRUE(manager.removeItem(at("moved")));
    EXPECT_EQ(codeOf(manager.removeItem(at("moved"))), fileNoSuchFile);
}

TEST(FileManagerTests, A_file_that_is_replaced_from_another_volume_stays_until_the_new_one_is_there)
{
    tests::TemporaryDirectory directory;
    auto& manager = FileManager::defaultManager();
    struct stat here{};
    struct stat memory{};
    // A second volume that is nearly always there.
    bool areTwo = ::stat(directory.path().c_str(), &here) == 0 && ::stat("/dev/shm", &memory) == 0
        && here.st_dev != memory.st_dev && ::access("/dev/shm", W_OK) == 0;
    std::vector<std::string> places{directory.path("near")};
    if (areTwo)
        places.push_back("/dev/shm/zelk-tests-" + std::to_string(::getpid()));
    for (auto& place : places) {
        SCOPED_TRACE(place);
        directory.write("old", "old");
        ::chmod(directory.path("old").c_str(), 0640);
        std::ofstream(place) << "new, and longer";
        if (&place != &places.front()) {
            tests::FullDisk disk(8);
            EXPECT_EQ(codeOf(manager.replaceItem(directory.url("old"), URL::fileURL(place))),
                      NSCocoaError::fileWriteOutOfSpace);
            EXPECT_EQ(directory.read("old"), "old");
            EXPECT_TRUE(std::filesystem::exists(place));
        }
        EXPECT_TRUE(manager.replaceItem(directory.url("old"), URL::fileURL(place)));
        EXPECT_EQ(directory.read("old"), "new, and longer");
        EXPECT_EQ(permissionsOf(directory.path("old")), 0640u);
        EXPECT_FALSE(std::filesystem::exists(place));
        EXPECT_EQ(directory.fileCount(), 1);
        EXPECT_EQ(codeOf(manager.replaceItem(directory.url("old"), URL::fileURL(place))),
                  NSCocoaError::fileNoSuchFile);
        std::filesystem::remove(place); // where something has failed
    }
    if (!areTwo)
        GTEST_SKIP() << "there is no second volume";
}

TEST(FileManagerTests, The_users_directories_come_from_the_desktops_list_or_stand_in_the_home)
{
    tests::TemporaryDirectory home;
    auto listed = home.path("config/user-dirs.dirs");
    struct Case {
        const char *name, *list, *expected;
    };
    const Case cases[] = {
        {"no entry", "XDG_MUSIC_DIR=\"$HOME/Klang\"\n", "HOME/Documents"},
        {"below the home", "# c\n XDG_DOCUMENTS_DIR = \"$HOME/Dokumente\"\r\n", "HOME/Dokumente"},
        {"absolute, the last counts", "XDG_DOCUMENTS_DIR=\"/a\"\nXDG_DOCUMENTS_DIR=\"/mnt/b c\"", "/mnt/b c"},
        {"escapes", "XDG_DOCUMENTS_DIR=\"$HOME/\\\"D\\\\\"", "HOME/\"D\\"},
        {"the home itself", "XDG_DOCUMENTS_DIR=\"$HOME\"", "HOME"},
        {"relative, unquoted, cut off, or another's home",
         "XDG_DOCUMENTS_DIR=\"docs\"\nXDG_DOCUMENTS_DIR=/x\nXDG_DOCUMENTS_DIR=\"/"
         "y\nXDG_DOCUMENTS_DIR=\"$HOMER/z\"\n"
         "XDG_DOCUMENTS_DIR=\"/w\\",
         "HOME/Documents"},
    };
    auto manager = managerWith({{"HOME", home.path()}, {"XDG_CONFIG_HOME", home.path("config")}});
    auto first = [](const FileManager& from, SearchPathDirectory directory) {
        return from.urls(directory, SearchPathDomain::user).at(0).path();
    };
    EXPECT_EQ(first(manager, SearchPathDirectory::download), home.path("Downloads"));
    for (auto [name, list, expected] : cases) {
        home.write("config/user-dirs.dirs", list);
        std::string path = expected;
        if (path.starts_with("HOME"))
            path.replace(0, 4, home.path());
        EXPECT_EQ(first(manager, SearchPathDirectory::document), path) << name;
    }
    EXPECT_EQ(first(manager, SearchPathDirectory::caches), home.path(".cache"));
    auto based =
        managerWith({{"HOME", home.path()}, {"XDG_CACHE_HOME", "/fast"}, {"XDG_DATA_HOME", "relative"}});
    EXPECT_EQ(first(based, SearchPathDirectory::caches), "/fast");
    EXPECT_EQ(first(based, SearchPathDirectory::applicationSupport), home.path(".local/share"));
    EXPECT_TRUE(managerWith({}).homeDirectoryForCurrentUser()); // of the user database
}

TEST(FileManagerTests, The_temporary_directory_is_the_programs_own_and_nobody_elses)
{
    tests::TemporaryDirectory shared;
    auto manager = managerWith({{"TMPDIR", shared.path()}});
    auto own = manager.temporaryDirectory();
    EXPECT_EQ(own.deletingLastPathComponent().path(), shared.path());
    EXPECT_EQ(permissionsOf(own.path()), 0700u);
    EXPECT_EQ(managerWith({{"TMPDIR", shared.path() + "/"}}).temporaryDirectory(), own);
    ASSERT_TRUE(manager.removeItem(own));
    EXPECT_EQ(manager.temporaryDirectory(), own);
    EXPECT_TRUE(manager.fileExists(own.path()));
    // A link that a stranger put there is not followed, and a directory that others may write is not used.
    ASSERT_TRUE(manager.removeItem(own));
    std::filesystem::create_directory(shared.path("trap"));
    ::symlink("trap", own.path().c_str());
    auto other = manager.temporaryDirectory();
    EXPECT_NE(other, own);
    EXPECT_EQ(permissionsOf(other.path()), 0700u);
    EXPECT_EQ(manager.temporaryDirectory(), other);
}

TEST(FileManagerTests, A_file_system_tells_its_sizes)
{
    auto& manager = FileManager::defaultManager();
    auto attributes = manager.attributesOfFileSystem("/");
    ASSERT_TRUE(attributes);
    auto number = [&](std::string_view key) { return *attributes->find(key)->second.as<std::int64_t>(); };
    EXPECT_GT(number(NSFileSystemSize), 0);
    EXPECT_LE(number(NSFileSystemFreeSize), number(NSFileSystemSize));
    auto missing = manager.attributesOfFileSystem("/missing/name");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().bridged(), NSError(NSCocoaError::fileReadNoSuchFile));
}

} // namespace platform

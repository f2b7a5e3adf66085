// SPDX-License-Identifier: MIT
#include "kit/data/cleanTemporaryDirectory.h"
#include "kit/data/computeFreeDiskSpace.h"
#include "kit/data/documentsDirURL.h"
#include "kit/data/extendedAttributes.h"
#include "kit/data/temporaryFilepath.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/UUID.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <sys/xattr.h>
#include <unistd.h>

namespace zelk {

namespace {

struct Stage {
    tests::TemporaryDirectory directory;
    platform::FileManager manager{[this](const std::string& name) {
        return name == "TMPDIR" || name == "HOME" ? std::optional(directory.path()) : std::nullopt;
    }};
};

long posixCode(const platform::Result<void>& result)
{
    if (result)
        return 0;
    auto& error = result.error().bridged();
    EXPECT_EQ(error.domain(), platform::NSPOSIXErrorDomain);
    EXPECT_TRUE(error.userInfo().empty());
    return error.code();
}

} // namespace

TEST(FileHelpersTests, Temporary_paths_take_the_name_or_a_fresh_UUID)
{
    Stage stage;
    auto temporary = stage.manager.temporaryDirectory();
    EXPECT_EQ(temporaryFilepathForUniqueFilename(stage.manager, "clip", "mp4"),
              temporary.appendingPathComponent("clip.mp4"));
    EXPECT_EQ(temporaryFilepathForUniqueFilename(stage.manager, "clip.b"),
              temporary.appendingPathComponent("clip.b"));
    auto unique = uniqueTemporaryFilepath(stage.manager);
    auto uuid = platform::UUID::parse(unique.lastPathComponent());
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->string(), unique.lastPathComponent());
    EXPECT_NE(uniqueTemporaryFilepath(stage.manager), unique);
    EXPECT_EQ(uniqueTemporaryFilepath(stage.manager, "wav").pathExtension(), "wav");
}

TEST(FileHelpersTests, Cleaning_empties_the_temporary_directory_and_nothing_else)
{
    Stage stage;
    auto kept = stage.directory.write("kept/file", "");
    auto temporary = stage.manager.temporaryDirectory();
    auto name = temporary.lastPathComponent();
    for (auto& queue :
         {std::shared_ptr<platform::DispatchQueue>(), platform::DispatchQueue::make("org.zelk.test")}) {
        for (auto entry : {"/a", "/folder/deep/b", "/.hidden"})
            stage.directory.write(name + entry, "");
        std::filesystem::create_directory_symlink(stage.directory.path("kept"),
                                                  stage.directory.path(name + "/link"));
        cleanTemporaryDirectory(stage.manager, queue);
        if (queue)
            queue->sync([] { });
        EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
        cleanTemporaryDirectory(stage.manager); // empty already
        EXPECT_TRUE(stage.manager.fileExists(kept.path()));
    }
}

TEST(FileHelpersTests, Extended_attributes_are_texts_and_failures_carry_the_systems_number)
{
    Stage stage;
    auto file = stage.directory.file("file", "");
    auto missing = stage.directory.path("missing");
    if (::setxattr(file.c_str(), "user.probe", "", 0, 0) != 0 && errno == ENOTSUP)
        GTEST_SKIP() << "no extended attributes on this file system";
    auto& manager = stage.manager;
    for (std::string value : {"Grüße", "", "other"}) {
        EXPECT_EQ(posixCode(setXAttr(manager, file, "user.text", value)), 0);
        EXPECT_EQ(getXAttr(manager, file, "user.text"), value);
    }
    EXPECT_EQ(::getxattr(file.c_str(), "user.text", nullptr, 0), 5); // no zero at the end
    ::setxattr(file.c_str(), "user.latin", "\xFC", 1, 0);
    EXPECT_EQ(getXAttr(manager, file, "user.latin"), std::nullopt);
    EXPECT_EQ(posixCode(removeXattr(manager, file, "user.text")), 0);
    EXPECT_EQ(getXAttr(manager, file, "user.text"), std::nullopt);
    EXPECT_EQ(posixCode(removeXattr(manager, file, "user.text")), ENODATA);
    EXPECT_EQ(posixCode(setXAttr(manager, file, "text", "x")), ENOTSUP); // passed as it is
    EXPECT_EQ(getXAttr(manager, missing, "user.text"), std::nullopt);
    EXPECT_EQ(posixCode(setXAttr(manager, missing, "user.text", "x")), ENOENT);
    EXPECT_EQ(posixCode(removeXattr(manager, missing, "user.text")), ENOENT);
    EXPECT_EQ(posixCode(setXAttr(manager, std::string(file + '\0'), "user.text", "x")), EINVAL);
}

TEST(FileHelpersTests, Free_space_is_asked_of_the_documents_volume)
{
    Stage stage;
    auto absent = computeFreeDiskSpace(stage.manager);
    ASSERT_FALSE(absent);
    EXPECT_EQ(absent.error().bridged(), platform::NSError(platform::NSCocoaError::fileReadNoSuchFile));
    std::filesystem::create_directory(documentsDirURL(stage.manager).path());
    auto free = computeFreeDiskSpace(stage.manager);
    ASSERT_TRUE(free);
    EXPECT_LE(*free, std::filesystem::space(stage.directory.path()).capacity);
    EXPECT_GT(*free, 0u);
}

TEST(FileHelpersDeathTest, A_user_without_a_home_has_no_documents_directory)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the superuser can become somebody whom the user database does not know";
    platform::FileManager manager([](const std::string&) { return std::nullopt; });
    auto asNobodyKnown = [&](auto work) {
        if (::setuid(54321) == 0)
            work();
    };
    EXPECT_DEATH(asNobodyKnown([&] { documentsDirURL(manager); }), "no documents directory");
    EXPECT_DEATH(asNobodyKnown([&] { static_cast<void>(computeFreeDiskSpace(manager)); }),
                 "no documents directory");
}

} // namespace zelk

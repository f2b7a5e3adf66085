// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSUserDefaults.h"
#include "platform/graphics/GraphicsRuntime_p.h"
#include "platform/services/PHPhotosAuthorization.h"
#include "tests/support/MediaFixtures.h"
#include "tests/support/TemporaryDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tests {

// Answers as the test says, and counts the questions.
class AnsweringQuestion : public platform::PHPhotosQuestion {
public:
    void ask(platform::PHAccessLevel level, Answer answer) override
    {
        asked.push_back(level);
        standing.push_back(std::move(answer));
        if (next)
            give(*next);
    }
    void give(platform::PHAuthorizationStatus status)
    {
        for (auto& answer : std::exchange(standing, {}))
            answer(status);
    }
    std::optional<platform::PHAuthorizationStatus> next; // at once; nothing: the question stands
    std::vector<platform::PHAccessLevel> asked;
    std::vector<Answer> standing;
};

// A photo library of its own for one test: empty folders, nothing allowed yet, no administrator's word.
class PhotoLibraryFolders {
public:
    PhotoLibraryFolders()
        : question(std::make_shared<AnsweringQuestion>())
    {
        platform::awaitFontConfiguration(); // whoever reads it reads the environment, which changes here
        platform::NSUserDefaults::standardUserDefaults(); // has its file elsewhere, for all tests
        std::filesystem::create_directory(folder.path("pictures"));
        std::filesystem::create_directory(folder.path("videos"));
        ::setenv("XDG_CONFIG_HOME", folder.path("config").c_str(), 1);
        ::setenv("XDG_CONFIG_DIRS", folder.path("etc").c_str(), 1);
        setPlaces(folder.path("pictures"), folder.path("videos"));
        allow(platform::PHAuthorizationStatus::notDetermined);
        platform::PHPhotosAuthorization::shared().setQuestion(question);
    }
    ~PhotoLibraryFolders()
    {
        platform::awaitFontConfiguration();
        allow(platform::PHAuthorizationStatus::notDetermined);
        platform::PHPhotosAuthorization::shared().setQuestion(nullptr);
        for (const auto* name : {"XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"})
            ::unsetenv(name);
    }
    PhotoLibraryFolders(const PhotoLibraryFolders&) = delete; // it is the environment's
    PhotoLibraryFolders& operator=(const PhotoLibraryFolders&) = delete;

    void allow(platform::PHAuthorizationStatus adding)
    {
        auto& authorization = platform::PHPhotosAuthorization::shared();
        authorization.setStatus(adding, platform::PHAccessLevel::addOnly);
        authorization.setStatus(platform::PHAuthorizationStatus::notDetermined,
                                platform::PHAccessLevel::readWrite);
    }
    void setPlaces(const std::string& pictures, const std::string& videos)
    {
        folder.write("config/user-dirs.dirs",
                     "XDG_PICTURES_DIR=\"" + pictures + "\"\nXDG_VIDEOS_DIR=\"" + videos + "\"\n");
    }
    // Hidden ones too.
    std::set<std::string> names(const std::string& of) const
    {
        std::set<std::string> names;
        std::error_code isGone;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path(of), isGone))
            names.insert(entry.path().filename());
        return names;
    }

    TemporaryDirectory folder;
    std::shared_ptr<AnsweringQuestion> question;
};

inline platform::URL smallPicture()
{
    return mediaURL("png", "-f lavfi -i testsrc=size=64x48:rate=1 -frames:v 1");
}
inline platform::URL smallVideo()
{
    return mediaURL("mp4",
                    "-f lavfi -i testsrc=size=64x48:rate=10:duration=1 -c:v mpeg4 -movflags +faststart");
}
inline std::string contentsOf(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace tests

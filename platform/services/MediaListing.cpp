// SPDX-License-Identifier: MIT
#include "platform/services/MediaListing.h"

#include "platform/foundation/FileManager.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <tuple>

namespace platform {

namespace {

namespace files = std::filesystem;

constexpr std::size_t mostFiles = 250'000;
constexpr std::array<std::string_view, 13> photoExtensions{
    "jpg", "jpeg", "png", "gif", "webp", "tif", "tiff", "bmp", "heic", "heif", "avif", "dng", "jxl"};
constexpr std::array<std::string_view, 14> videoExtensions{
    "mov", "mp4", "m4v", "mkv", "webm", "avi", "ogv", "m2ts", "mpg", "mpeg", "3gp", "flv", "wmv", "mts"};

enum class Kind { none, photo, video };

Kind kindOf(const files::path& path)
{
    auto extension = path.extension().string();
    if (extension.empty())
        return Kind::none;
    extension.erase(0, 1);
    std::ranges::transform(extension, extension.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    if (std::ranges::find(photoExtensions, extension) != photoExtensions.end())
        return Kind::photo;
    return std::ranges::find(videoExtensions, extension) != videoExtensions.end() ? Kind::video : Kind::none;
}

void appendMedia(std::vector<LibraryFile>& found, const std::string& folder, MediaKinds kinds,
                 const std::stop_token& stop)
{
    std::error_code failed;
    files::recursive_directory_iterator each(folder, files::directory_options::skip_permission_denied,
                                             failed);
    for (; !failed && each != files::recursive_directory_iterator(); each.increment(failed)) {
        if (stop.stop_requested() || found.size() >= mostFiles)
            return;
        auto isHidden = each->path().filename().native().starts_with('.');
        std::error_code unknown;
        if (isHidden) {
            each.disable_recursion_pending();
            continue;
        }
        auto kind = kindOf(each->path());
        if (!(kind == Kind::photo && kinds.photos) && !(kind == Kind::video && kinds.videos))
            continue;
        if (!each->is_regular_file(unknown) || unknown)
            continue;
        auto modified = each->last_write_time(unknown).time_since_epoch().count();
        if (!unknown)
            found.push_back(
                {each->path().string(), kind == Kind::video, static_cast<std::int64_t>(modified)});
    }
}

} // namespace

std::string LibraryFile::name() const
{
    return path.substr(path.rfind('/') + 1);
}

std::vector<std::string> mediaFolders()
{
    std::vector<std::string> folders;
    for (auto directory : {SearchPathDirectory::pictures, SearchPathDirectory::movies}) {
        auto urls = FileManager::defaultManager().urls(directory, SearchPathDomain::user);
        if (urls.empty())
            continue;
        std::error_code failed;
        auto folder = files::canonical(urls.front().path(), failed).string();
        // One folder for both, or one in the other, is read once.
        auto isInside = [&](const std::string& other) {
            return folder == other || folder.starts_with(std::string(other).append("/"));
        };
        if (!failed && std::ranges::none_of(folders, isInside))
            folders.push_back(folder);
    }
    return folders;
}

std::vector<LibraryFile> listMedia(const std::vector<std::string>& folders, MediaKinds kinds,
                                   const std::stop_token& stop)
{
    std::vector<LibraryFile> found;
    for (const auto& folder : folders)
        appendMedia(found, folder, kinds, stop);
    std::ranges::sort(found, [](const LibraryFile& a, const LibraryFile& b) {
        return std::tie(b.modified, a.path) < std::tie(a.modified, b.path);
    });
    return found;
}

} // namespace platform

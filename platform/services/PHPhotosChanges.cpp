// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotosChanges_p.h"

#include "platform/foundation/FileManager.h"
#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/FileWriting_p.h"
#include "platform/foundation/Precondition.h"
#include "platform/foundation/UTF8.h"
#include "platform/foundation/UUID.h"
#include "platform/services/PHPhotosContent_p.h"
#include "platform/services/PHPhotosDraft_p.h"
#include "platform/services/PHPhotosError.h"

#include <algorithm>
#include <cerrno>
#include <set>
#include <utility>

namespace platform {

namespace {

thread_local PHPhotosRequests* collected = nullptr;

// After so many names that are taken one is made up.
constexpr int mostNumbers = 1000;
constexpr std::size_t longestStem = 200; // bytes; a name has 255, with number and extension

constexpr std::string_view plainStem = "Media";

struct StagedAsset {
    std::string folder;
    std::string stem;
    std::string pathExtension;
    PHPhotosDraft draft;
};

// The library's code with what the system says of the cause.
Error photosError(PHPhotosError code, const NSError& cause)
{
    return nsError(code, cause.userInfo());
}

Error writingError(int number, const URL& file)
{
    auto code = number == ENOSPC || number == EDQUOT || number == EFBIG ? PHPhotosError::notEnoughSpace
        : number == EROFS || number == EACCES || number == EPERM        ? PHPhotosError::changeNotSupported
        : number == ENOENT || number == ENOTDIR                         ? PHPhotosError::libraryVolumeOffline
                                                                        : PHPhotosError::internalError;
    return photosError(code, fileWriteError(number, file, "added to your photos").bridged());
}

Result<std::string> folderFor(PHAssetMediaType type)
{
    const auto& files = FileManager::defaultManager();
    auto directory =
        type == PHAssetMediaType::image ? SearchPathDirectory::pictures : SearchPathDirectory::movies;
    auto folders = files.urls(directory, SearchPathDomain::user);
    if (folders.empty())
        return failure(PHPhotosError::libraryVolumeOffline);
    if (!files.fileExists(folders.front().path())) {
        // Only the last step: when the folder above is missing, the disk is probably elsewhere.
        auto made = files.createDirectory(folders.front(), IntermediateDirectories::required);
        // Another program may have been faster.
        if (!made && !files.fileExists(folders.front().path())) {
            auto isGone = made.error() == Error(NSError(NSCocoaError::fileNoSuchFile));
            return std::unexpected(
                photosError(isGone ? PHPhotosError::libraryVolumeOffline : PHPhotosError::changeNotSupported,
                            made.error().bridged()));
        }
    }
    return folders.front().path();
}

// The name without extension, fit for any file system and shown in any folder.
std::string stemOf(const URL& file, PHAssetMediaType type)
{
    auto stem = repairedUTF8(file.lastPathComponent());
    std::ranges::replace_if(stem, [](char c) { return (c >= 0 && c < ' ') || c == 0x7F || c == '/'; }, '_');
    if (auto dot = stem.rfind('.'); dot != stem.npos && dot > 0)
        stem.resize(dot);
    stem.erase(0, std::min(stem.find_first_not_of(". "), stem.size()));
    if (stem.size() > longestStem) {
        auto end = longestStem;
        while (end > 0 && (static_cast<unsigned char>(stem[end]) & 0xC0) == 0x80)
            --end; // not inside a character
        stem.resize(end);
    }
    return !stem.empty() ? stem : type == PHAssetMediaType::image ? "Photo" : "Video";
}

// The usual extension of what is at `path`, which is what the request says.
Result<std::string> requireContent(const std::string& path, const PHAssetChangeRequest& request)
{
    auto content = photosContentOf(path);
    if (content && content->type == request.mediaType())
        return std::move(content->pathExtension);
    auto what = request.mediaType() == PHAssetMediaType::image ? "it is not a whole photo"
                                                               : "it is not a whole video";
    auto cause = fileError(NSCocoaError::fileReadCorruptFile, request.fileURL(), what);
    return std::unexpected(photosError(PHPhotosError::invalidResource, cause.bridged()));
}

// The copy, in its folder, checked and on the disk; without its name.
Result<StagedAsset> stage(const PHAssetChangeRequest& request)
{
    const auto& file = request.fileURL();
    auto source = RegularFile::open(file);
    if (!source)
        return std::unexpected(photosError(PHPhotosError::missingResource, source.error().bridged()));
    TRY(requireContent("/proc/self/fd/" + std::to_string(source->descriptor()),
                       request)); // before a long copy
    auto folder = TRY(folderFor(request.mediaType()));
    auto draft = PHPhotosDraft::make(folder);
    if (!draft)
        return std::unexpected(writingError(draft.error(), file));
    if (auto copied = draft->copyFrom(source->descriptor()); !copied) {
        if (!copied.error().wasReading)
            return std::unexpected(writingError(copied.error().error, file));
        return std::unexpected(
            photosError(PHPhotosError::missingResource, fileError(copied.error().error, file).bridged()));
    }
    // What was copied is looked at again: the file may be another one by now.
    auto usual = TRY(requireContent(draft->readablePath(), request));
    if (auto finished = draft->finish(); !finished)
        return std::unexpected(writingError(finished.error(), file));
    auto named = file.pathExtension();
    return StagedAsset{std::move(folder), stemOf(file, request.mediaType()),
                       isUsualExtension(named, request.mediaType()) ? std::move(named) : std::move(usual),
                       std::move(*draft)};
}

Result<void> place(StagedAsset& asset)
{
    for (int number = 1;; ++number) {
        auto name = asset.stem;
        if (number > mostNumbers)
            name.append(" ").append(UUID().string());
        else if (number > 1)
            name.append(" ").append(std::to_string(number));
        name.append(".").append(asset.pathExtension);
        auto placed = asset.draft.place(name);
        if (placed)
            return {};
        auto fault = placed.error();
        if (fault == EEXIST && number <= mostNumbers)
            continue;
        // Some disks take fewer characters, or fewer of them; all take this one.
        auto isNameRefused = fault == EINVAL || fault == ENAMETOOLONG || fault == EILSEQ;
        if (!isNameRefused || asset.stem == plainStem)
            return std::unexpected(writingError(fault, URL::fileURL(asset.folder + "/" + name)));
        asset.stem = plainStem;
        number = 0;
    }
}

} // namespace

PHPhotosRequests collectPhotosRequests(const std::function<void()>& changes)
{
    PHPhotosRequests requests;
    auto* outer = std::exchange(collected, &requests);
    if (changes)
        changes();
    collected = outer;
    return requests;
}

void addPhotosRequest(std::shared_ptr<PHAssetChangeRequest> request)
{
    precondition(collected != nullptr,
                 "changes of the photo library are asked for in a block of PHPhotoLibrary::performChanges");
    collected->push_back(std::move(request));
}

Result<void> carryOut(const PHPhotosRequests& requests)
{
    std::vector<StagedAsset> staged; // all go if one cannot come
    for (const auto& request : requests)
        staged.push_back(TRY(stage(*request)));
    for (auto& asset : staged)
        TRY(place(asset));
    std::set<std::string> folders;
    for (auto& asset : staged) {
        asset.draft.keep();
        folders.insert(asset.folder);
    }
    for (const auto& folder : folders)
        synchronizeFolder(folder);
    return {};
}

} // namespace platform

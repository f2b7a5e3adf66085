// SPDX-License-Identifier: MIT
#include "platform/foundation/FileWatcher_p.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <set>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::uint32_t gone = IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED | IN_UNMOUNT;
constexpr std::uint32_t folderEvents =
    IN_MOVED_TO | IN_MOVED_FROM | IN_CLOSE_WRITE | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t ancestorEvents = IN_CREATE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;

} // namespace

FileWatcher::FileWatcher()
    : descriptor_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
}

FileWatcher::~FileWatcher()
{
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

FileWatcher::Identifier FileWatcher::add(std::string folder, std::string name)
{
    std::lock_guard lock(mutex_);
    auto identifier = nextIdentifier_++;
    auto& file = files_[identifier] = {std::move(folder), std::move(name), none, {}};
    arm(file);
    return identifier;
}

void FileWatcher::remove(Identifier identifier)
{
    std::lock_guard lock(mutex_);
    auto found = files_.find(identifier);
    if (found == files_.end())
        return;
    disarm(found->second);
    files_.erase(found);
}

// Watches the folder or the nearest one above it. What appears between the failed attempt at a folder and the watch
// above it would go unseen: so after each step up the way down is tried again, until it fails where it failed before.
void FileWatcher::arm(File& file)
{
    disarm(file);
    auto watch = [&](const std::string& path, std::uint32_t events) {
        // IN_MASK_ADD: another file may have the same folder for another reason.
        return ::inotify_add_watch(descriptor_, path.c_str(), events | IN_MASK_ADD | IN_ONLYDIR);
    };
    std::string previous;
    while (true) {
        file.watch = watch(file.folder, folderEvents);
        file.awaited.clear();
        if (file.watch >= 0 || (errno != ENOENT && errno != ENOTDIR))
            return;
        std::string path = file.folder;
        do {
            auto slash = path.rfind('/');
            if (path == "/" || slash == std::string::npos)
                return;
            file.awaited = path.substr(slash + 1);
            path.resize(std::max<std::size_t>(slash, 1));
            file.watch = watch(path, ancestorEvents);
        } while (file.watch < 0 && (errno == ENOENT || errno == ENOTDIR));
        if (file.watch < 0 || path == previous)
            return;
        previous = path;
    }
}

void FileWatcher::disarm(File& file)
{
    int watch = std::exchange(file.watch, none);
    auto isSame = [&](auto& other) { return other.second.watch == watch; };
    if (watch >= 0 && std::ranges::none_of(files_, isSame))
        ::inotify_rm_watch(descriptor_, watch);
}

bool FileWatcher::mayConcern(const File& file, std::uint32_t what, std::string_view name) const
{
    return (what & gone) != 0 || name == (file.awaited.empty() ? file.name : file.awaited);
}

std::vector<FileWatcher::Identifier> FileWatcher::takeChanges()
{
    std::lock_guard lock(mutex_);
    std::set<Identifier> changed;
    alignas(inotify_event) char buffer[4096];
    while (true) {
        auto count = descriptor_ < 0 ? 0 : ::read(descriptor_, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        for (auto* at = buffer; at < buffer + count;) {
            auto& event = *reinterpret_cast<const inotify_event*>(at);
            at += sizeof event + event.len;
            std::string_view name = event.len > 0 ? event.name : "";
            for (auto& [identifier, file] : files_) {
                bool isLost = (event.mask & IN_Q_OVERFLOW) != 0;
                if (!isLost && (event.wd != file.watch || !mayConcern(file, event.mask, name)))
                    continue;
                changed.insert(identifier);
                if (isLost || (event.mask & gone) != 0 || !file.awaited.empty())
                    arm(file);
            }
        }
    }
    return {changed.begin(), changed.end()};
}

} // namespace platform

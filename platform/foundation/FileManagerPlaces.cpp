// SPDX-License-Identifier: MIT
// Where a user's files are: the half of FileManager that asks the desktop.
#include "platform/foundation/Bundle.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/foundation/UUID.h"

#include <algorithm>
#include <utility>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::size_t userDirectoriesLimit = 64 * 1024;

struct Place {
    std::string_view key;      // in user-dirs.dirs; empty: a base directory
    std::string_view fallback; // below the home
    const char* variable = nullptr;
};

Place placeOf(SearchPathDirectory directory)
{
    switch (directory) {
    case SearchPathDirectory::document:
        return {"XDG_DOCUMENTS_DIR", "Documents"};
    case SearchPathDirectory::download:
        return {"XDG_DOWNLOAD_DIR", "Downloads"};
    case SearchPathDirectory::desktop:
        return {"XDG_DESKTOP_DIR", "Desktop"};
    case SearchPathDirectory::movies:
        return {"XDG_VIDEOS_DIR", "Videos"};
    case SearchPathDirectory::music:
        return {"XDG_MUSIC_DIR", "Music"};
    case SearchPathDirectory::pictures:
        return {"XDG_PICTURES_DIR", "Pictures"};
    case SearchPathDirectory::caches:
        return {"", ".cache", "XDG_CACHE_HOME"};
    case SearchPathDirectory::applicationSupport:
        return {"", ".local/share", "XDG_DATA_HOME"};
    }
    return {};
}

std::string_view trimmed(std::string_view text)
{
    auto begin = text.find_first_not_of(" \t\r");
    auto end = text.find_last_not_of(" \t\r");
    return begin == std::string_view::npos ? std::string_view() : text.substr(begin, end - begin + 1);
}

// The text between double quotes, with what a backslash protects; nothing when it is not of that form.
std::optional<std::string> unquoted(std::string_view text)
{
    if (text.size() < 2 || text.front() != '"')
        return std::nullopt;
    std::string result;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '"')
            return result;
        if (text[i] == '\\' && ++i == text.size())
            break;
        result += text[i];
    }
    return std::nullopt;
}

// The file is a list of shell assignments: KEY="$HOME/relative" or KEY="/absolute". The last one counts; others, and what
// a shell would compute, do not.
std::optional<std::string> userDirectory(std::string_view file, std::string_view key, const std::string& home)
{
    std::optional<std::string> found;
    while (!file.empty()) {
        auto line = file.substr(0, file.find('\n'));
        file.remove_prefix(std::min(line.size() + 1, file.size()));
        line = trimmed(line);
        auto equals = line.find('=');
        if (equals == std::string_view::npos || trimmed(line.substr(0, equals)) != key)
            continue;
        auto value = unquoted(trimmed(line.substr(equals + 1)));
        constexpr std::string_view homePrefix = "$HOME";
        if (value && value->starts_with(homePrefix)
            && (value->size() == homePrefix.size() || (*value)[homePrefix.size()] == '/'))
            found = home + value->substr(homePrefix.size());
        else if (value && value->starts_with('/'))
            found = std::move(value);
    }
    return found;
}

// A directory that is this user's alone; made when it is missing.
bool isPrivateDirectory(const std::string& path)
{
    ::mkdir(path.c_str(), 0700);
    struct stat status;
    // In a place where everybody may write, a stranger may have made it, or a link in its stead.
    return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid()
        && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::string programName()
{
    auto name = Bundle::main()->bundleIdentifier().value_or(ProcessInfo::processInfo().processName());
    std::ranges::replace(name, '/', '-');
    std::erase(name, '\0');
    return name.substr(0, 128);
}

} // namespace

std::optional<std::string> FileManager::directoryFromEnvironment(const std::string& name) const
{
    auto value = environment_(name);
    // A relative path would mean another directory at each place: not valid, as the base directory rules have it.
    return value && value->starts_with('/') ? value : std::nullopt;
}

std::optional<URL> FileManager::homeDirectoryForCurrentUser() const
{
    if (auto home = directoryFromEnvironment("HOME"))
        return URL::fileURL(*home);
    std::vector<char> buffer(16 * 1024);
    struct passwd entry;
    struct passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found
        || !found->pw_dir || found->pw_dir[0] != '/')
        return std::nullopt;
    return URL::fileURL(found->pw_dir);
}

std::vector<URL> FileManager::urls(SearchPathDirectory directory, SearchPathDomain) const
{
    auto place = placeOf(directory);
    if (place.variable) {
        if (auto given = directoryFromEnvironment(place.variable))
            return {URL::fileURL(*given)};
    }
    auto home = homeDirectoryForCurrentUser();
    if (!home)
        return {};
    if (!place.key.empty()) {
        auto configuration = directoryFromEnvironment("XDG_CONFIG_HOME");
        auto folder = configuration ? URL::fileURL(*configuration) : home->appendingPathComponent(".config");
        auto homePath = home->path();
        while (homePath.ends_with('/'))
            homePath.pop_back();
        // Many desktops have no such file: that is no failure.
        if (auto file = readFileHead(folder.appendingPathComponent("user-dirs.dirs"), userDirectoriesLimit)) {
            if (auto found = userDirectory(*file, place.key, homePath))
                return {URL::fileURL(found->empty() ? "/" : *found)};
        }
    }
    return {home->appendingPathComponent(place.fallback)};
}

URL FileManager::temporaryDirectory() const
{
    std::lock_guard lock(mutex_);
    auto shared = directoryFromEnvironment("TMPDIR").value_or("/tmp");
    auto path =
        shared + (shared.ends_with('/') ? "" : "/") + programName() + "-" + std::to_string(::geteuid());
    if (temporaryDirectory_
        && (temporaryDirectory_->path() == path || temporaryDirectory_->path().starts_with(path + "-"))
        && isPrivateDirectory(temporaryDirectory_->path()))
        return *temporaryDirectory_;
    // Where even a name that nobody can guess cannot be made, writing into it will say why.
    if (!isPrivateDirectory(path)) {
        path += "-" + UUID().string();
        isPrivateDirectory(path);
    }
    temporaryDirectory_ = URL::fileURL(path);
    return *temporaryDirectory_;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/uikit/DesktopURLOpenerHandlers_p.h"

#include "platform/uikit/SpawnedProgram.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include <unistd.h>

namespace platform {

namespace {

namespace fs = std::filesystem;

// Of what these files should hold; what is longer is not read.
constexpr std::size_t longestLine = 64 * 1024;

std::string lowerCase(std::string text)
{
    for (char& c : text)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return text;
}

// The base directories of data, the user's first.
std::vector<std::string> dataFolders()
{
    auto folders = splitList(environmentVariable("XDG_DATA_DIRS", "/usr/local/share:/usr/share"), ':');
    folders.insert(folders.begin(),
                   environmentVariable("XDG_DATA_HOME", environmentVariable("HOME") + "/.local/share"));
    return folders;
}

// The files that say which entries stand for which content, in the order in which they count. Each desktop may have lists
// of its own before the common one.
std::vector<fs::path> associationLists()
{
    std::vector<std::string> names;
    for (const auto& desktop : splitList(environmentVariable("XDG_CURRENT_DESKTOP"), ':'))
        names.push_back(lowerCase(desktop) + "-mimeapps.list");
    names.emplace_back("mimeapps.list");
    auto folders = splitList(environmentVariable("XDG_CONFIG_DIRS", "/etc/xdg"), ':');
    folders.insert(folders.begin(),
                   environmentVariable("XDG_CONFIG_HOME", environmentVariable("HOME") + "/.config"));
    for (const auto& folder : dataFolders())
        folders.push_back(folder + "/applications");
    std::vector<fs::path> files;
    for (const auto& folder : folders) {
        for (const auto& name : names)
            files.push_back(fs::path(folder) / name);
    }
    for (const auto& folder : dataFolders())
        files.push_back(fs::path(folder) / "applications" / "mimeinfo.cache");
    return files;
}

// The value of "key=value"; nothing when the line says something else.
std::optional<std::string_view> valueIn(std::string_view line, std::string_view key)
{
    if (line.size() <= key.size() || line.size() > longestLine || !line.starts_with(key))
        return std::nullopt;
    line.remove_prefix(key.size());
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (!line.starts_with('='))
        return std::nullopt;
    return line.substr(1);
}

std::string_view trimmed(std::string_view text)
{
    auto begin = text.find_first_not_of(" \t\r");
    return begin == text.npos ? std::string_view()
                              : text.substr(begin, text.find_last_not_of(" \t\r") + 1 - begin);
}

// The file of a desktop entry: "kde-mail.desktop" is that name, or mail.desktop in the folder kde, in the first folder that
// has it.
std::optional<fs::path> fileOf(std::string_view entry)
{
    if (entry.find('/') != entry.npos)
        return std::nullopt;
    for (const auto& folder : dataFolders()) {
        auto name = std::string(entry);
        for (std::size_t from = 0;;) {
            auto file = fs::path(folder) / "applications" / name;
            std::error_code ignored; // what cannot be looked at is not there
            if (fs::is_regular_file(file, ignored))
                return file;
            from = name.find('-', from);
            if (from == name.npos)
                break;
            name[from] = '/';
        }
    }
    return std::nullopt;
}

// The first word of a command line as desktop entries have them.
std::string programOf(std::string_view command)
{
    command = trimmed(command);
    std::string program;
    bool isQuoted = command.starts_with('"');
    for (std::size_t i = isQuoted ? 1 : 0; i < command.size(); ++i) {
        if (command[i] == (isQuoted ? '"' : ' '))
            break;
        if (command[i] == '\\' && i + 1 < command.size())
            ++i;
        program += command[i];
    }
    return program;
}

bool isExecutable(const std::string& program)
{
    if (program.starts_with('/'))
        return ::access(program.c_str(), X_OK) == 0;
    return !program.empty() && SpawnedProgram::isInstalled(program);
}

bool isUsable(std::string_view entry)
{
    auto path = fileOf(entry);
    if (!path)
        return false;
    std::ifstream lines(*path);
    bool isMainGroup = false, isActivatable = false;
    std::optional<std::string> executable, tried;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('[')) {
            isMainGroup = trimmed(line) == "[Desktop Entry]";
            continue;
        }
        if (!isMainGroup)
            continue;
        if (auto hidden = valueIn(line, "Hidden"); hidden && trimmed(*hidden) == "true")
            return false;
        if (auto value = valueIn(line, "DBusActivatable"))
            isActivatable = trimmed(*value) == "true";
        if (auto command = valueIn(line, "Exec"))
            executable = programOf(*command);
        if (auto program = valueIn(line, "TryExec"))
            tried = std::string(trimmed(*program));
    }
    if (tried && !isExecutable(*tried))
        return false;
    return executable ? isExecutable(*executable) : isActivatable;
}

// The desktop entries that one list names for a kind of content.
struct Associations {
    std::vector<std::string> added;
    std::vector<std::string> removed;
};

Associations associationsIn(const fs::path& file, std::string_view mimeType)
{
    Associations found;
    std::vector<std::string>* group = nullptr;
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('[')) {
            auto name = trimmed(line);
            auto adds =
                name == "[Default Applications]" || name == "[Added Associations]" || name == "[MIME Cache]";
            group = adds ? &found.added : name == "[Removed Associations]" ? &found.removed : nullptr;
        } else if (auto value = group ? valueIn(line, mimeType) : std::nullopt) {
            for (const auto& entry : splitList(*value, ';'))
                group->emplace_back(trimmed(entry));
        }
    }
    return found;
}

} // namespace

std::string environmentVariable(const char* name, std::string_view otherwise)
{
    const char* value = std::getenv(name);
    return value && *value ? std::string(value) : std::string(otherwise);
}

std::vector<std::string> splitList(std::string_view list, char separator)
{
    std::vector<std::string> parts;
    while (!list.empty()) {
        auto end = list.find(separator);
        if (end != 0)
            parts.emplace_back(list.substr(0, end));
        list.remove_prefix(end == list.npos ? list.size() : end + 1);
    }
    return parts;
}

bool desktopHasHandler(std::string_view mimeType)
{
    std::vector<std::string> takenAway; // by a list that counts for more
    for (const auto& file : associationLists()) {
        auto associations = associationsIn(file, mimeType);
        // What one list both adds and takes away, it adds.
        for (const auto& entry : associations.added) {
            if (std::ranges::find(takenAway, entry) == takenAway.end() && isUsable(entry))
                return true;
        }
        std::ranges::move(associations.removed, std::back_inserter(takenAway));
    }
    return false;
}

} // namespace platform

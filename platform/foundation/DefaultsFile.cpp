// SPDX-License-Identifier: MIT
#include "platform/foundation/DefaultsFile_p.h"

#include "platform/foundation/DefaultsLock_p.h"
#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/FileWriting.h"
#include "platform/foundation/FileWriting_p.h"
#include "platform/foundation/Logger.h"
#include "platform/foundation/PropertyListWriter.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr unsigned privateFile = 0600;
constexpr mode_t privateFolder = 0700;
// More than that, and the newest takes the place of the last.
constexpr int damagedFilesLimit = 99;

// Makes the folder and those above it.
Result<void> makeFolder(const URL& folder)
{
    auto path = folder.path();
    if (::mkdir(path.c_str(), privateFolder) == 0 || errno == EEXIST)
        return {};
    if (errno != ENOENT || path == "/")
        return std::unexpected(fileWriteError(errno, folder, "made"));
    TRY(makeFolder(folder.deletingLastPathComponent()));
    if (::mkdir(path.c_str(), privateFolder) == 0 || errno == EEXIST)
        return {};
    return std::unexpected(fileWriteError(errno, folder, "made"));
}

} // namespace

DefaultsFile::DefaultsFile(std::optional<URL> folder)
    : folder_(std::move(folder))
{
}

Result<DefaultsSnapshotRef> DefaultsFile::read(const DefaultsSnapshotRef& known)
{
    auto found = TRY(look(known));
    if (found)
        return found;
    auto lock = TRY(DefaultsLock::take(folder_->appendingPathComponent(lockName)));
    return readLocked(known);
}

Result<DefaultsSnapshotRef> DefaultsFile::readLocked(const DefaultsSnapshotRef& known)
{
    auto found = TRY(look(known));
    if (found)
        return found;
    TRY(setAside());
    return std::make_shared<DefaultsSnapshot>();
}

Result<DefaultsSnapshotRef> DefaultsFile::look(const DefaultsSnapshotRef& known) const
{
    if (!folder_)
        return known;
    auto url = folder_->appendingPathComponent(fileName);
    struct stat status;
    if (::lstat(url.path().c_str(), &status) != 0) {
        if (errno == ENOENT)
            return known->bytes.empty() ? known : std::make_shared<DefaultsSnapshot>();
        return std::unexpected(fileError(errno, url));
    }
    // Replacing the file would replace the link, and what it leads to is watched and locked by nobody.
    if (S_ISLNK(status.st_mode))
        return std::unexpected(fileError(NSCocoaError::fileReadUnknown, url, "it is a symbolic link"));
    auto bytes = readFileHead(url, defaultsLimits.bytes + 1);
    if (!bytes && bytes.error() == Error(NSError(NSCocoaError::fileReadNoSuchFile)))
        return known->bytes.empty() ? known : std::make_shared<DefaultsSnapshot>(); // went meanwhile
    if (!bytes)
        return std::unexpected(bytes.error());
    if (!bytes->empty() && *bytes == known->bytes)
        return known;
    auto value = parsePropertyList(*bytes, defaultsLimits);
    auto* dictionary = value ? value->as<PropertyListDictionary>() : nullptr;
    if (!dictionary)
        return DefaultsSnapshotRef();
    return std::make_shared<DefaultsSnapshot>(std::move(*bytes), std::move(*dictionary));
}

Result<void> DefaultsFile::setAside() const
{
    auto url = folder_->appendingPathComponent(fileName);
    for (int number = 1;; ++number) {
        auto name = "defaults.damaged-" + std::to_string(number) + ".plist";
        auto aside = folder_->appendingPathComponent(name).path();
        struct stat status;
        if (number < damagedFilesLimit && ::lstat(aside.c_str(), &status) == 0)
            continue;
        if (::rename(url.path().c_str(), aside.c_str()) != 0)
            return std::unexpected(fileWriteError(errno, url, "set aside"));
        Logger("org.zelk.platform", "defaults")
            .error("the settings of " + shownName(*folder_) + " are damaged; they are set aside as " + name);
        return {};
    }
}

// A process that was killed while it wrote leaves its draft. Under the lock nobody else is writing one.
void DefaultsFile::removeDrafts()
{
    if (std::exchange(draftsAreRemoved_, true))
        return;
    std::error_code fault; // what cannot be removed costs nothing but space
    std::vector<std::filesystem::path> drafts;
    for (std::filesystem::directory_iterator entry(folder_->path(), fault), end; !fault && entry != end;
         entry.increment(fault)) {
        if (entry->path().filename().native().starts_with(draftPrefix))
            drafts.push_back(entry->path());
    }
    for (auto& draft : drafts)
        std::filesystem::remove(draft, fault);
}

Result<DefaultsSnapshotRef> DefaultsFile::merge(const DefaultsChanges& changes,
                                                const DefaultsSnapshotRef& known)
{
    if (!folder_)
        return failure(NSCocoaError::fileNoSuchFile,
                       {{std::string(NSLocalizedDescriptionKey),
                         "The settings can’t be saved because there is no home folder."},
                        {std::string(NSLocalizedFailureReasonErrorKey), "There is no home folder"}});
    TRY(makeFolder(*folder_));
    auto lock = TRY(DefaultsLock::take(folder_->appendingPathComponent(lockName)));
    removeDrafts();
    auto present = TRY(readLocked(known));
    auto values = present->values;
    for (auto& [key, value] : changes) {
        if (value)
            values.insert_or_assign(key, *value);
        else
            values.erase(key);
    }
    if (values == present->values)
        return present;
    PropertyListValue root(std::move(values));
    auto xml = TRY(propertyListXML(root, defaultsLimits));
    auto url = folder_->appendingPathComponent(fileName);
    TRY(writeFileAtomically(url, xml, {.permissions = privateFile}));
    return std::make_shared<DefaultsSnapshot>(std::move(xml), std::move(*root.as<PropertyListDictionary>()));
}

} // namespace platform

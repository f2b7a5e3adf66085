// SPDX-License-Identifier: MIT
#include "platform/foundation/Bundle.h"

#include "platform/foundation/BundleStringTables_p.h"
#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/Logger.h"

#include <climits>
#include <cstdlib>
#include <utility>

#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::string_view informationFileName = "Info.plist";

bool exists(const URL& url)
{
    struct stat status;
    return ::stat(url.path().c_str(), &status) == 0;
}

URL runningExecutable()
{
    char path[PATH_MAX];
    auto length = ::readlink("/proc/self/exe", path, sizeof path);
    // Without /proc there is still a bundle, but an empty one.
    return URL::fileURL(length > 0 ? std::string_view(path, static_cast<std::size_t>(length)) : "/");
}

// The file that the code at `address` was loaded from.
std::optional<URL> fileOfCode(const void* address)
{
    Dl_info information;
    link_map* loaded = nullptr;
    if (!::dladdr1(address, &information, reinterpret_cast<void**>(&loaded), RTLD_DL_LINKMAP) || !loaded)
        return std::nullopt;
    // The program itself has no name there; its argument would depend on the working directory.
    if (!*loaded->l_name)
        return runningExecutable();
    char path[PATH_MAX];
    return ::realpath(loaded->l_name, path) ? std::optional(URL::fileURL(path)) : std::nullopt;
}

URL resourcesOfCode(const URL& file)
{
    auto directory = file.deletingLastPathComponent();
    auto prefix = directory.deletingLastPathComponent();
    // Libraries may lie in a directory of their machine or program: lib/x86_64-linux-gnu.
    if (prefix.lastPathComponent().starts_with("lib"))
        prefix = prefix.deletingLastPathComponent();
    auto shared = prefix.appendingPathComponent("share").appendingPathComponent("zelk");
    return exists(shared) ? shared : directory;
}

} // namespace

Bundle::Bundle(Token, URL bundleURL, PropertyListDictionary information,
               std::optional<Error> informationError)
    : bundleURL_(std::move(bundleURL))
    , infoDictionary_(std::move(information))
    , informationError_(std::move(informationError))
    , stringTables_(std::make_shared<BundleStringTables>())
{
}

const std::shared_ptr<Bundle>& Bundle::main()
{
    // Never destroyed: threads may still run while the process exits.
    static const auto& instance = *new std::shared_ptr<Bundle>(forExecutable(runningExecutable()));
    return instance;
}

std::shared_ptr<Bundle> Bundle::forExecutable(const URL& executable)
{
    auto directory = executable.deletingLastPathComponent();
    auto shared =
        directory.deletingLastPathComponent().appendingPathComponent("share").appendingPathComponent(
            executable.lastPathComponent());
    auto place = exists(shared.appendingPathComponent(informationFileName)) ? shared : directory;
    auto information = place.appendingPathComponent(informationFileName);
    PropertyListDictionary dictionary;
    std::optional<Error> error;
    if (exists(information)) {
        if (auto read = readPropertyList(information)) {
            dictionary = std::move(*read);
        } else {
            error = read.error();
            Logger("org.zelk.platform", "bundle").error(error->localizedDescription());
        }
    }
    return std::make_shared<Bundle>(Token(), std::move(place), std::move(dictionary), std::move(error));
}

std::shared_ptr<Bundle> Bundle::forCode(const void* address)
{
    auto file = fileOfCode(address);
    if (!file)
        return nullptr;
    // A directory that many share has no manifest of its own.
    return std::make_shared<Bundle>(Token(), resourcesOfCode(*file), PropertyListDictionary(), std::nullopt);
}

Result<std::shared_ptr<Bundle>> Bundle::open(const URL& directory)
{
    TRY(requireDirectory(directory));
    PropertyListDictionary dictionary;
    auto information = directory.appendingPathComponent(informationFileName);
    if (exists(information))
        dictionary = TRY(readPropertyList(information));
    return std::make_shared<Bundle>(Token(), directory, std::move(dictionary), std::nullopt);
}

const PropertyListValue* Bundle::objectForInfoDictionaryKey(std::string_view key) const
{
    auto found = infoDictionary_.find(key);
    return found == infoDictionary_.end() ? nullptr : &found->second;
}

std::optional<std::string> Bundle::stringForInfoDictionaryKey(std::string_view key) const
{
    auto* value = objectForInfoDictionaryKey(key);
    auto* text = value ? value->as<std::string>() : nullptr;
    return text ? std::optional(*text) : std::nullopt;
}

std::optional<std::string> Bundle::bundleIdentifier() const
{
    return stringForInfoDictionaryKey("CFBundleIdentifier");
}

std::optional<URL> Bundle::urlForResource(std::string_view name, std::string_view extension) const
{
    std::string file(name);
    if (!extension.empty())
        file += "." + std::string(extension);
    if (file.empty() || file.front() == '/' || ("/" + file + "/").find("/../") != std::string::npos)
        return std::nullopt;
    auto url = resourceURL().appendingPathComponent(file);
    return exists(url) ? std::optional(url) : std::nullopt;
}

} // namespace platform

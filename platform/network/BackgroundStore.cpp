// SPDX-License-Identifier: MIT
#include "platform/network/BackgroundStore_p.h"

#include "platform/foundation/FileWriting.h"
#include "platform/foundation/Logger.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/PropertyListWriter.h"
#include "platform/network/DownloadFile_p.h"

#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/file.h>
#include <unistd.h>

namespace platform {

namespace {

const Logger& log()
{
    // Never destroyed: threads may still run while the process exits.
    static const auto& logger = *new Logger("org.zelk.platform", "network");
    return logger;
}

PropertyListDictionary encode(const URLRequest& request)
{
    PropertyListDictionary fields;
    for (auto& [name, value] : request.allHTTPHeaderFields)
        fields.emplace(name, value);
    return {
        {"url", request.url.absoluteString()},
        {"method", request.httpMethod},
        {"fields", std::move(fields)},
        {"policy", static_cast<int>(request.cachePolicy)},
        {"timeout", request.timeoutInterval.count()},
        {"cellular", request.allowsCellularAccess},
    };
}

template <class Value>
std::optional<Value> read(const PropertyListValue& value, std::string_view key)
{
    auto* found = value.find(key);
    auto* typed = found ? found->as<Value>() : nullptr;
    return typed ? std::optional(*typed) : std::nullopt;
}

std::optional<URLRequest> decode(const PropertyListValue& value)
{
    auto url = URL::parse(read<std::string>(value, "url").value_or(""));
    if (!url)
        return std::nullopt;
    URLRequest request(*url);
    request.httpMethod = read<std::string>(value, "method").value_or("GET");
    auto policy = read<std::int64_t>(value, "policy").value_or(0);
    request.cachePolicy = static_cast<URLRequestCachePolicy>(policy >= 0 && policy <= 5 ? policy : 0);
    request.timeoutInterval = std::chrono::duration<double>(read<double>(value, "timeout").value_or(60));
    request.allowsCellularAccess = read<bool>(value, "cellular").value_or(true);
    auto fields = read<PropertyListDictionary>(value, "fields").value_or(PropertyListDictionary());
    for (auto& [name, field] : fields) {
        if (auto* text = field.as<std::string>())
            request.setValue(*text, name);
    }
    return request;
}

PropertyListDictionary encode(const BackgroundStore::Entry& entry)
{
    PropertyListDictionary result{
        {"identifier", static_cast<std::int64_t>(entry.identifier)},
        {"request", encode(entry.request)},
        {"description", entry.description},
        {"validator", entry.validator},
        {"source", entry.source},
    };
    if (entry.total)
        result.emplace("total", *entry.total);
    return result;
}

std::optional<BackgroundStore::Entry> decodeEntry(const PropertyListValue& value)
{
    auto identifier = read<std::int64_t>(value, "identifier").value_or(0);
    auto* request = value.find("request");
    auto decoded = request ? decode(*request) : std::nullopt;
    if (identifier <= 0 || !decoded)
        return std::nullopt;
    return BackgroundStore::Entry{
        .identifier = static_cast<std::size_t>(identifier),
        .request = *decoded,
        .description = read<std::string>(value, "description").value_or(""),
        .validator = read<std::string>(value, "validator").value_or(""),
        .source = read<std::string>(value, "source").value_or(""),
        .total = read<std::int64_t>(value, "total"),
    };
}

// Any identifier, as the name of a directory.
std::string directoryName(const std::string& identifier)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (char c : identifier) {
        bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.'
            || c == '-';
        if (isPlain) {
            result += c;
        } else {
            result += '_';
            result += digits[static_cast<unsigned char>(c) >> 4];
            result += digits[static_cast<unsigned char>(c) & 15];
        }
    }
    return "session-" + result;
}

} // namespace

std::shared_ptr<BackgroundStore> BackgroundStore::open(const std::string& identifier)
{
    auto directory = downloadDirectory() + directoryName(identifier) + "/";
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    int lock = error ? -1 : ::open((directory + "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock < 0 || ::flock(lock, LOCK_EX | LOCK_NB) != 0) {
        log().error("Another session has the identifier, or its files cannot be used; nothing of it is kept");
        if (lock >= 0)
            ::close(lock);
        return nullptr;
    }
    return std::shared_ptr<BackgroundStore>(new BackgroundStore(std::move(directory), lock));
}

BackgroundStore::BackgroundStore(std::string directory, int lock)
    : directory_(std::move(directory))
    , lock_(lock)
{
    read();
    removeUnlisted();
}

BackgroundStore::~BackgroundStore()
{
    ::close(lock_);
}

void BackgroundStore::read()
{
    auto file = URL::fileURL(directory_ + "tasks.plist");
    if (!std::filesystem::exists(file.path()))
        return;
    auto list = readPropertyList(file);
    auto found = list ? list->find("tasks") : PropertyListDictionary::iterator();
    auto* tasks = list && found != list->end() ? found->second.as<PropertyListArray>() : nullptr;
    if (!tasks) {
        log().error("The list of a background session's tasks is damaged, and dropped");
        return;
    }
    for (auto& task : *tasks) {
        if (auto entry = decodeEntry(task))
            entries_.insert_or_assign(entry->identifier, *entry);
    }
}

// What a list that was damaged has named once.
void BackgroundStore::removeUnlisted()
{
    std::set<std::string> listed;
    for (auto& [identifier, entry] : entries_)
        listed.insert(partialPath(identifier));
    std::error_code error; // what is left is found again
    std::vector<std::filesystem::path> unlisted;
    for (std::filesystem::directory_iterator file(directory_, error), end; !error && file != end;
         file.increment(error)) {
        if (file->path().extension() == ".part" && !listed.contains(file->path().string()))
            unlisted.push_back(file->path());
    }
    for (auto& path : unlisted)
        std::filesystem::remove(path, error);
}

void BackgroundStore::write()
{
    PropertyListArray tasks;
    for (auto& [identifier, entry] : entries_)
        tasks.emplace_back(encode(entry));
    auto text = propertyListXML(PropertyListDictionary{{"tasks", std::move(tasks)}});
    auto written = text
        ? writeFileAtomically(URL::fileURL(directory_ + "tasks.plist"), *text, {.permissions = 0600})
        : Result<void>(std::unexpected(text.error()));
    if (!written)
        log().error("The list of a background session's tasks is not kept: "
                    + written.error().localizedDescription());
}

std::vector<BackgroundStore::Entry> BackgroundStore::entries()
{
    std::lock_guard lock(mutex_);
    std::vector<Entry> result;
    for (auto& [identifier, entry] : entries_)
        result.push_back(entry);
    return result;
}

void BackgroundStore::put(const Entry& entry)
{
    std::lock_guard lock(mutex_);
    entries_.insert_or_assign(entry.identifier, entry);
    write();
}

void BackgroundStore::remove(std::size_t identifier)
{
    std::lock_guard lock(mutex_);
    if (entries_.erase(identifier) > 0)
        write();
}

void BackgroundStore::describe(std::size_t identifier, const std::string& description)
{
    std::lock_guard lock(mutex_);
    auto found = entries_.find(identifier);
    if (found == entries_.end())
        return; // it has ended
    found->second.description = description;
    write();
}

std::string BackgroundStore::partialPath(std::size_t identifier) const
{
    return directory_ + std::to_string(identifier) + ".part";
}

std::optional<std::string> encodeResumeData(const ResumeData& data)
{
    PropertyListDictionary list{
        {"kind", "zelk download"},
        {"request", encode(data.request)},
        {"path", URL::fileURL(data.path).absoluteString()},
        {"validator", data.validator},
        {"source", data.source},
    };
    if (data.total)
        list.emplace("total", *data.total);
    auto text = propertyListXML(list);
    return text ? std::optional(*text) : std::nullopt;
}

std::optional<ResumeData> decodeResumeData(const std::string& text)
{
    auto list = parsePropertyList(text);
    if (!list || read<std::string>(*list, "kind") != "zelk download")
        return std::nullopt;
    auto* request = list->find("request");
    auto decoded = request ? decode(*request) : std::nullopt;
    auto file = URL::parse(read<std::string>(*list, "path").value_or(""));
    // Only a file of ours: whoever keeps the data might have changed it.
    bool isOurs =
        file && file->isFileURL() && file->path() == downloadDirectory() + file->lastPathComponent();
    if (!decoded || !file)
        return std::nullopt;
    return ResumeData{
        .request = *decoded,
        .path = isOurs ? file->path() : std::string(),
        .validator = read<std::string>(*list, "validator").value_or(""),
        .source = read<std::string>(*list, "source").value_or(""),
        .total = read<std::int64_t>(*list, "total"),
    };
}

} // namespace platform

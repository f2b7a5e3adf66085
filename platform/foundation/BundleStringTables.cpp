// SPDX-License-Identifier: MIT
#include "platform/foundation/BundleStringTables_p.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Logger.h"
#include "platform/foundation/PreferredLanguagesOverride.h"

#include <mutex>
#include <utility>

namespace platform {

namespace {

struct LoadedTable {
    std::shared_ptr<const StringTable> table;
    std::string complaint; // empty when there is nothing to say
};

// The file of `table` that is to be shown, by its path in the resources.
std::optional<URL> fileOf(const Bundle& bundle, std::string_view table)
{
    if (table.contains('/'))
        return std::nullopt;
    std::string name(table);
    if (auto file = bundle.urlForResource(name, "strings"))
        return file;
    auto localizations = bundle.preferredLocalizations();
    auto development = bundle.developmentLocalization();
    localizations.push_back(development);
    for (auto& localization : localizations) {
        if (auto file = bundle.urlForResource(localization + ".lproj/" + name, "strings"))
            return file;
        if (localization != development)
            continue;
        if (auto file = bundle.urlForResource("Base.lproj/" + name, "strings"))
            return file;
    }
    return std::nullopt;
}

LoadedTable load(const Bundle& bundle, std::string_view name)
{
    auto file = fileOf(bundle, name);
    if (!file)
        return {.table = std::make_shared<const StringTable>(), .complaint = {}};
    auto place = file->deletingLastPathComponent().lastPathComponent() + "/" + file->lastPathComponent();
    auto parsed = StringTable::read(*file);
    if (!parsed)
        return {.table = std::make_shared<const StringTable>(),
                .complaint = place + ": " + parsed.error().localizedDescription()};
    LoadedTable result{.table = std::make_shared<const StringTable>(std::move(parsed->table)),
                       .complaint = {}};
    if (auto& faults = parsed->diagnostics; !faults.empty())
        result.complaint = place + ":" + std::to_string(faults[0].line) + ": " + faults[0].message
            + (faults.size() > 1 ? " (and " + std::to_string(faults.size() - 1) + " more faults)" : "");
    return result;
}

std::optional<std::string> textIn(const StringTable& table, std::string_view key)
{
    auto* text = table.find(key);
    return text ? std::optional(*text) : std::nullopt;
}

} // namespace

std::optional<std::string> BundleStringTables::find(const Bundle& bundle, std::string_view table,
                                                    std::string_view key)
{
    auto generation = localizationLanguagesGeneration();
    {
        std::shared_lock lock(mutex_);
        auto found = tables_.find(table);
        if (generation_ == generation && found != tables_.end())
            return textIn(*found->second, key);
    }
    auto loaded = load(bundle, table);
    if (keep(table, loaded.table, generation) && !loaded.complaint.empty())
        Logger("org.zelk.platform", "bundle").error(loaded.complaint);
    return textIn(*loaded.table, key);
}

bool BundleStringTables::keep(std::string_view name, std::shared_ptr<const StringTable> table,
                              std::uint64_t generation)
{
    std::unique_lock lock(mutex_);
    if (generation_ > generation)
        return false;
    if (generation_ < generation)
        tables_.clear();
    generation_ = generation;
    return tables_.try_emplace(std::string(name), std::move(table)).second;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/StringTable.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <shared_mutex>
#include <string>
#include <string_view>

namespace platform {

class Bundle;

// The string tables of a bundle that were read so far. Owned by the bundle. Any thread.
class BundleStringTables {
public:
    // The text of `key`; nothing when the table has none. `bundle` is the owner.
    std::optional<std::string> find(const Bundle& bundle, std::string_view table, std::string_view key);

private:
    // Keeps `table`, unless the languages have changed since or another thread was faster. Gives whether it did.
    bool keep(std::string_view name, std::shared_ptr<const StringTable> table, std::uint64_t generation);

    std::shared_mutex mutex_;
    // guarded by mutex_
    std::map<std::string, std::shared_ptr<const StringTable>, std::less<>> tables_;
    std::uint64_t generation_ = 0; // of the user's languages that the tables were chosen for
};

} // namespace platform

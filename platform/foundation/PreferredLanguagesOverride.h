// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// Makes bundles choose their localizations for other languages than the user's (BCP 47 tags, best first) for the
// lifetime of the object: for tests, and for programs with a language setting of their own. Overrides nest. Texts
// that somebody keeps stay as they are. Any thread.
class PreferredLanguagesOverride {
public:
    explicit PreferredLanguagesOverride(std::vector<std::string> languages);
    ~PreferredLanguagesOverride();
    // Its lifetime is its meaning: a copy would end the override twice.
    PreferredLanguagesOverride(const PreferredLanguagesOverride&) = delete;
    PreferredLanguagesOverride& operator=(const PreferredLanguagesOverride&) = delete;

private:
    std::optional<std::vector<std::string>> previous_;
};

// The languages that localizations are chosen for: the innermost override's, else the user's.
std::vector<std::string> localizationLanguages();
// Changes whenever localizationLanguages() may have changed. Cheap.
std::uint64_t localizationLanguagesGeneration();

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Those of `localizations` that a reader of `languages` (best first) is to be shown, best first: of the first
// language that has any in its own script. Exact matches go first, then the nearest region: "pt-BR" takes
// "pt-BR", "pt", "pt-PT"; "es-MX" takes "es-419" before "es"; "zh-TW" and "zh-HK" take "zh-Hant", not
// "zh-Hans"; "no" takes "nb". Names may use hyphens or underscores; what is no language tag matches itself only.
// Empty when nothing fits.
std::vector<std::string> matchLocalizations(std::span<const std::string> localizations,
                                            std::span<const std::string> languages);

} // namespace platform

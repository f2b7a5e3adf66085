// SPDX-License-Identifier: MIT
// Comparing versions is an order, whatever they are made of, and zeros at the end do not count.
#include "kit/foundation/compareAppVersions.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

using namespace platform;
using namespace zelk;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // Three versions, one a line.
    std::string_view text(reinterpret_cast<const char*>(data), size);
    std::string_view versions[3];
    for (auto& version : versions) {
        auto end = std::min(text.find('\n'), text.size());
        version = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    auto& [a, b, c] = versions;
    auto ab = static_cast<int>(compareAppVersions(a, b));
    auto bc = static_cast<int>(compareAppVersions(b, c));
    auto ac = static_cast<int>(compareAppVersions(a, c));
    precondition(compareAppVersions(a, a) == ComparisonResult::orderedSame, "a version differs from itself");
    precondition(static_cast<int>(compareAppVersions(b, a)) == -ab, "the order depends on the side");
    precondition(ab != bc || ac == ab, "the order is not transitive");
    auto longer = std::string(a) + ".0.x.+0.";
    precondition(compareAppVersions(longer, b) == compareAppVersions(a, b), "zeros and words count");
    return 0;
}

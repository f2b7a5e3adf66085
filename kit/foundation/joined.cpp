// SPDX-License-Identifier: MIT
#include "kit/foundation/joined.h"

#include "platform/foundation/NSMutableAttributedString.h"

namespace zelk {

using namespace platform;

NSAttributedString joined(std::span<const NSAttributedString> texts, std::string_view separator)
{
    NSMutableAttributedString all;
    const String between(separator);
    for (std::size_t at = 0; at < texts.size(); ++at) {
        if (at > 0) {
            auto style = all.isEmpty() ? TextAttributes() : all.attributes(all.range().end() - 1).attributes;
            all.append(NSAttributedString(between, style));
        }
        all.append(texts[at]);
    }
    return all;
}

} // namespace zelk

// SPDX-License-Identifier: MIT
#include "kit/foundation/attributedStringFromContentsOf.h"

namespace zelk {

using namespace platform;

Result<NSAttributedString> attributedStringFromContentsOf(const URL& url, NSDocumentType documentType)
{
    return readAttributedString(url, documentType);
}

} // namespace zelk

// SPDX-License-Identifier: MIT
#include "kit/foundation/zelkKitLocalized.h"

#include "kit/foundation/ZelkKitBundle.h"
#include "kit/foundation/localized.h"

namespace zelk {

std::string zelkKitLocalized(std::string_view key)
{
    return localized(key, *zelkKitBundle(), "Zelk-Localizable");
}

} // namespace zelk

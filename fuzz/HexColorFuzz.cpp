// SPDX-License-Identifier: MIT
// Hexadecimal colours of any bytes: whatever is read can be written, and is read back as it was.
#include "kit/theme/colorFromHex.h"
#include "kit/theme/hexString.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    auto color = zelk::colorFromHex(std::string_view(reinterpret_cast<const char*>(bytes), size));
    if (!color)
        return 0;
    auto text = zelk::hexString(*color);
    if (!text || text->size() != 8 || zelk::colorFromHex(*text) != color)
        std::abort();
    return 0;
}

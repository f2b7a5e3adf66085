// SPDX-License-Identifier: MIT
#include "platform/network/URLCacheKey_p.h"

#include <array>
#include <cstdint>
#include <nettle/sha2.h>

namespace platform {

std::string urlCacheKey(const URLRequest& request)
{
    if (request.httpMethod != "GET")
        return {};
    const auto& text = request.url.absoluteString();
    return text.substr(0, text.find('#'));
}

std::string urlCacheDigest(std::string_view text)
{
    constexpr std::string_view digits = "0123456789abcdef";
    sha256_ctx context{};
    ::sha256_init(&context);
    ::sha256_update(&context, text.size(), reinterpret_cast<const std::uint8_t*>(text.data()));
    std::array<std::uint8_t, 20> hash{}; // of 32 bytes
    ::sha256_digest(&context, hash.size(), hash.data());
    std::string result;
    for (auto byte : hash) {
        result += digits[byte >> 4];
        result += digits[byte & 15];
    }
    return result;
}

} // namespace platform

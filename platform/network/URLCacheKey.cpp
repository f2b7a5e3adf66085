// SPDX-License-Identifier: MIT
#include "platform/network/URLCacheKey_p.h"

#include "platform/foundation/Precondition.h"

#include <array>
#include <openssl/evp.h>
#include <span>

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
    constexpr std::size_t byteCount = 20; // of 32
    std::array<unsigned char, EVP_MAX_MD_SIZE> hash{};
    int isHashed = ::EVP_Digest(text.data(), text.size(), hash.data(), nullptr, ::EVP_sha256(), nullptr);
    precondition(isHashed == 1, "there is no memory for a digest");
    std::string result;
    for (auto byte : std::span(hash).first(byteCount)) {
        result += digits[byte >> 4];
        result += digits[byte & 15];
    }
    return result;
}

} // namespace platform

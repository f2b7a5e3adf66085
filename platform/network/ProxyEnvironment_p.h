// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

struct ProxyAddress {
    enum class Kind { http, socks5 } kind = Kind::http;
    std::string host;
    std::uint16_t port = 0;
    // Percent-decoded.
    std::string user;
    std::string password;

    bool operator==(const ProxyAddress&) const = default;
};

using EnvironmentReader = std::function<std::optional<std::string>(const std::string& name)>;

// The proxy that the environment names for loads of `scheme` from `host`: http_proxy (in lower case only: a web server
// sets HTTP_PROXY from what strangers send), https_proxy, all_proxy, less the hosts of no_proxy. Nothing when there is none;
// one that cannot be understood counts as none.
std::optional<ProxyAddress> proxyFromEnvironment(std::string_view scheme, std::string_view host,
                                                 const EnvironmentReader& environment);

} // namespace platform

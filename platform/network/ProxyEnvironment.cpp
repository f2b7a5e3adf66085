// SPDX-License-Identifier: MIT
#include "platform/network/ProxyEnvironment_p.h"

#include <QtCore/QUrl>

namespace platform {

namespace {

std::optional<std::string> read(const EnvironmentReader& environment, const std::string& name)
{
    auto value = environment(name);
    return value && !value->empty() ? value : std::nullopt;
}

std::optional<std::string> readEither(const EnvironmentReader& environment, const std::string& lower,
                                      const std::string& upper)
{
    auto value = read(environment, lower);
    return value ? value : read(environment, upper);
}

// "example.org" and ".example.org" stand for the host and all below it, "*" for every host.
bool isExcepted(std::string_view host, std::string_view list)
{
    while (!list.empty()) {
        auto end = list.find_first_of(", ");
        auto entry = list.substr(0, end);
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
        if (entry == "*")
            return true;
        if (entry.starts_with('.'))
            entry.remove_prefix(1);
        if (entry.empty() || !host.ends_with(entry))
            continue;
        if (host.size() == entry.size() || host[host.size() - entry.size() - 1] == '.')
            return true;
    }
    return false;
}

} // namespace

std::optional<ProxyAddress> proxyFromEnvironment(std::string_view scheme, std::string_view host,
                                                 const EnvironmentReader& environment)
{
    if (isExcepted(host, readEither(environment, "no_proxy", "NO_PROXY").value_or("")))
        return std::nullopt;
    auto text = scheme == "https" ? readEither(environment, "https_proxy", "HTTPS_PROXY")
                                  : read(environment, "http_proxy");
    if (!text)
        text = readEither(environment, "all_proxy", "ALL_PROXY");
    if (!text)
        return std::nullopt;
    if (text->find("://") == std::string::npos)
        text->insert(0, "http://");

    QUrl url(QString::fromStdString(*text));
    auto kind = url.scheme().toStdString();
    bool isSocks = kind == "socks5" || kind == "socks5h" || kind == "socks";
    if (!url.isValid() || url.host().isEmpty() || (!isSocks && kind != "http"))
        return std::nullopt;
    return ProxyAddress{
        .kind = isSocks ? ProxyAddress::Kind::socks5 : ProxyAddress::Kind::http,
        .host = url.host().toStdString(),
        .port = static_cast<std::uint16_t>(url.port(isSocks ? 1080 : 80)),
        .user = url.userName(QUrl::FullyDecoded).toStdString(),
        .password = url.password(QUrl::FullyDecoded).toStdString(),
    };
}

} // namespace platform

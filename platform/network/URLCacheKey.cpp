// SPDX-License-Identifier: MIT
#include "platform/network/URLCacheKey_p.h"

#include <QtCore/QCryptographicHash>

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
    auto bytes = QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size()));
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().first(40).toStdString();
}

} // namespace platform

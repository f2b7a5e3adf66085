// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QList>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QSslError>

#include <optional>

namespace platform {

// What the library's error is in NSURLErrorDomain; nothing for those that only repeat the status of an answer whose
// head has come. `status` is 0 when none has.
std::optional<long> transferErrorCode(QNetworkReply::NetworkError error, int status);

long certificateErrorCode(const QList<QSslError>& errors);

} // namespace platform

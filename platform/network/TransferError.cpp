// SPDX-License-Identifier: MIT
#include "platform/network/TransferError_p.h"

#include "platform/network/NSURLErrorCodes.h"

#include <QtNetwork/QNetworkInterface>

#include <algorithm>

namespace platform {

namespace {

// Whether no interface leads anywhere but to this machine.
bool isOffline()
{
    auto leadsAway = [](const QNetworkInterface& interface) {
        auto flags = interface.flags();
        return flags.testFlag(QNetworkInterface::IsRunning) && !flags.testFlag(QNetworkInterface::IsLoopBack)
            && !interface.addressEntries().isEmpty();
    };
    return std::ranges::none_of(QNetworkInterface::allInterfaces(), leadsAway);
}

} // namespace

std::optional<long> transferErrorCode(QNetworkReply::NetworkError error, int status)
{
    using Reply = QNetworkReply;
    switch (error) {
    case Reply::NoError:
        return std::nullopt;
    case Reply::ConnectionRefusedError:
    case Reply::ProxyConnectionRefusedError:
    case Reply::ProxyConnectionClosedError:
        return NSURLErrorCannotConnectToHost;
    case Reply::HostNotFoundError:
    case Reply::ProxyNotFoundError:
        return isOffline() ? NSURLErrorNotConnectedToInternet : NSURLErrorCannotFindHost;
    case Reply::TimeoutError:
    case Reply::ProxyTimeoutError:
        return NSURLErrorTimedOut;
    case Reply::OperationCanceledError:
        return NSURLErrorCancelled;
    case Reply::SslHandshakeFailedError:
        return NSURLErrorSecureConnectionFailed;
    case Reply::TemporaryNetworkFailureError:
    case Reply::NetworkSessionFailedError:
        return NSURLErrorNotConnectedToInternet;
    case Reply::UnknownNetworkError:
        return status == 0 && isOffline() ? NSURLErrorNotConnectedToInternet
                                          : NSURLErrorNetworkConnectionLost;
    case Reply::ProtocolUnknownError:
    case Reply::ProtocolFailure:
        return NSURLErrorCannotParseResponse;
    case Reply::UnknownContentError:
        if (status < 400)
            return NSURLErrorCannotDecodeRawData;
        return std::nullopt;
    case Reply::RemoteHostClosedError:
        return NSURLErrorNetworkConnectionLost;
    default:
        if (status < 400)
            return status == 0 ? NSURLErrorCannotConnectToHost : NSURLErrorNetworkConnectionLost;
        return std::nullopt;
    }
}

long certificateErrorCode(const QList<QSslError>& errors)
{
    auto isAboutTime = [](const QSslError& error) {
        return error.error() == QSslError::CertificateExpired
            || error.error() == QSslError::CertificateNotYetValid;
    };
    bool isTimeOnly = !errors.isEmpty() && std::ranges::all_of(errors, isAboutTime);
    return isTimeOnly ? NSURLErrorServerCertificateHasBadDate : NSURLErrorServerCertificateUntrusted;
}

} // namespace platform

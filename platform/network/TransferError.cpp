// SPDX-License-Identifier: MIT
#include "platform/network/TransferError_p.h"

#include "platform/network/NSURLErrorCodes.h"

#include <cerrno>
#include <ifaddrs.h>
#include <net/if.h>
#include <sys/socket.h>

namespace platform {

namespace {

// Whether no interface leads anywhere but to this machine.
bool isOffline()
{
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0)
        return false;
    bool leadsAway = false;
    for (auto* entry = first; entry; entry = entry->ifa_next) {
        bool isAddress = entry->ifa_addr
            && (entry->ifa_addr->sa_family == AF_INET || entry->ifa_addr->sa_family == AF_INET6);
        leadsAway = leadsAway
            || (isAddress && (entry->ifa_flags & IFF_RUNNING) != 0 && (entry->ifa_flags & IFF_LOOPBACK) == 0);
    }
    ::freeifaddrs(first);
    return !leadsAway;
}

// Whether the host was out of reach, rather than unwilling.
bool hasNoWay(CURL* handle)
{
    long reason = 0;
    ::curl_easy_getinfo(handle, CURLINFO_OS_ERRNO, &reason);
    return reason == ENETUNREACH || reason == EHOSTUNREACH || reason == ENETDOWN;
}

// By the verdict of OpenSSL, whose numbers do not change: 9 and 10 are certificates of another time.
long certificateErrorCode(CURL* handle)
{
    long verdict = 0;
    ::curl_easy_getinfo(handle, CURLINFO_SSL_VERIFYRESULT, &verdict);
    return verdict == 9 || verdict == 10 ? NSURLErrorServerCertificateHasBadDate
                                         : NSURLErrorServerCertificateUntrusted;
}

// Of a connection that broke: within the tunnel's making the proxy has refused.
long breakCode(CURL* handle)
{
    long tunnelStatus = 0;
    ::curl_easy_getinfo(handle, CURLINFO_HTTP_CONNECTCODE, &tunnelStatus);
    return tunnelStatus == 0 || tunnelStatus / 100 == 2 ? NSURLErrorNetworkConnectionLost
                                                        : NSURLErrorCannotConnectToHost;
}

} // namespace

long transferErrorCode(CURL* handle, CURLcode failure)
{
    switch (failure) {
    case CURLE_URL_MALFORMAT:
    case CURLE_BAD_FUNCTION_ARGUMENT:
        return NSURLErrorBadURL;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return isOffline() ? NSURLErrorNotConnectedToInternet : NSURLErrorCannotFindHost;
    case CURLE_COULDNT_CONNECT:
        return hasNoWay(handle) && isOffline() ? NSURLErrorNotConnectedToInternet
                                               : NSURLErrorCannotConnectToHost;
    case CURLE_PROXY:
        return NSURLErrorCannotConnectToHost;
    case CURLE_OPERATION_TIMEDOUT:
        return NSURLErrorTimedOut;
    case CURLE_PEER_FAILED_VERIFICATION:
        return certificateErrorCode(handle);
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
        return NSURLErrorSecureConnectionFailed;
    case CURLE_BAD_CONTENT_ENCODING:
        return NSURLErrorCannotDecodeRawData;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_UNSUPPORTED_PROTOCOL: // what came is no HTTP that has a head
        return NSURLErrorCannotParseResponse;
    default:
        return breakCode(handle);
    }
}

} // namespace platform

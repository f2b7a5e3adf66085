// SPDX-License-Identifier: MIT
#include "platform/network/URLSessionDelegate.h"

#include "platform/network/DownloadedFile.h"

namespace platform {

URLSessionDelegate::~URLSessionDelegate() = default;

void URLSessionDelegate::urlSessionDidBecomeInvalid(URLSession&, const std::optional<Error>&) { }

void URLSessionDelegate::urlSessionDidFinishEventsForBackgroundURLSession(URLSession&) { }

void URLSessionTaskDelegate::urlSessionTaskWillPerformHTTPRedirection(
    URLSession&, const std::shared_ptr<URLSessionTask>&, const std::shared_ptr<const HTTPURLResponse>&,
    const URLRequest& newRequest, std::function<void(std::optional<URLRequest>)> completion)
{
    completion(newRequest);
}

void URLSessionTaskDelegate::urlSessionTaskDidFinishCollecting(URLSession&,
                                                               const std::shared_ptr<URLSessionTask>&,
                                                               const URLSessionTaskMetrics&)
{
}

void URLSessionTaskDelegate::urlSessionTaskDidComplete(URLSession&, const std::shared_ptr<URLSessionTask>&,
                                                       const std::optional<Error>&)
{
}

void URLSessionDataDelegate::urlSessionDataTaskDidReceiveResponse(
    URLSession&, const std::shared_ptr<URLSessionDataTask>&, const std::shared_ptr<const URLResponse>&,
    std::function<void(ResponseDisposition)> completion)
{
    completion(ResponseDisposition::allow);
}

void URLSessionDataDelegate::urlSessionDataTaskDidReceiveData(URLSession&,
                                                              const std::shared_ptr<URLSessionDataTask>&,
                                                              const std::string&)
{
}

void URLSessionDownloadDelegate::urlSessionDownloadTaskDidResumeAtOffset(
    URLSession&, const std::shared_ptr<URLSessionDownloadTask>&, std::int64_t, std::int64_t)
{
}

void URLSessionDownloadDelegate::urlSessionDownloadTaskDidWriteData(
    URLSession&, const std::shared_ptr<URLSessionDownloadTask>&, std::int64_t, std::int64_t, std::int64_t)
{
}

DownloadedFile::~DownloadedFile() = default;

void URLSessionDownloadDelegate::urlSessionDownloadTaskDidReceiveFile(
    URLSession& session, const std::shared_ptr<URLSessionDownloadTask>& task, DownloadedFile& file)
{
    if (auto location = file.location())
        urlSessionDownloadTaskDidFinishDownloading(session, task, *location);
}

void URLSessionDownloadDelegate::urlSessionDownloadTaskDidFinishDownloading(
    URLSession&, const std::shared_ptr<URLSessionDownloadTask>&, const URL&)
{
}

} // namespace platform

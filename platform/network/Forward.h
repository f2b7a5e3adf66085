// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class DownloadedFile;
class HTTPURLResponse;
class URLCache;
class URLResponse;
class URLSession;
class URLSessionDataDelegate;
class URLSessionDataTask;
class URLSessionDelegate;
class URLSessionDownloadDelegate;
class URLSessionDownloadTask;
class URLSessionTask;
class URLSessionTaskDelegate;
struct URLRequest;
struct URLSessionConfiguration;
struct URLSessionTaskMetrics;
struct URLSessionTaskTransactionMetrics;

} // namespace platform

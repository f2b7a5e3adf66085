// SPDX-License-Identifier: MIT
// Any bytes are a path that survives its URL, and a URL that survives its text, or no URL.
#include "platform/foundation/Precondition.h"
#include "platform/foundation/URL.h"

#include <cstdint>
#include <string>
#include <string_view>

using namespace platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    auto file = URL::fileURL("/" + std::string(bytes));
    precondition(file.path() == "/" + std::string(bytes), "a path changed in its URL");
    precondition(URL::parse(file.absoluteString()) == file, "a file URL is not read back");

    auto url = URL::parse(bytes);
    if (!url)
        return 0;
    precondition(URL::parse(url->absoluteString()) == url, "a URL is not read back");
    for (char c : url->absoluteString())
        precondition(c > ' ' && c < 0x7F, "a URL is not ASCII");
    // these read every part; the sanitizers watch
    url->host();
    url->scheme();
    url->pathExtension();
    url->deletingLastPathComponent();
    precondition(URL::parse(url->appendingPathComponent(bytes).absoluteString()).has_value(),
                 "an appended path broke the URL");
    return 0;
}

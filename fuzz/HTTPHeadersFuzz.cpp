// SPDX-License-Identifier: MIT
// Any header fields make an answer whose every part is what it promises, and lead only where loads may go.
#include "platform/foundation/Precondition.h"
#include "platform/foundation/UTF8.h"
#include "platform/network/HTTPHead_p.h"
#include "platform/network/HTTPMessage_p.h"
#include "platform/network/HTTPURLResponse.h"
#include "platform/network/Redirection_p.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

using namespace platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    HTTPHead head;
    int wholeCount = 0;
    while (!rest.empty()) {
        auto line = rest.substr(0, std::min(rest.find('\n'), rest.size() - 1) + 1);
        rest.remove_prefix(line.size());
        wholeCount += head.take(line) == HTTPHead::Reading::isWhole ? 1 : 0;
    }
    static_cast<void>(head.take("\r\n")); // a field may be waiting for its end
    precondition(wholeCount <= 1, "a head is whole twice");
    auto fields = head.takeFields();
    for (auto& [name, value] : fields)
        precondition(isValidHTTPHeaderField(name, value), "a field is not one");
    static const auto url = *URL::parse("https://example.org/a/b?c");
    HTTPURLResponse response(url, 302, "HTTP/1.1", fields);
    auto name = response.suggestedFilename();
    precondition(!name.empty() && name.size() <= 255 && name != "." && name != ".." && isWellFormedUTF8(name),
                 "a file's name is unfit");
    for (char c : name)
        precondition(static_cast<unsigned char>(c) >= 0x20 && c != '/' && c != 0x7F,
                     "a file's name is unsafe");
    precondition(response.expectedContentLength() >= URLResponseUnknownLength, "a length is negative");

    auto range = parseContentRange(response.value("Content-Range").value_or(""));
    precondition(!range
                     || (range->first >= 0 && range->last >= range->first
                         && (!range->total || *range->total > range->last)),
                 "a range is none");
    auto next = redirection(URLRequest(url), response);
    precondition(!next || !*next || (*next)->url.scheme() == "https",
                 "a secure load leads to an insecure one");
    if (auto tag = strongValidator(fields))
        precondition(isValidHTTPHeaderField("If-Range", *tag), "a validator cannot be sent");
    return 0;
}

// SPDX-License-Identifier: MIT
#include "platform/foundation/TextReadingScope.h"

#include "platform/foundation/Precondition.h"

#include <utility>

namespace platform {

namespace {

thread_local TextReadingScope* innermost = nullptr;

} // namespace

TextReadingScope::TextReadingScope(URL url, std::optional<TextEncoding> encoding)
    : url_(std::move(url))
    , encoding_(encoding)
    , outer_(std::exchange(innermost, this))
{
}

TextReadingScope::~TextReadingScope()
{
    precondition(innermost == this, "text reading scopes end in the reverse order of their beginning");
    innermost = outer_;
}

Result<String> TextReadingScope::read(const URL& url)
{
    auto* scope = innermost;
    while (scope && scope->url_ != url)
        scope = scope->outer_;
    auto decoded = TRY(scope && scope->encoding_ ? readText(url, *scope->encoding_) : readText(url));
    if (scope)
        scope->report_ =
            Report{decoded.encoding, decoded.evidence, decoded.replacements, std::move(decoded.candidates)};
    return std::move(decoded.text);
}

} // namespace platform

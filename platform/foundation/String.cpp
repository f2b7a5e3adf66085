// SPDX-License-Identifier: MIT
#include "platform/foundation/String.h"

#include "platform/foundation/Precondition.h"
#include "platform/foundation/TextReadingScope.h"
#include "platform/foundation/UTF8.h"

#include <cstring>
#include <utility>

namespace platform {

String::String(std::string_view text)
{
    precondition(isWellFormedUTF8(text),
                 "a String is made of bytes that are not UTF-8; decodeText takes any bytes");
    if (text.empty())
        return;
    auto copy = std::make_shared_for_overwrite<char[]>(text.size());
    std::memcpy(copy.get(), text.data(), text.size());
    utf8_ = {copy.get(), text.size()};
    owner_ = std::move(copy);
}

String String::adopting(std::shared_ptr<const void> owner, std::string_view utf8,
                        std::shared_ptr<const TextSurvey> survey)
{
    String string;
    string.owner_ = std::move(owner);
    string.utf8_ = utf8;
    string.survey_ = std::move(survey);
    return string;
}

Result<String> String::contentsOf(const URL& url)
{
    return TextReadingScope::read(url);
}

} // namespace platform

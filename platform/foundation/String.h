// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"

#include <compare>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

// An immutable UTF-8 text with shared storage: copying a gigabyte is one reference count. Always
// well-formed UTF-8; may contain U+0000. Not terminated by a zero byte. A copy may cross threads.
class String {
public:
    String() = default;
    // Copies. Requires: `text` is well-formed UTF-8.
    String(std::string_view text);
    String(const char* text)
        : String(std::string_view(text))
    {
    }
    String(const std::string& text)
        : String(std::string_view(text))
    {
    }

    // Takes bytes that `owner` keeps alive, without copying them. Requires: `utf8` is well-formed UTF-8
    // and never changes while `owner` lives.
    // The survey, if there is one, is of these bytes and travels with them.
    static String adopting(std::shared_ptr<const void> owner, std::string_view utf8,
                           std::shared_ptr<const TextSurvey> survey = nullptr);

    // Reads the whole file as text; its encoding is detected (see TextDecoding.h). The text is exactly
    // the file's, without the byte-order mark. Blocks the calling thread; large files are read and
    // checked on two threads. Errors: NSCocoaErrorDomain, the file-read codes; the user info has the last
    // path component and the reason.
    [[nodiscard]] static Result<String> contentsOf(const URL& url);

    std::string_view utf8() const { return utf8_; }
    std::size_t size() const { return utf8_.size(); } // bytes
    bool isEmpty() const { return utf8_.empty(); }
    std::string toStdString() const { return std::string(utf8_); }
    // What the pass that made this text learned about its lines; null when nobody surveyed it (surveyText
    // does). Texts read from files have one.
    const std::shared_ptr<const TextSurvey>& survey() const { return survey_; }

    // The same storage counts as equal without being compared.
    friend bool operator==(const String& a, const String& b)
    {
        return (a.utf8_.data() == b.utf8_.data() && a.utf8_.size() == b.utf8_.size()) || a.utf8_ == b.utf8_;
    }
    friend std::strong_ordering operator<=>(const String& a, const String& b) { return a.utf8_ <=> b.utf8_; }

private:
    std::shared_ptr<const void> owner_;
    std::string_view utf8_;
    std::shared_ptr<const TextSurvey> survey_;
};

} // namespace platform

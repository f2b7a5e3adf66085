// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/String.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

// Text on its way between programs: the clipboard, and what was selected last. Without a display they serve this
// process only. Main thread only.
class UIPasteboard {
public:
    // Gives the text when somebody pastes, as often as they do, and not at all when nobody does. Called on the main
    // thread until other contents take the place.
    using Provider = std::function<String()>;

    static UIPasteboard& general();
    // The desktop's primary selection, which the middle button pastes. Always of this process only where the desktop has
    // none.
    static UIPasteboard& primarySelection();

    UIPasteboard(const UIPasteboard&) = delete; // one for each of the desktop's
    UIPasteboard& operator=(const UIPasteboard&) = delete;

    // Offers the text. Nothing is copied or converted before somebody pastes, at any size.
    void setString(String text);
    // Offers a text that takes work to make.
    void setProvider(Provider provider);
    // The text offered at present, by whichever program; none when there is none. May wait for that program for as long
    // as the window system lets it.
    std::optional<String> string() const;
    bool hasStrings() const;
    // Offers nothing any more. Another program's offer is withdrawn too.
    void clear();
    // Whether what is offered came from this process.
    bool isOwn() const;

private:
    enum class Kind { general, primarySelection };
    explicit UIPasteboard(Kind kind)
        : kind_(kind)
    {
    }
    ~UIPasteboard() = default;

    // fixed after construction
    const Kind kind_;
    // main thread only
    Provider provider_; // where no window system holds it
};

} // namespace platform

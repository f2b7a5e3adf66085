// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/foundation/NSData.h"
#include "platform/foundation/String.h"
#include "platform/uikit/UIPasteboardItem.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class UIPasteboardContents;

// Things on their way between programs: the clipboard, and what was selected last. Without a display they serve this
// process only. The desktop asks this program whenever somebody pastes, so what is offered lives as long as the program;
// at its end a clipboard manager, where one runs, may take over what has no expiration date and is not local. Main
// thread only.
class UIPasteboard {
public:
    using Provider = UIPasteboardTextProvider;

    static UIPasteboard& general();
    // The desktop's primary selection, which the middle button pastes. Always of this process only where the desktop has
    // none.
    static UIPasteboard& primarySelection();

    UIPasteboard(const UIPasteboard&) = delete; // one for each of the desktop's
    UIPasteboard& operator=(const UIPasteboard&) = delete;

    // Offers the items in place of what was there. Nothing is copied or converted before somebody pastes, at any size, and
    // a mapped file is read only then; one that was cut short meanwhile gives nothing. Other programs see one thing: texts
    // and lists of URLs of several items put together, of all other types the first. Contents whose time is over are
    // withdrawn; whoever asks later gets nothing, even if this program was stopped or the machine slept meanwhile.
    void setItems(std::vector<UIPasteboardItem> items, const UIPasteboardOptions& options = {});
    // Offers the text.
    void setString(String text);
    // Offers a text that takes work to make; the provider is kept until other contents take the place.
    void setProvider(Provider provider);

    // The text offered at present, by whichever program; none when there is none. May wait for that program for as long
    // as the window system lets it.
    std::optional<String> string() const;
    bool hasStrings() const;
    // MIME types that the contents are offered under, by whichever program.
    std::vector<std::string> types() const;
    // The bytes under a type, which may be any that setItems takes; null when there are none. May wait as `string` does.
    std::shared_ptr<const NSData> dataForPasteboardType(std::string_view type) const;

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
    ~UIPasteboard() = delete; // they live as long as the process

    static void withdrawAtEnd();
    std::shared_ptr<const UIPasteboardContents> own() const;
    void withdrawWhenOver(const std::weak_ptr<const UIPasteboardContents>& contents, Date end);

    // fixed after construction
    const Kind kind_;
    // main thread only
    std::shared_ptr<const UIPasteboardContents> contents_; // where no window system holds them
    std::optional<Token> expiration_;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Date.h"
#include "platform/foundation/NSData.h"
#include "platform/foundation/String.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace platform {

// Gives a text when somebody pastes, as often as they do, and not at all when nobody does. Called on the main thread.
using UIPasteboardTextProvider = std::function<String()>;

// What stands under one type of an item. Bytes are not looked at before somebody pastes; none are copied until then.
using UIPasteboardValue = std::variant<String, std::shared_ptr<const NSData>, UIPasteboardTextProvider>;

// One thing on a pasteboard in all its forms, by type: a MIME type, one of the platform's names for such
// ("public.utf8-plain-text", "public.png"), or any other name that two programs have agreed upon, as it stands.
using UIPasteboardItem = std::map<std::string, UIPasteboardValue, std::less<>>;

// The fields have the platform's names.
struct UIPasteboardOptions {
    // When the contents go, whoever asks for them. They go too when this program ends before. Clipboard managers are asked
    // to keep none of them, as of passwords.
    std::optional<Date> UIPasteboardOptionExpirationDate;
    // Whether the contents stay on this machine, and out of the histories that clipboard managers keep, likewise. They go
    // when this program ends.
    bool UIPasteboardOptionLocalOnly = false;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#include "kit/foundation/CommonLocalizations.h"

#include "kit/foundation/zelkKitLocalized.h"

#include "platform/foundation/Precondition.h"

#include <array>
#include <mutex>

namespace zelk {

namespace {

// In the order of the cases.
constexpr std::array<std::string_view, 23> keys = {
    "COMMON_TERMS_CANCEL",       "COMMON_TERMS_DISMISS",   "COMMON_TERMS_AN_ERROR_OCCURRED",
    "COMMON_TERMS_DONE",         "COMMON_TERMS_NEXT",      "COMMON_TERMS_BACK",
    "COMMON_TERMS_DELETE",       "COMMON_TERMS_RETRY",     "COMMON_TERMS_SAVE",
    "COMMON_TERMS_EDIT",         "COMMON_TERMS_DUPLICATE", "COMMON_TERMS_OPEN_SETTINGS",
    "COMMON_TERMS_SPLIT",        "COMMON_TERMS_UNDO",      "COMMON_TERMS_REDO",
    "COMMON_TERMS_SKIP",         "COMMON_TERMS_FINISHING", "COMMON_TERMS_SELECT",
    "COMMON_TERMS_PROJECT_NAME", "COMMON_TERMS_UNTITLED",  "COMMON_TERMS_RENAME",
    "COMMON_TERMS_SUBMIT",
    "COMMON_TERMS_GOBACK", // one word, unlike its neighbours
};
static_assert(keys.size() == static_cast<std::size_t>(CommonLocalizations::goBack) + 1);

std::size_t place(CommonLocalizations term)
{
    auto result = static_cast<std::size_t>(term);
    platform::precondition(result < keys.size(), "there is no such common term");
    return result;
}

struct Memo {
    std::once_flag once;
    std::string text;
};

} // namespace

std::string_view key(CommonLocalizations term)
{
    return keys[place(term)];
}

const std::string& value(CommonLocalizations term)
{
    // Never destroyed: texts are asked for until the very end of the process.
    static auto& memos = *new std::array<Memo, keys.size()>();
    auto& memo = memos[place(term)];
    std::call_once(memo.once, [&] { memo.text = zelkKitLocalized(key(term)); });
    return memo.text;
}

} // namespace zelk

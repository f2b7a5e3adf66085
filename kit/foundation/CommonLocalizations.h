// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace zelk {

// The terms that all screens share. `delete_` has its underscore from the language.
enum class CommonLocalizations {
    cancel,
    dismiss,
    anErrorOccurred,
    done,
    next,
    back,
    delete_,
    retry,
    save,
    edit,
    duplicate,
    openSettings,
    split,
    undo,
    redo,
    skip,
    finishing,
    select,
    projectName,
    untitled,
    rename,
    submit,
    goBack,
};

// Under which the term stands in the kit's string table.
std::string_view key(CommonLocalizations term);

// The term as zelkKitLocalized() has it at the first use of this term; kept for the life of the process, in whatever
// language that was. Made for the main thread, yet safe on any. The reference is valid for ever.
const std::string& value(CommonLocalizations term);

} // namespace zelk

// SPDX-License-Identifier: MIT
#pragma once

#include "kit/foundation/AlertItem.h"
#include "kit/foundation/standardAlert.h"
#include "platform/foundation/Error.h"

#include <string>

namespace zelk {

// An error as something that an alert is shown for.
struct ErrorAlertItem {
    platform::Error error;

    // Its description: errors that read the same count as one.
    std::string id() const { return error.localizedDescription(); }
    platform::Alert alert() const { return standardAlert(error); }
};

static_assert(AlertItem<ErrorAlertItem>);

} // namespace zelk

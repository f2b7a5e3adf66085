// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dispatch/Token.h"
#include "platform/foundation/Date.h"
#include "platform/uikit/Forward.h"

#include <memory>

namespace zelk {

// Moves a progress bar evenly so that it is full when a deadline comes. While the bar is out of sight nothing runs; when it
// comes back it stands where it should by then. Main thread only.
class DeadlineProgress : public std::enable_shared_from_this<DeadlineProgress> {
public:
    // The bar may go before this.
    explicit DeadlineProgress(const std::shared_ptr<platform::UIProgressView>& bar);

    // From where the bar is now, or from its beginning when it is full. A deadline that is past fills it at once; one that is
    // no number is ignored; one that never comes leaves it where it is.
    void setDeadline(platform::Date deadline);

private:
    double progressNow() const;
    void step();

    const std::weak_ptr<platform::UIProgressView> bar_;
    double startProgress_ = 0;
    platform::Date start_, deadline_;
    platform::Token next_;
};

} // namespace zelk

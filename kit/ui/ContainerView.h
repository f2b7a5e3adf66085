// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/AnyCancellable.h"
#include "platform/uikit/UIView.h"

#include <memory>
#include <optional>

namespace zelk {

// Holds an accessory in its middle, 0.8 times as wide as itself, and what feeds it. Main thread only.
class ContainerView : public platform::UIView {
public:
    // As high as the accessory wants to be, with 8 points above and below.
    static std::shared_ptr<ContainerView> make(const std::shared_ptr<platform::UIView>& accessory);

    // Lives as long as the container.
    std::optional<platform::AnyCancellable> cancellable;
};

} // namespace zelk

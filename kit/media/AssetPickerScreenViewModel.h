// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/ObservableObject.h"
#include "platform/combine/PassthroughSubject.h"
#include "platform/combine/Published.h"
#include "platform/combine/Void.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"

#include <functional>

namespace zelk {

// What an asset picker's screen keeps while it is there: who is told of the pick, and that there was one. Main thread only.
class AssetPickerScreenViewModel : public platform::ObservableObject {
public:
    using Handler = std::function<void(platform::Result<platform::URL>)>;

    // Publishes once a pick has been made, after its handler was told.
    platform::PassthroughSubject<platform::Void> didPick;
    platform::Published<Handler> didPickItem{this, nullptr};

    void pick(platform::Result<platform::URL> item)
    {
        auto kept = shared_from_this();
        if (auto handler = didPickItem.get())
            handler(std::move(item));
        didPick.send();
    }
};

} // namespace zelk

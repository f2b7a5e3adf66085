// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/Forward.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

// The colour schemes that places of one host wish to be shown in. Of those that wish for any, the outermost has its way,
// and of equally deep ones the first that was mounted. Main thread only.
class PreferredColorSchemes {
public:
    std::function<void()> onChange; // of preferred()

    std::optional<ColorScheme> preferred() const;
    // `node` takes itself out before it goes.
    void set(const ViewNode& node, std::optional<ColorScheme> scheme);
    void remove(const ViewNode& node);

private:
    struct Wish {
        const ViewNode* node;
        std::optional<ColorScheme> scheme;
    };
    void change(const std::function<void()>& change);

    std::vector<Wish> wishes_;
};

// Written by the host; null outside of one.
struct PreferredColorSchemesKey {
    using Value = std::shared_ptr<PreferredColorSchemes>;
    static Value defaultValue() { return nullptr; }
};

} // namespace platform

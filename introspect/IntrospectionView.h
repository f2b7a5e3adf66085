// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/probes.h"
#include "platform/foundation/UUID.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/UIViewControllerRepresentable.h"

#include <functional>
#include <memory>
#include <variant>

namespace introspect {

// Stands in front of a modified view and hosts its probe. The target that the probe finds is customised at once, and
// again on each update. A renewed description keeps the probe with the id that it was made with.
template <class Target>
struct IntrospectionView : platform::UIViewControllerRepresentable<IntrospectionView<Target>> {
    // What stays while the description is renewed.
    struct TargetCache {
        std::weak_ptr<Target> target; // the one that the probe found
    };
    using Selector = std::function<std::shared_ptr<Target>(platform::UIViewController& probe)>;
    using Customize = std::function<void(Target&)>;

    platform::Binding<std::monostate> _observed = platform::Binding<std::monostate>::constant({});
    platform::UUID id;
    Selector selector;
    Customize customize;

    IntrospectionView(const platform::UUID& identifier, Selector findTarget, Customize customizeTarget)
        : id(identifier)
        , selector(std::move(findTarget))
        , customize(std::move(customizeTarget))
    {
    }

    std::shared_ptr<TargetCache> makeCoordinator() const { return std::make_shared<TargetCache>(); }

    std::shared_ptr<IntrospectionPlatformViewController> makeUIViewController(const auto& context) const
    {
        return makeProbe(id, attempt(context.coordinator));
    }

    void updateUIViewController(IntrospectionPlatformViewController& probe, const auto& context) const
    {
        renewProbe(probe, attempt(context.coordinator));
        auto target = context.coordinator->target.lock();
        // What is found here is not cached: it may be replaced before the probe finds its own.
        if (!target)
            target = selector(probe);
        if (target)
            customize(*target);
    }

    // Functions cannot be compared: every description counts as another and is followed by an update.
    bool operator==(const IntrospectionView&) const = delete;

private:
    IntrospectionAttempt attempt(const std::shared_ptr<TargetCache>& cache) const
    {
        using Outcome = IntrospectionPlatformViewController::Outcome;
        return [cache, find = selector, change = customize](IntrospectionPlatformViewController& probe) {
            const auto target = find(probe);
            if (!target)
                return Outcome::failed;
            cache->target = target;
            change(*target);
            return Outcome::succeeded;
        };
    }
};

} // namespace introspect

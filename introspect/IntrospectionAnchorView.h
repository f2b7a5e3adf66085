// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectionAnchorPlatformViewController.h"
#include "platform/foundation/UUID.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/UIViewControllerRepresentable.h"

#include <memory>
#include <variant>

namespace introspect {

// Stands behind a modified view and hosts its anchor.
struct IntrospectionAnchorView : platform::UIViewControllerRepresentable<IntrospectionAnchorView> {
    platform::Binding<std::monostate> _observed = platform::Binding<std::monostate>::constant({});
    platform::UUID id;

    explicit IntrospectionAnchorView(const platform::UUID& identifier)
        : id(identifier)
    {
    }

    std::shared_ptr<IntrospectionAnchorPlatformViewController>
    makeUIViewController(const auto& /*context*/) const
    {
        return IntrospectionAnchorPlatformViewController::make(id);
    }
    void updateUIViewController(IntrospectionAnchorPlatformViewController&, const auto& /*context*/) const { }

    bool operator==(const IntrospectionAnchorView&) const = default;
};

} // namespace introspect

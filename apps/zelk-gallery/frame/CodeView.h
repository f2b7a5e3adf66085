// SPDX-License-Identifier: MIT
#pragma once

#include "apps/zelk-gallery/frame/CodeLabel.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/UIViewRepresentable.h"

#include <memory>
#include <optional>
#include <string_view>

namespace gallery {

// A piece of C++ in colours, as wide and as high as it is.
struct CodeView : platform::UIViewRepresentable<CodeView> {
    std::string_view code; // outlives the view

    explicit CodeView(std::string_view text)
        : code(text)
    {
    }
    std::shared_ptr<CodeLabel> makeUIView(const auto&) const
    {
        auto label = std::make_shared<CodeLabel>();
        update(*label);
        return label;
    }
    std::optional<platform::CGSize> sizeThatFits(const platform::ProposedSize&, CodeLabel& label) const
    {
        return label.sizeThatFits({});
    }
    void updateUIView(CodeLabel& label, const auto& context) const
    {
        // The label takes the text size from its traits; reading it here has it measured again.
        (void)context.template environment<platform::SizeCategoryKey>();
        (void)context.template environment<platform::TextScaleKey>();
        update(label);
    }
    bool operator==(const CodeView&) const = default;

private:
    void update(CodeLabel& label) const;
};

} // namespace gallery

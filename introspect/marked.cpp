// SPDX-License-Identifier: MIT
#include "introspect/marked.h"

#include "introspect/IntrospectionAnchorView.h"
#include "platform/swiftui/accessibility.h"
#include "platform/swiftui/frame.h"
#include "platform/swiftui/layered.h"

namespace introspect {

platform::AnyView marked(platform::AnyView content, const platform::UUID& id, platform::AnyView probe)
{
    using platform::accessibilityHidden;
    const auto withoutSize = platform::frame({.width = 0, .height = 0});
    return platform::AnyView(
        std::move(content)
        | platform::background(IntrospectionAnchorView(id) | withoutSize | accessibilityHidden())
        | platform::overlay(std::move(probe) | withoutSize | accessibilityHidden()));
}

} // namespace introspect

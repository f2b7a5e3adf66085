// SPDX-License-Identifier: MIT
#include "platform/swiftui/monospacedDigit.h"

#include "platform/graphics/TextLayout.h"

namespace platform {

namespace {

// The digit 1 is the one that is narrower where digits differ.
bool hasEqualDigits(const UIFont& font)
{
    auto width = [&](const char* digits) { return TextLayout(digits, TextStyle{.font = font}).size().width; };
    return width("11111111") == width("00000000");
}

} // namespace

MonospacedDigitModifier::Node::Node(const NodeContext& context, const MonospacedDigitModifier&)
    : EnvironmentWritingModifier<FontKey>::Node(context, {std::nullopt})
{
    refresh();
}

void MonospacedDigitModifier::Node::refresh()
{
    forgetSources();
    auto font = environment<FontKey>().value_or(Font::body());
    if (!hasEqualDigits(font.resolved(environment<SizeCategoryKey>(), environment<TextScaleKey>())))
        font = font.monospaced();
    EnvironmentWritingModifier<FontKey>::Node::updateModifier({font});
}

} // namespace platform

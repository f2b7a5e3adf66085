// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/environment.h"

namespace platform {

// All digits of the content's texts are equally wide, so that a clock does not shake: in the font of the surroundings where
// its digits are, as in most of the desktop's fonts, else in the monospaced one of the same size.
struct MonospacedDigitModifier {
    class Node;
    bool operator==(const MonospacedDigitModifier&) const = default;
};

class MonospacedDigitModifier::Node : public EnvironmentWritingModifier<FontKey>::Node {
public:
    Node(const NodeContext& context, const MonospacedDigitModifier&);
    void refresh() override;

protected:
    void updateModifier(const MonospacedDigitModifier&) { }
};

inline auto monospacedDigit()
{
    return MonospacedDigitModifier{};
}

} // namespace platform

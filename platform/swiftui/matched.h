// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/GroupNode.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace platform {

// Views that take each other's place: where an animated change ends one of them and begins another with the same name, the new
// one starts in the place and size of the old one and moves from there to its own.
//
//     when(isOpen, [] { return Details{} | matched("card"); }, [] { return Thumbnail{} | matched("card"); })
//
// Names hold in one hosting controller; of several views with one name the one that came last counts. The content is laid out
// in its own size from the first and drawn larger or smaller on the way.
struct MatchedModifier {
    std::string name;
    class Node;
    bool operator==(const MatchedModifier&) const = default;
};

class MatchedModifier::Node : public GroupNode {
public:
    Node(const NodeContext& context, const MatchedModifier& modifier);
    ~Node() override;

protected:
    void updateModifier(const MatchedModifier& modifier);
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    struct Places;
    void leave();
    std::optional<CGRect> placeOnScreen() const;

    std::shared_ptr<Places> places_; // of the host
    std::string name_;
    bool isArriving_ = true;
};

inline auto matched(std::string name)
{
    return MatchedModifier{std::move(name)};
}

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "kit/data/CachedAsyncImageModel.h"
#include "platform/swiftui/ModifiedContent.h"

#include <memory>
#include <vector>

namespace zelk {

// Tells a model how large its picture is shown. Changes nothing about the content.
struct CachedAsyncImageModifier {
    std::shared_ptr<CachedAsyncImageModel> model;
    class Node;
    bool operator==(const CachedAsyncImageModifier&) const = default;
};

class CachedAsyncImageModifier::Node : public platform::ModifierNode {
public:
    Node(const platform::NodeContext& context, const CachedAsyncImageModifier& modifier);
    void appendLayoutNodes(std::vector<platform::ViewNode*>& nodes) override;

protected:
    void arrange(platform::CGRect rect, const platform::ProposedSize& proposal) override;
    void updateModifier(const CachedAsyncImageModifier& modifier) { model_ = modifier.model; }

private:
    std::shared_ptr<CachedAsyncImageModel> model_;
};

} // namespace zelk

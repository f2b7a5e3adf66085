// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ChildrenNode.h"

#include <tuple>
#include <utility>

namespace platform {

struct ZStackOptions {
    Alignment alignment;
    bool operator==(const ZStackOptions&) const = default;
};

// The node of views in front of one another, without their types.
class DepthStackNode : public ChildrenNode {
public:
    DepthStackNode(const NodeContext& context, const ZStackOptions& options)
        : ChildrenNode(context)
        , options_(options)
    {
    }
    bool isRigid(Axis axis) const override;
    CGFloat guide(VerticalAlignment alignment, CGSize size) override;

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    void setOptions(const ZStackOptions& options);

private:
    ZStackOptions options_;
};

// Views in front of one another, the last in front: `ZStack{ground, text}`. As large as the largest of them wants to be.
template <View... Views>
struct ZStack {
    ZStackOptions options;
    std::tuple<Views...> views;

    explicit ZStack(Views... each)
        : views(std::move(each)...)
    {
    }
    ZStack(ZStackOptions stackOptions, Views... each)
        : options(stackOptions)
        , views(std::move(each)...)
    {
    }

    class Node final : public TupleChildren<DepthStackNode, Views...> {
    public:
        Node(const NodeContext& context, const ZStack& stack)
            : TupleChildren<DepthStackNode, Views...>(context, stack.views, stack.options)
        {
        }
        void update(const ZStack& stack)
        {
            this->setOptions(stack.options);
            this->updateChildren(stack.views);
        }
    };
    friend bool operator==(const ZStack& a, const ZStack& b)
        requires(std::equality_comparable<Views> && ...)
    = default;
};

} // namespace platform

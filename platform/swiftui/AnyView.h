// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/CompositeNode.h"

#include <concepts>
#include <memory>
#include <typeinfo>
#include <utility>

namespace platform {

// A view of any type. The place keeps its state for as long as views of the same type are described there.
class AnyView {
public:
    template <class V>
        requires(!std::same_as<V, AnyView>) && View<V>
    explicit AnyView(V view)
        : content_(static_cast<const Content*>(new Typed<V>(std::move(view))))
    {
    }

    class Node;
    // Views of different types differ; so do views whose type cannot be compared, unless they are copies.
    friend bool operator==(const AnyView& a, const AnyView& b)
    {
        return a.content_ == b.content_ || (a.hasTypeOf(b) && a.content_->isSame(*b.content_));
    }

private:
    struct Content {
        virtual ~Content() = default;
        virtual const std::type_info& type() const = 0;
        virtual bool isSame(const Content& other) const = 0; // of the same type
        virtual std::unique_ptr<ViewNode> makeNode(const NodeContext& context) const = 0;
        virtual void updateNode(ViewNode& node) const = 0; // made by one of the same type
    };
    template <class V>
    struct Typed final : Content {
        explicit Typed(V contained)
            : view(std::move(contained))
        {
        }
        const std::type_info& type() const override { return typeid(V); }
        bool isSame(const Content& other) const override
        {
            return detail::isSameRecord(view, static_cast<const Typed&>(other).view);
        }
        std::unique_ptr<ViewNode> makeNode(const NodeContext& context) const override
        {
            return platform::makeNode(context, view);
        }
        void updateNode(ViewNode& node) const override { platform::updateNode(node, view); }

        V view;
    };
    bool hasTypeOf(const AnyView& other) const { return content_->type() == other.content_->type(); }

    std::shared_ptr<const Content> content_;
};

class AnyView::Node final : public UnaryNode {
public:
    Node(const NodeContext& context, const AnyView& view)
        : UnaryNode(context)
        , view_(view)
    {
        setChild(view.content_->makeNode(context.below(*this)));
    }
    void update(const AnyView& view)
    {
        if (view == view_)
            return;
        auto former = std::exchange(view_, view);
        if (view.hasTypeOf(former))
            view.content_->updateNode(child());
        else
            replaceChild(view.content_->makeNode(context().below(*this)));
    }
    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }

private:
    AnyView view_;
};

} // namespace platform

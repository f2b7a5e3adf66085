// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/RepresentableNode.h"
#include "platform/swiftui/View.h"
#include "platform/uikit/UIViewController.h"

#include <concepts>
#include <memory>
#include <utility>

namespace platform {

// A declarative view that is a view controller. The record derives from UIViewControllerRepresentable<Itself> and has
//   std::shared_ptr<C> makeUIViewController(const Context&) const
//   void updateUIViewController(C&, const Context&) const
// and may have
//   std::shared_ptr<X> makeCoordinator() const
//   static void dismantleUIViewController(C&, X*)
//
// In this order: coordinator, controller, the controller becomes a child of the hosting controller, its view is inserted
// among the host's subviews, didMove(toParent), update; then an update whenever the description is renewed, whether or
// not it differs, unless the record has ==. At the end: willMove(null), the view and the controller are removed, dismantle,
// and the coordinator is let go.
template <class Record>
struct UIViewControllerRepresentable;

// What needs no type: a controller in the tree.
class ViewControllerNode : public ViewNode {
public:
    using ViewNode::ViewNode;
    ~ViewControllerNode() override;
    void appendPlatformViews(std::vector<std::shared_ptr<UIView>>& views) const override;
    void appendContentViews(std::vector<std::shared_ptr<UIView>>& views) const override
    {
        appendPlatformViews(views);
    }

protected:
    // Makes it a child of the host's controller; `afterwards` runs when its view stands in the tree.
    void adopt(std::shared_ptr<UIViewController> controller, std::function<void()> afterwards);
    void release();
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    std::shared_ptr<UIViewController> controller_;
    std::shared_ptr<bool> isMounted_ = std::make_shared<bool>(true);
    bool isPlaced_ = false;
};

template <class Record>
class ViewControllerRepresentableNode final : public RepresentableNode<Record, ViewControllerNode> {
    using Base = RepresentableNode<Record, ViewControllerNode>;
    using Context = typename Base::Context;

public:
    ViewControllerRepresentableNode(const NodeContext& context, const Record& record)
        : Base(context, record)
    {
        controller_ = this->record().makeUIViewController(this->representableContext());
        this->adopt(controller_, this->updateIfMounted());
    }
    ~ViewControllerRepresentableNode() override
    {
        this->release();
        if constexpr (requires { Record::dismantleUIViewController(*controller_, this->coordinator()); })
            Record::dismantleUIViewController(*controller_, this->coordinator());
    }

private:
    void updateRepresented() override
    {
        this->record().updateUIViewController(*controller_, this->representableContext());
    }

    decltype(std::declval<const Record&>().makeUIViewController(std::declval<const Context&>())) controller_;
};

template <class Record>
struct UIViewControllerRepresentable {
    using Node = ViewControllerRepresentableNode<Record>;
    // Lets a record default its ==, and makes none comparable that does not.
    template <std::same_as<UIViewControllerRepresentable> Base>
    friend bool operator==(const Base&, const Base&)
    {
        return true;
    }
};

} // namespace platform

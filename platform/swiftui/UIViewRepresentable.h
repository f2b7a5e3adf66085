// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/RepresentableNode.h"
#include "platform/swiftui/View.h"

#include <concepts>
#include <memory>
#include <utility>

namespace platform {

// A declarative view that is a platform view. The record derives from UIViewRepresentable<Itself> and has
//   std::shared_ptr<V> makeUIView(const Context&) const
//   void updateUIView(V&, const Context&) const
// and may have
//   std::shared_ptr<X> makeCoordinator() const
//   std::optional<CGSize> sizeThatFits(const ProposedSize&, V&) const
//   static void dismantleUIView(V&, X*)
// In this order: coordinator, view, the view is inserted, update; then as UIViewControllerRepresentable.
template <class Record>
class ViewRepresentableNode final : public RepresentableNode<Record, PlatformViewNode> {
    using Base = RepresentableNode<Record, PlatformViewNode>;
    using Context = typename Base::Context;

public:
    ViewRepresentableNode(const NodeContext& context, const Record& record)
        : Base(context, record)
    {
        view_ = this->record().makeUIView(this->representableContext());
        this->setPlatformView(view_);
        this->updateAfterSync(this->host());
    }
    ~ViewRepresentableNode() override
    {
        if constexpr (requires { Record::dismantleUIView(*view_, this->coordinator()); })
            Record::dismantleUIView(*view_, this->coordinator());
    }

    void refresh() override
    {
        Base::refresh();
        this->invalidateLayout(); // what the view shows may want another size
    }

protected:
    CGSize measure(const ProposedSize& proposal) override
    {
        if constexpr (requires { this->record().sizeThatFits(proposal, *view_); }) {
            if (auto size = this->record().sizeThatFits(proposal, *view_))
                return *size;
        }
        return PlatformViewNode::measure(proposal);
    }

private:
    void updateRepresented() override { this->record().updateUIView(*view_, this->representableContext()); }

    decltype(std::declval<const Record&>().makeUIView(std::declval<const Context&>())) view_;
};

template <class Record>
struct UIViewRepresentable {
    using Node = ViewRepresentableNode<Record>;
    // Lets a record default its ==, and makes none comparable that does not.
    template <std::same_as<UIViewRepresentable> Base>
    friend bool operator==(const Base&, const Base&)
    {
        return true;
    }
};

} // namespace platform

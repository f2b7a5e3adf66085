// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/PlatformViewNode.h"
#include "platform/swiftui/RepresentableContext.h"
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
class ViewRepresentableNode final : public PlatformViewNode {
    using Coordinator = detail::CoordinatorOf<Record>;
    using Context = RepresentableContext<Coordinator>;

public:
    ViewRepresentableNode(const NodeContext& context, const Record& record)
        : PlatformViewNode(context)
        , record_(record)
        , coordinator_(detail::makeCoordinatorOf(record))
    {
        connect();
        view_ = record_.makeUIView(representableContext());
        setPlatformView(view_);
        updateAfterSync();
    }
    ~ViewRepresentableNode() override
    {
        if constexpr (requires { Record::dismantleUIView(*view_, coordinator_.get()); })
            Record::dismantleUIView(*view_, coordinator_.get());
    }

    void update(const Record& record)
    {
        if (detail::isSameRecord(record, record_))
            return;
        record_ = record;
        refresh();
    }
    void refresh() override
    {
        forgetSources();
        connect();
        updateAfterSync();
        invalidateLayout(); // what the view shows may want another size
    }

protected:
    CGSize measure(const ProposedSize& proposal) override
    {
        if constexpr (requires { record_.sizeThatFits(proposal, *view_); }) {
            if (auto size = record_.sizeThatFits(proposal, *view_))
                return *size;
        }
        return PlatformViewNode::measure(proposal);
    }

private:
    Context representableContext() { return {coordinator_, host().transaction(), *this}; }
    void connect() { detail::connectProperties(record_, *this, storage_); }
    void updateAfterSync()
    {
        host().performAfterSync([this, alive = std::weak_ptr(alive_)] {
            if (alive.lock())
                record_.updateUIView(*view_, representableContext());
        });
    }

    Record record_;
    PropertyStorage storage_;
    std::shared_ptr<Coordinator> coordinator_;
    decltype(std::declval<const Record&>().makeUIView(std::declval<const Context&>())) view_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
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

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/AppearanceNode.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/ModalPresenter.h"
#include "platform/swiftui/alert.h"

#include <concepts>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace platform {

// Presents content over the window for as long as the binding holds an item.
template <Identifiable Item>
struct PresentationModifier {
    PresentationKind kind = PresentationKind::sheet;
    Binding<std::optional<Item>> item;
    std::function<AnyView(const Item&)> content;
    std::function<void()> onDismiss;
    class Node;
};

// Of all items: what needs no type.
class PresentationNode : public AppearanceNode {
public:
    PresentationNode(const NodeContext& context, PresentationKind kind);
    ~PresentationNode() override;

protected:
    // The item is there, and is `isSame` as the last one was.
    void want(bool isSame, std::function<AnyView()> make, std::function<void()> clear,
              std::function<void()> onDismiss);
    void wantNothing();
    // The user has ended what was presented and the binding was told: looks at it again.
    virtual void readAfterClosing() = 0;
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    void follow();

    const std::shared_ptr<ModalPresenter> presenter_;
    const std::shared_ptr<bool> isMounted_ = std::make_shared<bool>(true);
    std::optional<ModalPresenter::Wish> wish_;
    std::uint64_t identity_ = 0;
    bool hasBeenSeen_ = false;
};

template <Identifiable Item>
class PresentationModifier<Item>::Node : public PresentationNode {
public:
    Node(const NodeContext& context, const PresentationModifier& modifier)
        : PresentationNode(context, modifier.kind)
        , modifier_(modifier)
    {
        read();
    }
    void refresh() override { read(); }

protected:
    void updateModifier(const PresentationModifier& modifier)
    {
        modifier_ = modifier;
        read();
    }

private:
    using Identity = decltype(detail::identityOf(std::declval<const Item&>()));

    void readAfterClosing() override
    {
        identity_.reset(); // a binding that keeps its item presents it anew
        read();
    }
    void read()
    {
        forgetSources();
        modifier_.item.registerReader(*this);
        auto item = modifier_.item.get();
        if (!item) {
            identity_.reset();
            return wantNothing();
        }
        auto identity = detail::identityOf(*item);
        auto isSame = identity_ && *identity_ == identity;
        identity_ = std::move(identity);
        want(
            isSame, [content = modifier_.content, item = std::move(*item)] { return content(item); },
            [binding = modifier_.item] { binding.set(std::nullopt); }, modifier_.onDismiss);
    }

    PresentationModifier modifier_;
    std::optional<Identity> identity_;
};

namespace detail {

template <Identifiable Item, class Content>
auto presentation(PresentationKind kind, Binding<std::optional<Item>> item, std::function<void()> onDismiss,
                  Content content)
{
    return PresentationModifier<Item>{
        kind, std::move(item),
        [content = std::move(content)](const Item& each) { return AnyView(content(each)); },
        std::move(onDismiss)};
}

} // namespace detail

// The same while a flag is up.
struct FlagPresentationModifier {
    PresentationKind kind = PresentationKind::sheet;
    Binding<bool> isPresented;
    std::function<AnyView()> content;
    std::function<void()> onDismiss;
    class Node;
};

class FlagPresentationModifier::Node : public PresentationNode {
public:
    Node(const NodeContext& context, const FlagPresentationModifier& modifier);
    void refresh() override { read(); }

protected:
    void updateModifier(const FlagPresentationModifier& modifier);

private:
    void readAfterClosing() override;
    void read();

    FlagPresentationModifier modifier_;
    bool wasPresented_ = false;
};

template <class Content>
concept MakesView = requires(const Content& content) {
    { content() } -> View;
};
template <class Content, class Item>
concept MakesViewOf = requires(const Content& content, const Item& item) {
    { content(item) } -> View;
};

// A sheet with `content()` while `isPresented` holds true; the user ends it by Escape, by pressing beside it or by drawing
// it down. Then the flag is lowered, when it has gone; a binding that refuses has it presented again. `onDismiss` is called
// once each time a sheet has gone, whoever ended it. The content has the environment of this place and is described anew
// with it. While something else is presented it waits for its turn. It goes when this place does.
template <MakesView Content>
auto sheet(Binding<bool> isPresented, std::function<void()> onDismiss, Content content)
{
    return FlagPresentationModifier{PresentationKind::sheet, std::move(isPresented),
                                    [content = std::move(content)] { return AnyView(content()); },
                                    std::move(onDismiss)};
}
template <MakesView Content>
auto sheet(Binding<bool> isPresented, Content content)
{
    return sheet(std::move(isPresented), nullptr, std::move(content));
}
// The same for `content(item)` while `item` holds one. Another item with the same identity changes the content; one with
// another identity is presented anew.
template <Identifiable Item, MakesViewOf<Item> Content>
auto sheet(Binding<std::optional<Item>> item, std::function<void()> onDismiss, Content content)
{
    return detail::presentation(PresentationKind::sheet, std::move(item), std::move(onDismiss),
                                std::move(content));
}
template <Identifiable Item, MakesViewOf<Item> Content>
auto sheet(Binding<std::optional<Item>> item, Content content)
{
    return sheet(std::move(item), nullptr, std::move(content));
}

// The same over all of the window. Only Escape ends it, besides the program.
template <MakesView Content>
auto fullScreenCover(Binding<bool> isPresented, std::function<void()> onDismiss, Content content)
{
    return FlagPresentationModifier{PresentationKind::fullScreenCover, std::move(isPresented),
                                    [content = std::move(content)] { return AnyView(content()); },
                                    std::move(onDismiss)};
}
template <MakesView Content>
auto fullScreenCover(Binding<bool> isPresented, Content content)
{
    return fullScreenCover(std::move(isPresented), nullptr, std::move(content));
}
template <Identifiable Item, MakesViewOf<Item> Content>
auto fullScreenCover(Binding<std::optional<Item>> item, std::function<void()> onDismiss, Content content)
{
    return detail::presentation(PresentationKind::fullScreenCover, std::move(item), std::move(onDismiss),
                                std::move(content));
}
template <Identifiable Item, MakesViewOf<Item> Content>
auto fullScreenCover(Binding<std::optional<Item>> item, Content content)
{
    return fullScreenCover(std::move(item), nullptr, std::move(content));
}

// The same in a bubble that points at the modified view and is as large as its content wants to be.
template <MakesView Content>
auto popover(Binding<bool> isPresented, Content content)
{
    return FlagPresentationModifier{PresentationKind::popover, std::move(isPresented),
                                    [content = std::move(content)] { return AnyView(content()); }, nullptr};
}
template <Identifiable Item, MakesViewOf<Item> Content>
auto popover(Binding<std::optional<Item>> item, Content content)
{
    return detail::presentation(PresentationKind::popover, std::move(item), nullptr, std::move(content));
}

// Inside of a presentation: the user cannot end it while `isDisabled`; the program can.
struct InteractiveDismissModifier {
    bool isDisabled = true;
    class Node;
    bool operator==(const InteractiveDismissModifier&) const = default;
};

class InteractiveDismissModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const InteractiveDismissModifier& modifier);
    ~Node() override;
    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }

protected:
    void updateModifier(const InteractiveDismissModifier& modifier);

private:
    const std::shared_ptr<DismissalGuard> guard_; // null outside of a presentation
    bool isForbidding_ = false;
};

inline auto interactiveDismissDisabled(bool isDisabled = true)
{
    return InteractiveDismissModifier{isDisabled};
}

} // namespace platform

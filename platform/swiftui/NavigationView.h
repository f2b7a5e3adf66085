// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/EmptyView.h"
#include "platform/swiftui/UIViewControllerRepresentable.h"
#include "platform/swiftui/environment.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace platform {

class ContentController;
class UINavigationController;
class UISplitViewController;
class UIViewController;

// How a NavigationView shows what it leads to.
enum class NavigationViewStyle {
    automatic, // as columns
    stack,     // one page at a time
    columns,   // its content beside what that leads to, where there is room for both; else as a stack
};
struct NavigationViewStyleKey : environment_keys::Key<NavigationViewStyle, NavigationViewStyle::automatic> {
};
inline auto navigationViewStyle(NavigationViewStyle style)
{
    return environment<NavigationViewStyleKey>(style);
}

// Where the links of a navigation view lead to: the stack of its pages or, beside the content, the column of what it leads
// to. Main thread only.
class NavigationPath {
public:
    explicit NavigationPath(std::weak_ptr<UINavigationController> navigation)
        : navigation_(std::move(navigation))
    {
    }
    // Shows the page that a link in `from` leads to. Nothing when it is shown already, or the navigation view is gone.
    void show(const std::shared_ptr<UIViewController>& page, UIViewController& from);

private:
    friend class NavigationNode;
    std::weak_ptr<UINavigationController> navigation_, detail_; // no detail: nothing is beside the content
};
// Null outside of a navigation view.
struct NavigationPathKey {
    using Value = std::shared_ptr<NavigationPath>;
    static Value defaultValue() { return nullptr; }
};

// Without the types of the content: a navigation controller with the content as its root; for columns inside of a split view
// controller, whose other column is a navigation controller too.
class NavigationNode : public ViewControllerNode {
public:
    // What stands beside the content until something is chosen; none: nothing ever stands beside it.
    NavigationNode(const NodeContext& context, AnyView content, std::optional<AnyView> beside);
    ~NavigationNode() override;
    void refresh() override;

protected:
    void setContent(AnyView content);
    void setBeside(AnyView beside);

private:
    void setDirection();
    void followWidth();

    std::shared_ptr<EnvironmentScope> surroundings_;
    std::shared_ptr<NavigationPath> path_;
    std::shared_ptr<ContentController> root_;
    std::shared_ptr<UINavigationController> navigation_;
    // null for a stack
    std::shared_ptr<UISplitViewController> split_;
    std::shared_ptr<UINavigationController> detail_;
    std::shared_ptr<ContentController> nothingChosen_;
};

// Views one step deeper than each other: its content, and on top of it or beside it, as the style says and the width allows,
// what NavigationLinks in there lead to. A bar shows each page's `navigationTitle` and the way back. The style is settled
// when it comes; what is shown stays when the width changes. Beside it stands `beside` until a link is followed.
template <View Content, View Beside = EmptyView>
struct NavigationView {
    Content content;
    Beside beside;
    explicit NavigationView(Content root, Beside whileNothingIsChosen = {})
        : content(std::move(root))
        , beside(std::move(whileNothingIsChosen))
    {
    }
    class Node final : public NavigationNode {
    public:
        Node(const NodeContext& context, const NavigationView& view)
            : NavigationNode(context, AnyView(view.content), AnyView(view.beside))
        {
        }
        void update(const NavigationView& view)
        {
            setContent(AnyView(view.content));
            setBeside(AnyView(view.beside));
        }
    };
};

// Always one page at a time.
template <View Content>
struct NavigationStack {
    Content content;
    explicit NavigationStack(Content root)
        : content(std::move(root))
    {
    }
    class Node final : public NavigationNode {
    public:
        Node(const NodeContext& context, const NavigationStack& view)
            : NavigationNode(context, AnyView(view.content), std::nullopt)
        {
        }
        void update(const NavigationStack& view) { setContent(AnyView(view.content)); }
    };
};

// The title of the page that the content is, or of the sheet, tab or window that it fills.
struct NavigationTitleModifier {
    std::string title;
    class Node;
    bool operator==(const NavigationTitleModifier&) const = default;
};

class NavigationTitleModifier::Node : public ModifierNode {
public:
    Node(const NodeContext& context, const NavigationTitleModifier& modifier);
    void appendLayoutNodes(std::vector<ViewNode*>& nodes) override { child().appendLayoutNodes(nodes); }

protected:
    void updateModifier(const NavigationTitleModifier& modifier);
};

inline auto navigationTitle(std::string title)
{
    return NavigationTitleModifier{std::move(title)};
}

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/UIViewControllerRepresentable.h"
#include "platform/swiftui/environment.h"

#include <memory>
#include <string>
#include <utility>

namespace platform {

class ContentController;
class UINavigationController;

// How a NavigationView shows what it leads to. Columns need a place of their own and are shown as a stack.
enum class NavigationViewStyle { automatic, stack };
struct NavigationViewStyleKey : environment_keys::Key<NavigationViewStyle, NavigationViewStyle::automatic> {
};
inline auto navigationViewStyle(NavigationViewStyle style)
{
    return environment<NavigationViewStyleKey>(style);
}

// The stack that a place stands in; what links push to. Main thread only.
class NavigationPath {
public:
    explicit NavigationPath(std::weak_ptr<UINavigationController> navigation)
        : navigation_(std::move(navigation))
    {
    }
    std::shared_ptr<UINavigationController> controller() const { return navigation_.lock(); }

private:
    std::weak_ptr<UINavigationController> navigation_;
};
// Null outside of a navigation view.
struct NavigationPathKey {
    using Value = std::shared_ptr<NavigationPath>;
    static Value defaultValue() { return nullptr; }
};

// Without the types of the content: a navigation controller with the content as its root.
class NavigationNode : public ViewControllerNode {
public:
    NavigationNode(const NodeContext& context, AnyView content);
    ~NavigationNode() override;
    void refresh() override;

protected:
    void setContent(AnyView content);

private:
    std::shared_ptr<EnvironmentScope> surroundings_;
    std::shared_ptr<ContentController> root_;
    std::shared_ptr<UINavigationController> navigation_;
};

// Views one step deeper than each other: its content, and on top of it what NavigationLinks in there lead to. A bar shows
// each page's `navigationTitle` and the way back.
template <View Content>
struct NavigationView {
    Content content;
    explicit NavigationView(Content root)
        : content(std::move(root))
    {
    }
    class Node final : public NavigationNode {
    public:
        Node(const NodeContext& context, const NavigationView& view)
            : NavigationNode(context, AnyView(view.content))
        {
        }
        void update(const NavigationView& view) { setContent(AnyView(view.content)); }
    };
};

// The same under its newer name.
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
            : NavigationNode(context, AnyView(view.content))
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

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/ButtonNode.h"
#include "platform/swiftui/ContentController.h"
#include "platform/swiftui/NavigationView.h"
#include "platform/swiftui/Text.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace platform {

// The row of a list that a link stands in; null outside of one.
struct ListRowKey {
    struct Row {
        bool leadsOn = false; // it holds a link, and shows that
    };
    using Value = std::shared_ptr<Row>;
    static Value defaultValue() { return nullptr; }
};

// Without the types of label and destination. While the link is there its page is described anew with it; the page stays
// when the link goes, for rows of a list go when they scroll out of sight.
class NavigationLinkNode : public ButtonNode {
public:
    NavigationLinkNode(const NodeContext& context, std::function<AnyView()> destination);

protected:
    void setDestination(std::function<AnyView()> destination);

private:
    void open();

    const std::shared_ptr<NavigationPath> path_; // null outside of a navigation view
    std::function<AnyView()> destination_;
    std::weak_ptr<ContentController> page_;
};

// Leads one step deeper: `NavigationLink{"Colours", colours}`, `NavigationLink{destination, label}`. In a row of a list all
// of the row leads there. Outside of a navigation view it does nothing.
template <View Destination, View Label = Text>
struct NavigationLink {
    Destination destination;
    Label label;

    NavigationLink(Destination leadsTo, Label content)
        : destination(std::move(leadsTo))
        , label(std::move(content))
    {
    }
    NavigationLink(std::string title, Destination leadsTo)
        requires std::same_as<Label, Text>
        : NavigationLink(std::move(leadsTo), Text{std::move(title)})
    {
    }

    class Node final : public NavigationLinkNode {
    public:
        Node(const NodeContext& context, const NavigationLink& link)
            : NavigationLinkNode(context, makePage(link))
        {
            setContent(makeNode(contentContext(), link.label));
        }
        void update(const NavigationLink& link)
        {
            setDestination(makePage(link));
            updateNode(content(), link.label);
        }

    private:
        static std::function<AnyView()> makePage(const NavigationLink& link)
        {
            return [destination = link.destination] { return AnyView(destination); };
        }
    };
};
template <View Destination>
NavigationLink(const char*, Destination) -> NavigationLink<Destination, Text>;
template <View Destination>
NavigationLink(std::string, Destination) -> NavigationLink<Destination, Text>;

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/ContentViewNode.h"
#include "platform/swiftui/View.h"

#include <memory>
#include <utility>

namespace platform {

class UIScrollView;

// Which ways something goes; an option set.
struct AxisSet {
    unsigned rawValue = 0;
    static const AxisSet horizontal, vertical, both;
    constexpr bool contains(AxisSet other) const { return (rawValue & other.rawValue) == other.rawValue; }
    bool operator==(const AxisSet&) const = default;
};
inline constexpr AxisSet AxisSet::horizontal{1}, AxisSet::vertical{2}, AxisSet::both{3};

struct ScrollViewOptions {
    AxisSet axes = AxisSet::vertical;
    bool showsIndicators = true;
    bool operator==(const ScrollViewOptions&) const = default;
};

// The node of scroll views, without the types of their content.
class ScrollNode : public ContentViewNode {
public:
    ScrollNode(const NodeContext& context, const ScrollViewOptions& options);
    ~ScrollNode() override;
    const std::shared_ptr<UIScrollView>& scrollView() const { return scrollView_; }
    UIView& containerView() const override { return *contentView_; }

protected:
    void setOptions(const ScrollViewOptions& options);
    CGSize measure(const ProposedSize& proposal) override;
    void arrange(CGRect rect, const ProposedSize& proposal) override;

private:
    ProposedSize offerToContent(const ProposedSize& proposal) const;
    void applyOptions();

    ScrollViewOptions options_;
    std::shared_ptr<UIScrollView> scrollView_;
    std::shared_ptr<UIView> contentView_; // apart from the indicators, which are the scroll view's own
    // Right to left:
    bool isAtStart_ = false; // whether it was scrolled to where reading begins
    CGFloat widthSeen_ = 0;  // of the content at the last layout
};

// A window onto content that may be larger; takes all that is offered. On its axes the content is as long as it wants to
// be; across them it is offered the view's own length, and stands in the middle.
template <View Content>
struct ScrollView {
    ScrollViewOptions options;
    Content content;

    explicit ScrollView(Content scrolled)
        : content(std::move(scrolled))
    {
    }
    ScrollView(ScrollViewOptions scrollOptions, Content scrolled)
        : options(scrollOptions)
        , content(std::move(scrolled))
    {
    }

    class Node final : public ScrollNode {
    public:
        Node(const NodeContext& context, const ScrollView& view)
            : ScrollNode(context, view.options)
        {
            setContent(makeNode(contentContext(), view.content));
        }
        void update(const ScrollView& view)
        {
            setOptions(view.options);
            updateNode(content(), view.content);
        }
    };
    friend bool operator==(const ScrollView& a, const ScrollView& b)
        requires std::equality_comparable<Content>
    = default;
};

} // namespace platform

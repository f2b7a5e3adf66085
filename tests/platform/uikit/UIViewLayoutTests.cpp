// SPDX-License-Identifier: MIT
#include "platform/uikit/UIView.h"

#include "platform/foundation/Logger.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using harness::ViewHarness;

class CountingView : public UIView {
public:
    using UIView::UIView;
    void layoutSubviews() override
    {
        ++layouts;
        UIView::layoutSubviews();
        if (onLayout)
            onLayout();
    }
    int layouts = 0;
    std::function<void()> onLayout;
};

TEST(UIViewLayout, lays_out_only_what_is_marked)
{
    ViewHarness harness;
    auto root = std::make_shared<CountingView>();
    std::vector<std::shared_ptr<CountingView>> rows;
    for (int i = 0; i < 100; ++i) {
        rows.push_back(std::make_shared<CountingView>());
        rows.back()->addSubview(std::make_shared<CountingView>());
        root->addSubview(rows.back());
    }
    harness.show(root);
    auto total = [&] {
        int sum = root->layouts;
        for (const auto& row : rows)
            sum += row->layouts + static_cast<CountingView&>(*row->subviews()[0]).layouts;
        return sum;
    };
    EXPECT_EQ(total(), 201) << "each once at first";
    rows[50]->subviews()[0]->setNeedsLayout();
    harness.settle();
    EXPECT_EQ(total(), 202);
    harness.settle();
    EXPECT_EQ(total(), 202);
}

TEST(UIViewLayout, lays_out_many_marks_of_one_turn_once_and_superviews_first)
{
    ViewHarness harness;
    std::string order;
    auto outer = std::make_shared<CountingView>(), inner = std::make_shared<CountingView>();
    outer->addSubview(inner);
    harness.show(outer);
    outer->onLayout = [&] { order += 'o'; };
    inner->onLayout = [&] { order += 'i'; };
    inner->setNeedsLayout();
    inner->setBounds(CGRect::make(0, 0, 10, 10));
    outer->setNeedsLayout();
    inner->setNeedsLayout();
    harness.settle();
    EXPECT_EQ(order, "oi");
}

TEST(UIViewLayout, comes_to_rest_when_a_layout_asks_for_another)
{
    ViewHarness harness;
    auto outer = std::make_shared<CountingView>(), inner = std::make_shared<CountingView>();
    outer->addSubview(inner);
    harness.show(outer);
    outer->layouts = 0;
    // A child that finds its size only when it lays out, as wrapped text does.
    auto height = 10.0;
    inner->onLayout = [&] {
        if (height < 40) {
            height += 10;
            outer->setNeedsLayout();
        }
    };
    outer->onLayout = [&] { inner->setFrame(CGRect::make(0, 0, 100, height)); };
    outer->setNeedsLayout();
    outer->layoutIfNeeded();
    EXPECT_EQ(inner->frame().height(), 40);
    EXPECT_EQ(outer->layouts, 4);
}

TEST(UIViewLayout, reports_views_that_never_come_to_rest_and_goes_on)
{
    auto restless = std::make_shared<CountingView>();
    restless->onLayout = [&] { restless->setNeedsLayout(); };
    int reports = 0;
    LogCapture capture([&](const LogRecord& record) { reports += record.level == LogLevel::error; });
    restless->layoutIfNeeded();
    EXPECT_EQ(reports, 1);
    EXPECT_LT(restless->layouts, 100);
}

TEST(UIViewLayout, goes_up_to_the_superview_that_decides_the_size)
{
    auto outer = std::make_shared<CountingView>(CGRect::make(0, 0, 100, 100));
    auto inner = std::make_shared<CountingView>();
    outer->addSubview(inner);
    outer->layoutIfNeeded();
    outer->onLayout = [&] { inner->setFrame(outer->bounds()); };
    outer->setNeedsLayout();
    inner->layoutIfNeeded();
    EXPECT_EQ(inner->frame(), outer->bounds());
}

TEST(UIViewLayout, survives_a_view_that_removes_itself_while_it_lays_out)
{
    ViewHarness harness;
    auto root = std::make_shared<UIView>();
    auto fleeting = std::make_shared<CountingView>(), after = std::make_shared<CountingView>();
    auto* pointer = fleeting.get();
    fleeting->onLayout = [pointer] { pointer->removeFromSuperview(); };
    root->setSubviews({fleeting, after});
    fleeting.reset();
    harness.show(root);
    EXPECT_EQ(root->subviews().size(), 1u);
    EXPECT_EQ(after->layouts, 1);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "introspect/EntityWalks.h"

#include "platform/uikit/UIView.h"
#include "platform/uikit/UIViewController.h"

#include <gtest/gtest.h>
#include <ranges>

namespace introspect {

using platform::UIView;
using platform::UIViewController;

namespace {

struct Named : UIView {
    explicit Named(std::string given)
        : name(std::move(given))
    {
    }
    std::string name;
};

std::shared_ptr<Named> named(std::string name, std::vector<std::shared_ptr<Named>> subviews = {})
{
    auto view = std::make_shared<Named>(std::move(name));
    for (auto& subview : subviews)
        view->addSubview(subview);
    return view;
}

template <class Walk>
std::string names(const Walk& walk)
{
    std::string all;
    for (const auto& view : walk)
        all += static_cast<const Named&>(*view).name;
    return all;
}

static_assert(std::ranges::input_range<Ancestors<UIView>>);
static_assert(std::ranges::input_range<AllDescendants<UIViewController>>);
static_assert(std::same_as<PlatformEntityBase<Named>, UIView>);
static_assert(!PlatformEntity<platform::NSObject>);

} // namespace

TEST(EntityWalks, DescendantsComeDepthFirstWithoutTheEntityItself)
{
    const auto deep = named("e");
    const auto root = named(
        "r",
        {named("a", {named("b"), named("c", {named("d", {deep})})}), named("f"), named("g", {named("h")})});
    EXPECT_EQ(names(allDescendants(*root)), "abcdefgh");
    EXPECT_EQ(names(allDescendants(*root->subviews()[0])), "bcde"); // and nothing beside it
    EXPECT_EQ(names(allDescendants(*deep)), "");
    const auto from = [&](const UIView& first) { return names(AllDescendants<UIView>(*root, first)); };
    EXPECT_EQ(from(*deep), "efgh"); // on from the middle, as if walked from the start
    EXPECT_EQ(from(*root->subviews()[0]), "abcdefgh");
    EXPECT_EQ(from(*root->subviews()[2]->subviews()[0]), "h");
    EXPECT_EQ(from(*root), "");       // the entity is not below itself
    EXPECT_EQ(from(*named("x")), ""); // nor is a stranger
    EXPECT_EQ(names(ancestors(*deep)), "dcar");
    EXPECT_EQ(names(ancestors(*root)), "");
}

TEST(EntityWalks, AViewIsItsOwnDescendantAndAControllerIsNot)
{
    const auto view = named("i");
    EXPECT_TRUE(isDescendant(*view, *view));
    const auto outer = named("o", {view});
    EXPECT_TRUE(isDescendant(*view, *outer));
    EXPECT_FALSE(isDescendant(*outer, *view));

    std::vector<std::shared_ptr<UIViewController>> all, below, above;
    for (int index = 0; index < 4; ++index)
        all.push_back(std::make_shared<UIViewController>());
    all[0]->addChild(all[1]);
    all[1]->addChild(all[2]);
    all[0]->addChild(all[3]);
    for (const auto& controller : allDescendants(*all[0]))
        below.push_back(controller);
    for (const auto& controller : ancestors(*all[2]))
        above.push_back(controller);
    EXPECT_EQ(below, (std::vector{all[1], all[2], all[3]}));
    EXPECT_EQ(above, (std::vector{all[1], all[0]}));
    EXPECT_TRUE(isDescendant(*all[2], *all[0]));
    EXPECT_FALSE(isDescendant(*all[2], *all[2]) || isDescendant(*all[0], *all[2]));
}

} // namespace introspect

// SPDX-License-Identifier: MIT
#include "introspect/EntityWalks.h"

#include "platform/uikit/UIPresentationController.h"
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

TEST(EntityWalks, WorkOnHierarchiesOfAnyDepth)
{
    auto leaf = named("x");
    std::vector<std::shared_ptr<UIView>> all{leaf};
    for (int depth = 0; depth < 300; ++depth) {
        auto above = named("y", {std::static_pointer_cast<Named>(all.back())});
        all.push_back(above);
    }
    EXPECT_EQ(names(allDescendants(*all.back())).size(), 300u);
    EXPECT_EQ(names(ancestors(*leaf)).size(), 300u);
}

TEST(EntityWalks, ControllersAreWalkedByParentAndChildren)
{
    const auto root = std::make_shared<UIViewController>();
    const auto first = std::make_shared<UIViewController>();
    const auto inner = std::make_shared<UIViewController>();
    const auto second = std::make_shared<UIViewController>();
    root->addChild(first);
    first->addChild(inner);
    root->addChild(second);
    std::vector<std::shared_ptr<UIViewController>> below;
    for (const auto& controller : allDescendants(*root))
        below.push_back(controller);
    EXPECT_EQ(below, (std::vector{first, inner, second}));
    std::vector<std::shared_ptr<UIViewController>> above;
    for (const auto& controller : ancestors(*inner))
        above.push_back(controller);
    EXPECT_EQ(above, (std::vector{first, root}));
}

TEST(EntityWalks, AViewIsItsOwnDescendantAndAControllerIsNot)
{
    const auto inner = named("i");
    const auto outer = named("o", {inner});
    EXPECT_TRUE(isDescendant(*inner, *outer));
    EXPECT_TRUE(isDescendant(*inner, *inner));
    EXPECT_FALSE(isDescendant(*outer, *inner));

    const auto child = std::make_shared<UIViewController>();
    const auto parent = std::make_shared<UIViewController>();
    const auto grandparent = std::make_shared<UIViewController>();
    grandparent->addChild(parent);
    parent->addChild(child);
    EXPECT_TRUE(isDescendant(*child, *parent));
    EXPECT_TRUE(isDescendant(*child, *grandparent));
    EXPECT_FALSE(isDescendant(*child, *child));
    EXPECT_FALSE(isDescendant(*grandparent, *child));
}

TEST(EntityWalks, APresentationControllerStandsAlone)
{
    const auto presented = std::make_shared<UIViewController>();
    const auto presentation = std::make_shared<platform::UIPresentationController>(presented);
    EXPECT_EQ(ancestor(*presentation), nullptr);
    EXPECT_TRUE(descendants(*presentation).empty());
    EXPECT_FALSE(isDescendant(*presentation, *presentation));
}

} // namespace introspect

// SPDX-License-Identifier: MIT
#include "platform/graphics/CGContext.h"
#include "platform/graphics/CIColor.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/UIWindowScene.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Windows = std::vector<std::shared_ptr<UIWindow>>;

std::shared_ptr<UIWindow> makeWindow()
{
    return std::make_shared<UIWindow>(CGRect{{}, {40, 30}});
}

// Those of all scenes, as whoever tints an application collects them.
Windows connectedWindows()
{
    Windows all;
    for (const auto& scene : UIApplication::shared().connectedScenes()) {
        if (auto windowScene = std::dynamic_pointer_cast<UIWindowScene>(scene)) {
            auto windows = windowScene->windows();
            all.insert(all.end(), windows.begin(), windows.end());
        }
    }
    return all;
}

class OtherScene : public UIScene {
public:
    using UIScene::connect;
    using UIScene::disconnect;
};

TEST(WindowSceneTests, shownWindowsAreFoundByScenesInTheOrderOfShowing)
{
    VirtualClock clock;
    auto first = makeWindow(), second = makeWindow(), third = makeWindow();
    auto shared = std::make_shared<UIWindowScene>();
    third->setWindowScene(shared);
    EXPECT_TRUE(connectedWindows().empty()) << "no window is shown yet";
    EXPECT_FALSE(shared->isConnected());

    third->showOffscreen();
    auto other = std::make_shared<OtherScene>();
    other->connect();
    other->connect();
    second->showOffscreen();
    first->setWindowScene(shared);
    first->showOffscreen();
    EXPECT_EQ(UIApplication::shared().connectedScenes().size(), 3U) << "once each";
    EXPECT_EQ(connectedWindows(), (Windows{third, first, second})) << "scene by scene";
    EXPECT_NE(second->windowScene(), shared) << "a scene of its own";

    first->setWindowScene(second->windowScene());
    EXPECT_EQ(connectedWindows(), (Windows{third, second, first}));
    third->close();
    EXPECT_FALSE(shared->isConnected()) << "its last window is closed";
    EXPECT_EQ(third->windowScene(), nullptr);
    second.reset(); // gone without having been closed
    EXPECT_EQ(connectedWindows(), Windows{first});
    EXPECT_DEATH(first->setWindowScene(nullptr), "taken out of its scene");
    first->close();
    other->disconnect();
    EXPECT_TRUE(UIApplication::shared().connectedScenes().empty());
}

// Draws the tint, and keeps what a colour was each time that it was asked something.
class Reader : public UIView {
public:
    using UIView::UIView;
    std::vector<double> read;
    int tintChanges = 0;
    void tintColorDidChange() override { ++tintChanges; }
    void layoutSubviews() override { note(); }
    void traitCollectionDidChange(const UITraitCollection&) override { note(); }
    void draw(CGContext& context, CGRect) override
    {
        note();
        context.fill(bounds(), tintColor());
    }

private:
    void note() { read.push_back(CIColor(UIColor::systemBackground()).red()); }
};

TEST(WindowSceneTests, viewsAreDrawnInTheWindowsTintAndReadColorsInTheirOwnAppearance)
{
    harness::ViewHarness harness({40, 20});
    auto reader = std::make_shared<Reader>(), own = std::make_shared<Reader>(CGRect{{20, 0}, {20, 20}});
    own->setTintColor(UIColor::green());
    reader->addSubview(own);
    harness.show(reader);
    harness.snapshot();
    reader->tintChanges = own->tintChanges = 0;
    harness.window().setTintColor(UIColor::red());
    harness.window().setTintColor(UIColor::red());
    EXPECT_EQ(reader->tintChanges, 1);
    EXPECT_EQ(own->tintChanges, 0);
    EXPECT_EQ(harness::colorAt(harness.snapshot(), {10, 10}), "ff0000");
    EXPECT_EQ(harness::colorAt(harness.snapshot(), {30, 10}), "00ff00");

    reader->read.clear();
    harness.window().setOverrideUserInterfaceStyle(UIUserInterfaceStyle::dark);
    harness.settle();
    harness.snapshot();
    EXPECT_EQ(reader->read, (std::vector<double>{0, 0, 0})) << "told, laid out, drawn";
    EXPECT_EQ(CIColor(UIColor::systemBackground()).red(), 1) << "outside of views it is the process's";
}

} // namespace
} // namespace platform

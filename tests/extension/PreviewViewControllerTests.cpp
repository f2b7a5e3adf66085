// SPDX-License-Identifier: MIT
#include "extension/PreviewViewController.h"

#include "platform/dispatch/VirtualClock.h"
#include "platform/uikit/NSLayoutConstraint.h"
#include "platform/uikit/UITextView.h"
#include "platform/uikit/UIView.h"
#include "platform/uikit/UIWindow.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace preview {
namespace {

using namespace platform;

std::shared_ptr<UITextView> findTextView(const std::shared_ptr<UIView>& view)
{
    if (auto found = std::dynamic_pointer_cast<UITextView>(view))
        return found;
    for (auto& subview : view->subviews()) {
        if (auto found = findTextView(subview))
            return found;
    }
    return nullptr;
}

// A controller that was asked for a preview, in a window of no display, with its completion calls counted.
struct Preview {
    explicit Preview(const std::string& content) { show(URL::fileURL(folder.file("film.srt", content))); }
    explicit Preview(const URL& url) { show(url); }

    void show(const URL& url)
    {
        controller->preparePreviewOfFile(url, [this](std::optional<NSError> result) {
            ++completions;
            error = result;
        });
        window->setRootViewController(controller);
        window->showOffscreen();
        window->layoutNow();
        clock.settle();
    }

    ::tests::TemporaryDirectory folder;
    VirtualClock clock;
    std::shared_ptr<PreviewViewController> controller = std::make_shared<PreviewViewController>();
    std::shared_ptr<UIWindow> window = std::make_shared<UIWindow>(CGRect::make(0, 0, 400, 300));
    int completions = 0;
    std::optional<NSError> error;
};

TEST(PreviewViewController, aReadableFileShowsItsExactTextReadOnlySelectableInTheMonospacedBodyFont)
{
    const std::string contents[] = {"", "1\r\n00:00:01,000 --> 00:00:02,000\r\n<i>Hi</i>\r\n", "\n\n\n",
                                    std::string("a\0b", 3)};
    for (auto& content : contents) {
        Preview preview(content);
        EXPECT_EQ(preview.completions, 1);
        EXPECT_FALSE(preview.error);
        auto textView = findTextView(preview.controller->view());
        ASSERT_TRUE(textView);
        EXPECT_EQ(textView->text(), String(content));
        EXPECT_FALSE(textView->isEditable());
        EXPECT_TRUE(textView->isSelectable());
        EXPECT_EQ(textView->font(),
                  UIFont::preferredFont(FontTextStyle::body, UIContentSizeCategory::large, 1,
                                        FontDesign::monospaced));
    }
}

TEST(PreviewViewController, aReadErrorIsHandedBackUnchangedOnceAndNothingIsShown)
{
    ::tests::TemporaryDirectory folder;
    for (auto& url : {URL::fileURL(folder.path("gone.srt")),
                      URL::fileURL(folder.file("bad.srt", std::string("caf\xE9\0lait", 9)))}) {
        auto expected = String::contentsOf(url);
        ASSERT_FALSE(expected);
        Preview preview(url);
        EXPECT_EQ(preview.completions, 1);
        ASSERT_TRUE(preview.error);
        EXPECT_EQ(*preview.error, expected.error().bridged());
        EXPECT_EQ(preview.error->userInfo(), expected.error().bridged().userInfo());
        EXPECT_TRUE(preview.controller->view()->subviews().empty());
        EXPECT_TRUE(preview.controller->children().empty());
    }
}

TEST(PreviewViewController, theHostedViewFollowsTheSafeAreaNotTheEdges)
{
    Preview preview("text\n");
    auto hosted = preview.controller->view()->subviews().at(0);
    EXPECT_EQ(hosted->frame(), CGRect::make(0, 0, 400, 300));
    preview.window->setBaseSafeAreaInsets({.top = 40, .left = 10, .bottom = 20, .right = 30});
    preview.window->layoutNow();
    EXPECT_EQ(hosted->frame(), CGRect::make(10, 40, 360, 240));
    preview.window->setFrameSize({300, 200});
    preview.window->layoutNow();
    EXPECT_EQ(hosted->frame(), CGRect::make(10, 40, 260, 140));
    // The text view fills what is hosted.
    auto textView = findTextView(hosted);
    ASSERT_TRUE(textView);
    EXPECT_EQ(textView->convertTo(textView->bounds(), hosted.get()).size, hosted->bounds().size);
}

TEST(PreviewViewController, pinsTopBottomLeadingTrailingInThatOrderAndAddsTheChildLast)
{
    Preview preview("text\n");
    auto& controller = *preview.controller;
    ASSERT_EQ(controller.children().size(), 1U);
    auto hosted = controller.children()[0]->viewIfLoaded();
    EXPECT_EQ(hosted, controller.view()->subviews().at(0));
    EXPECT_FALSE(hosted->translatesAutoresizingMaskIntoConstraints());
    auto constraints = controller.view()->constraints();
    ASSERT_EQ(constraints.size(), 4U);
    const NSLayoutAttribute order[] = {NSLayoutAttribute::top, NSLayoutAttribute::bottom,
                                       NSLayoutAttribute::leading, NSLayoutAttribute::trailing};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(constraints[i]->firstAttribute(), order[i]);
        EXPECT_EQ(constraints[i]->secondAttribute(), order[i]);
        EXPECT_EQ(constraints[i]->firstItem(), controller.view()->safeAreaLayoutGuide());
        EXPECT_EQ(constraints[i]->secondItem(), hosted);
        EXPECT_EQ(constraints[i]->constant(), 0);
        EXPECT_EQ(constraints[i]->relation(), NSLayoutRelation::equal);
    }
}

TEST(PreviewViewController, aSecondCallPutsAFreshPreviewOnTopOfTheFirst)
{
    Preview preview("first\n");
    preview.controller->preparePreviewOfFile(URL::fileURL(preview.folder.file("second.srt", "second\n")),
                                             [](auto) { });
    preview.window->layoutNow();
    preview.clock.settle();
    auto& subviews = preview.controller->view()->subviews();
    ASSERT_EQ(subviews.size(), 2U);
    EXPECT_EQ(findTextView(subviews[0])->text(), String("first\n"));
    EXPECT_EQ(findTextView(subviews[1])->text(), String("second\n"));
    EXPECT_FALSE(findTextView(subviews[1])->isEditable());
}

TEST(PreviewViewController, theTextIsSharedNotCopied)
{
    Preview preview("one storage\n");
    auto textView = findTextView(preview.controller->view());
    ASSERT_TRUE(textView);
    auto shown = textView->text();
    EXPECT_EQ(shown.utf8().data(), textView->text().utf8().data());
}

TEST(PreviewViewController, everythingGoesWithTheController)
{
    std::weak_ptr<UIView> textView;
    {
        Preview preview("text\n");
        textView = findTextView(preview.controller->view());
        ASSERT_FALSE(textView.expired());
    }
    EXPECT_TRUE(textView.expired()) << "something keeps the text alive";
}

} // namespace
} // namespace preview

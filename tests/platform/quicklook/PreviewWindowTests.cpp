// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewWindow.h"

#include "platform/foundation/TextDecoding.h"
#include "platform/quicklook/PreviewBroker.h"
#include "platform/quicklook/PrincipalClass.h"
#include "platform/quicklook/QLPreviewingController.h"
#include "platform/uikit/UITextView.h"
#include "tests/support/EnvironmentOverride.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/harness/ViewHarness.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

// Shows the file's text, or says why not, as extensions do.
class TextPreview : public UIViewController, public QLPreviewingController {
public:
    void preparePreviewOfFile(const URL& url, CompletionHandler completionHandler) override
    {
        auto text = String::contentsOf(url);
        if (!text)
            return completionHandler(text.error().bridged());
        textView->setText(*text);
        textView->setEditable(false);
        textView->setFont(UIFont::monospacedSystemFont(17));
        textView->setAutoresizingMask(
            {UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight});
        textView->setFrame(view()->bounds());
        view()->addSubview(textView);
        shown = textView;
        completionHandler(std::nullopt);
    }
    std::shared_ptr<UITextView> textView = std::make_shared<UITextView>();
    static inline std::weak_ptr<UITextView> shown;
};

struct Preview {
    explicit Preview(const std::string& content)
        : file(URL::fileURL(folder.file("film.srt", content)))
        , broker(file)
    {
        registerPrincipalClass<TextPreview>("TextPreview");
        manifest.principalClass = "TextPreview";
        window.emplace(arguments, manifest, file, *preparePreview(manifest, file), broker);
        window->openOffscreen(stage.sharedWindow());
        stage.settle();
    }
    std::string text() { return TextPreview::shown.lock()->text().toStdString(); }
    std::int64_t topLine()
    {
        auto view = TextPreview::shown.lock();
        return view->buffer().lineContaining(view->visibleRange().start).value;
    }

    ::tests::TemporaryDirectory folder;
    URL file;
    PreviewBroker broker;
    PreviewArguments arguments;
    ExtensionManifest manifest;
    harness::ViewHarness stage{{500, 300}};
    std::optional<PreviewWindow> window;
};

constexpr auto control = UIKeyModifierFlags::control;

// "Привет, мир" in KOI8-R, many lines of it.
std::string cyrillic()
{
    std::string text;
    for (int i = 0; i < 200; ++i)
        text += "\xF0\xD2\xC9\xD7\xC5\xD4, \xCD\xC9\xD2, \xDC\xD4\xCF \xD3\xD4\xD2\xCF\xCB\xC1\n";
    return text;
}

TEST(PreviewWindow, anotherEncodingShowsAtOnceInTheSamePlaceAndIsKept)
{
    Preview preview(cyrillic());
    auto first = preview.text();
    ASSERT_TRUE(first.starts_with("Привет, мир"));
    auto view = TextPreview::shown.lock();
    view->scrollOffsetToTop(view->buffer().lineStart({100}));
    view.reset();
    for (int i = 0; i < 20 && preview.text() == first; ++i)
        preview.stage.press("e", control);
    EXPECT_NE(preview.text(), first);
    EXPECT_EQ(preview.topLine(), 100);
    if (!preview.broker.keepEncoding(TextEncoding::windows1251))
        GTEST_SKIP() << "this file system keeps no attributes";
    auto again = readText(preview.file);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->encoding, TextEncoding::windows1251);
    EXPECT_TRUE(preview.broker.keepEncoding(std::nullopt));
    EXPECT_EQ(readText(preview.file)->encoding, TextEncoding::koi8R);
}

TEST(PreviewWindow, searchBeginsFindsAndEndsByKeys)
{
    Preview preview("one\ntwo\nThree two\n");
    preview.stage.press("f", control);
    preview.stage.type("two");
    preview.stage.settle();
    auto selected = [] {
        auto view = TextPreview::shown.lock();
        return view->selectedRange();
    };
    EXPECT_EQ(selected(), (TextRange{{4}, {7}}));
    preview.stage.press(UIKeyCode::returnKey);
    EXPECT_EQ(selected(), (TextRange{{14}, {17}}));
    preview.stage.press(UIKeyCode::returnKey, UIKeyModifierFlags::shift);
    EXPECT_EQ(selected(), (TextRange{{4}, {7}}));
    preview.stage.press(UIKeyCode::escape);
    EXPECT_TRUE(preview.stage.window().isVisible()) << "Escape leaves the search first";
    EXPECT_TRUE(TextPreview::shown.lock()->isFirstResponder());
    preview.stage.press(UIKeyCode::escape);
    EXPECT_FALSE(preview.stage.window().isVisible());
}

TEST(PreviewWindow, aFileThatNoProgramOpensIsSaidInTheBarForAWhile)
{
    ::tests::TemporaryDirectory programs;
    auto script = [&](const std::string& text) {
        auto path = programs.file("xdg-open", "#!/bin/sh\n" + text + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    };
    auto* path = std::getenv("PATH");
    ::tests::EnvironmentOverride environment("PATH", programs.path() + ":" + (path ? path : ""));
    auto note = programs.path("opened");
    Preview preview("one\n");
    auto shows = [&](std::string_view text) {
        return !preview.stage.findAll(AccessibilityRole::alert, text).empty();
    };
    script("exit 3");
    preview.stage.press("o", control);
    EXPECT_TRUE(shows("No program opened the file"));
    preview.stage.advance(std::chrono::seconds(6));
    EXPECT_FALSE(shows("No program opened the file"));
    script("echo \"$1\" > " + note + "; exec sleep 5 > /dev/null 2>&1"); // or who reads our output waits, too
    preview.stage.press("o", control);
    EXPECT_FALSE(shows("No program opened the file"));
    EXPECT_EQ(programs.read("opened"), preview.file.absoluteString() + "\n");
}

TEST(PreviewWindow, theMenuIsUsedByKeysAndGoesAfterwards)
{
    Preview preview(std::string(300, 'x') + "\n");
    auto view = TextPreview::shown.lock();
    auto choose = [&](int downs) {
        preview.stage.press(UIKeyCode::f10);
        EXPECT_NE(preview.stage.window().modalView(), nullptr);
        for (int i = 0; i < downs; ++i)
            preview.stage.press(UIKeyCode::down);
    };
    choose(1);
    preview.stage.press(UIKeyCode::escape);
    EXPECT_EQ(preview.stage.window().modalView(), nullptr);
    EXPECT_EQ(view->lineBreak(), LineBreak::word);
    // It opens where the check mark is.
    choose(0);
    preview.stage.press(UIKeyCode::returnKey);
    EXPECT_EQ(preview.stage.window().modalView(), nullptr);
    EXPECT_EQ(view->lineBreak(), LineBreak::none);
    preview.stage.press("z", UIKeyModifierFlags::alternate);
    EXPECT_EQ(view->lineBreak(), LineBreak::word);
}

} // namespace
} // namespace platform

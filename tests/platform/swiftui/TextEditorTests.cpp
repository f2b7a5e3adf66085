// SPDX-License-Identifier: MIT
#include "platform/uikit/UITextView.h"
#include "tests/platform/swiftui/probes.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace probes;
using harness::ViewHarness;

UITextView& textViewOf(UIViewController& controller)
{
    return dynamic_cast<UITextView&>(*controller.view()->subviews().front());
}

TEST(TextEditor, shows_a_constant_binding_in_all_the_space_and_shares_its_storage)
{
    String text("one\ntwo");
    Shown harness({200, 100}, TextEditor{Binding<String>::constant(text)});
    auto& textView = textViewOf(*harness.controller);
    EXPECT_EQ(textView.text().utf8().data(), text.utf8().data());
    EXPECT_EQ(textView.frame(), CGRect::make(0, 0, 200, 100));
}

TEST(TextEditor, writes_what_is_typed_to_the_state_and_keeps_the_caret)
{
    auto handle = makeHandle<String>();
    Shown harness(stateful(handle, String("ab"), [handle](const String&) { return TextEditor{**handle}; }));
    auto& textView = textViewOf(*harness.controller);
    textView.becomeFirstResponder();
    textView.setSelectedRange({1, 1});
    harness.type("xy");
    EXPECT_EQ((*handle)->get(), String("axyb"));
    EXPECT_EQ(textView.text(), String("axyb"));
    EXPECT_EQ(textView.selectedRange(), (TextRange{3, 3}));
}

TEST(TextEditor, shows_what_the_program_writes)
{
    auto handle = makeHandle<String>();
    Shown harness(stateful(handle, String("ab"), [handle](const String&) { return TextEditor{**handle}; }));
    harness.set(handle, "new");
    EXPECT_EQ(textViewOf(*harness.controller).text(), String("new"));
}

TEST(TextEditor, over_a_constant_binding_keeps_what_is_typed_through_updates)
{
    auto handle = makeHandle<int>();
    Shown harness(stateful(handle, 0, [](int now) {
        return TextEditor{Binding<String>::constant("ab")} | overlay(Leaf(std::to_string(now)));
    }));
    auto& textView = textViewOf(*harness.controller);
    textView.becomeFirstResponder();
    textView.setSelectedRange({2, 2});
    harness.type("c");
    harness.set(handle, 1);
    EXPECT_EQ(textView.text(), String("abc"));
}

TEST(TextEditor, shares_a_large_text_through_a_thousand_updates)
{
    constexpr std::size_t size = 100 << 20;
    auto bytes = std::make_shared<std::string>(size, 'x');
    for (std::size_t i = 80; i < size; i += 81)
        (*bytes)[i] = '\n';
    auto text = String::adopting(bytes, *bytes);
    auto handle = makeHandle<int>();
    Shown harness(stateful(handle, 0, [text](int now) {
        return TextEditor{Binding<String>::constant(text)} | overlay(Leaf(std::to_string(now)));
    }));
    harness.set(handle, -1);
    auto started = bytes.use_count();
    for (int i = 1; i <= 1000; ++i) {
        harness.set(handle, i);
    }
    EXPECT_EQ(textViewOf(*harness.controller).text().utf8().data(), bytes->data());
    EXPECT_LE(bytes.use_count(), started + 2) << "descriptions that are gone hold nothing";
}

TEST(TextEditor, follows_font_colour_and_enabled_of_the_environment)
{
    Shown harness(TextEditor{Binding<String>::constant("a")} | font(Font::system(30))
                  | foregroundColor(UIColor::white()) | platform::environment<IsEnabledKey>(false));
    auto& textView = textViewOf(*harness.controller);
    EXPECT_EQ(textView.font().pointSize(), 30);
    EXPECT_EQ(textView.textColor(), UIColor::white());
    EXPECT_FALSE(textView.isUserInteractionEnabled());
}

TEST(TextEditor, that_is_gone_leaves_its_text_view_usable)
{
    std::shared_ptr<UIView> kept;
    ViewHarness harness;
    {
        auto handle = makeHandle<String>();
        auto controller =
            host(stateful(handle, String("ab"), [handle](const String&) { return TextEditor{**handle}; }));
        harness.show(controller);
        kept = controller->view()->subviews().front();
        harness.window().setRootViewController(std::make_shared<UIViewController>());
    }
    harness.show(kept);
    kept->becomeFirstResponder();
    harness.type("c");
    EXPECT_EQ(dynamic_cast<UITextView&>(*kept).text(), String("cab"));
}

} // namespace

// SPDX-License-Identifier: MIT
#include "platform/swiftui/TextEditor.h"

#include "platform/swiftui/environment.h"
#include "platform/swiftui/layered.h"
#include "platform/uikit/UITextView.h"
#include "tests/platform/swiftui/probes.h"
#include "tests/support/harness/ViewHarness.h"

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
    auto controller = host(TextEditor{Binding<String>::constant(text)});
    ViewHarness harness({200, 100});
    harness.show(controller);
    auto& textView = textViewOf(*controller);
    EXPECT_EQ(textView.text().utf8().data(), text.utf8().data());
    EXPECT_EQ(textView.frame(), CGRect::make(0, 0, 200, 100));
}

TEST(TextEditor, writes_what_is_typed_to_the_state_and_keeps_the_caret)
{
    auto handle = makeHandle<String>();
    auto controller =
        host(stateful(handle, String("ab"), [handle](const String&) { return TextEditor{**handle}; }));
    ViewHarness harness;
    harness.show(controller);
    auto& textView = textViewOf(*controller);
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
    auto controller =
        host(stateful(handle, String("ab"), [handle](const String&) { return TextEditor{**handle}; }));
    ViewHarness harness;
    harness.show(controller);
    (*handle)->set("new");
    harness.settle();
    EXPECT_EQ(textViewOf(*controller).text(), String("new"));
}

TEST(TextEditor, over_a_constant_binding_keeps_what_is_typed_through_updates)
{
    auto handle = makeHandle<int>();
    auto controller = host(stateful(handle, 0, [](int now) {
        return TextEditor{Binding<String>::constant("ab")} | overlay(Leaf(std::to_string(now)));
    }));
    ViewHarness harness;
    harness.show(controller);
    auto& textView = textViewOf(*controller);
    textView.becomeFirstResponder();
    textView.setSelectedRange({2, 2});
    harness.type("c");
    (*handle)->set(1);
    harness.settle();
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
    auto controller = host(stateful(handle, 0, [text](int now) {
        return TextEditor{Binding<String>::constant(text)} | overlay(Leaf(std::to_string(now)));
    }));
    ViewHarness harness;
    harness.show(controller);
    (*handle)->set(-1);
    harness.settle();
    auto started = bytes.use_count();
    for (int i = 1; i <= 1000; ++i) {
        (*handle)->set(i);
        harness.settle();
    }
    EXPECT_EQ(textViewOf(*controller).text().utf8().data(), bytes->data());
    EXPECT_LE(bytes.use_count(), started + 2) << "descriptions that are gone hold nothing";
}

TEST(TextEditor, follows_font_colour_and_enabled_of_the_environment)
{
    auto controller = host(TextEditor{Binding<String>::constant("a")} | font(Font::system(30))
                           | foregroundColor(UIColor::white()) | platform::environment<IsEnabledKey>(false));
    ViewHarness harness;
    harness.show(controller);
    auto& textView = textViewOf(*controller);
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

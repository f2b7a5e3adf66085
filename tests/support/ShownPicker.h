// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/UIImagePickerController.h"
#include "tests/support/harness/ViewHarness.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tests {

struct PickerListener : platform::UIImagePickerControllerDelegate {
    std::vector<platform::UIImagePickerInfo> picked;
    int cancelled = 0;
    void imagePickerControllerDidFinishPickingMedia(platform::UIImagePickerController&,
                                                    const platform::UIImagePickerInfo& info) override
    {
        picked.push_back(info);
    }
    void imagePickerControllerDidCancel(platform::UIImagePickerController&) override { ++cancelled; }
};

// A picker in a window of its own, and what it tells.
struct ShownPicker {
    harness::ViewHarness harness;
    std::shared_ptr<PickerListener> listener = std::make_shared<PickerListener>();
    std::shared_ptr<platform::UIImagePickerController> picker =
        std::make_shared<platform::UIImagePickerController>();

    explicit ShownPicker(const std::vector<std::string_view>& types,
                         const std::function<void(platform::UIImagePickerController&)>& setUp = {},
                         platform::CGSize size = {380, 420})
        : harness(size)
    {
        picker->mediaTypes.assign(types.begin(), types.end());
        picker->setDelegate(listener);
        if (setUp)
            setUp(*picker);
        harness.show(picker);
        settle();
    }
    void settle() { harness.clock().settleWithBackgroundQueues(); }
    // Until the next page has slid in and shows what it is about.
    void turnPage()
    {
        settle();
        harness.advance(std::chrono::seconds(1));
        settle();
    }
    template <class Condition>
    void waitUntil(Condition&& isSo)
    {
        for (int turn = 0; !isSo() && turn < 1'000'000; ++turn)
            settle();
        EXPECT_TRUE(isSo()) << harness.describe();
    }
    void tap(std::string_view button)
    {
        harness.find(platform::AccessibilityRole::button, button).tap();
        turnPage();
    }
    // Of what was picked the file by that key.
    std::string pathOf(std::string_view key) const
    {
        if (listener->picked.empty())
            return {};
        auto found = listener->picked[0].find(key);
        auto* url = found == listener->picked[0].end() ? nullptr : std::get_if<platform::URL>(&found->second);
        return url ? url->path() : std::string();
    }
};

} // namespace tests

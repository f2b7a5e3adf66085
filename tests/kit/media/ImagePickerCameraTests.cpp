// SPDX-License-Identifier: MIT
#include "kit/media/photoAssetPicker.h"
#include "kit/media/videoAssetPicker.h"

#include "platform/swiftui/Color.h"
#include "tests/support/PhotoLibraryFolders.h"
#include "tests/support/SyntheticDesk.h"
#include "tests/support/harness/DeclarativeHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace std::chrono_literals;
using Role = AccessibilityRole;
using zelk::AssetPickerKind;
using zelk::ImagePickerSource;

TEST(AssetPicker, takes_what_the_camera_sees)
{
    tests::PhotoLibraryFolders folders; // where it is kept that cameras may be used
    EXPECT_FALSE(ImagePickerSource::isCameraAvailable());
    for (bool isVideo : {false, true}) {
        tests::SyntheticDesk desk;
        EXPECT_TRUE(ImagePickerSource::isCameraAvailable());
        auto kind = std::make_shared<StateCell<std::optional<AssetPickerKind>>>(
            AssetPickerKind(AssetPickerKind::cameraCapture));
        std::vector<URL> told;
        auto tell = [&](Result<URL> item) { told.push_back(item.value()); };
        harness::DeclarativeHarness harness({320, 400});
        if (isVideo)
            harness.show(Color{UIColor::white()} | zelk::videoAssetPicker(Binding(kind), {}, tell));
        else
            harness.show(Color{UIColor::white()} | zelk::photoAssetPicker(Binding(kind), {}, tell));
        harness.advance(2s);
        auto see = [&](int pictures) {
            desk.hardware->deliver(pictures, isVideo ? 2 : 1);
            harness.clock().settleWithBackgroundQueues();
        };
        see(3);
        harness.find(Role::button, isVideo ? "Record" : "Take Photo").tap();
        see(30);
        if (isVideo)
            harness.find(Role::button, "Stop Recording").tap();
        auto use = isVideo ? "Use Video" : "Use Photo";
        for (int turn = 0; !harness.tryFind(Role::button, use) && turn < 1'000'000; ++turn)
            harness.clock().settleWithBackgroundQueues();
        harness.find(Role::button, use).tap();
        harness.advance(2s);
        ASSERT_EQ(told.size(), 1u);
        EXPECT_EQ(kind->value(), std::nullopt);
        auto numbers = tests::numbersIn(tests::inspect(told[0].path()));
        EXPECT_EQ(numbers.size(), isVideo ? 30u : 1u);
        EXPECT_EQ(numbers.at(0), 3);
        std::filesystem::remove(told[0].path());
    }
}

} // namespace

// SPDX-License-Identifier: MIT
#pragma once

#include "kit/media/AssetPickerKind.h"
#include "kit/media/AssetPickerScreenViewModel.h"
#include "kit/media/ImagePicker.h"

#include "platform/swiftui/ContentController.h"
#include "platform/swiftui/Environment.h"
#include "platform/swiftui/ObservedObject.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace zelk {

struct AssetPickerOptions {
    bool allowsEditing = false;
    std::optional<double> videoMaximumDuration = {}; // seconds
};

// A screen to pick a photo or a video on, from the camera or the library. It dismisses itself when an item was picked, which
// is told first, and when the user cancels. Takes its tint from the theme manager of its surroundings, if there is one.
struct AssetPickerScreen {
    AssetPickerKind kind;
    std::string mediaType; // the uniform type identifier that is offered
    AssetPickerOptions options;
    std::function<void(platform::Result<platform::URL>)> didPickItem;
    platform::StateObject<AssetPickerScreenViewModel> viewModel{
        [] { return std::make_shared<AssetPickerScreenViewModel>(); }};
    platform::Environment<platform::DismissKey> presentationMode{};
    platform::EnvironmentObject<ThemeManager> themeManager{};

    auto dynamicProperties() { return std::tie(viewModel, presentationMode, themeManager); }

    auto body() const
    {
        auto isVideo = mediaType == platform::kUTTypeMovie;
        auto source = kind == AssetPickerKind::cameraCapture ? ImagePickerSource::cameraCapture(isVideo)
                                                             : ImagePickerSource::photoLibrary({mediaType});
        auto dismiss = *presentationMode;
        return ImagePicker({.source = std::move(source),
                            .allowsEditing = options.allowsEditing,
                            .videoMaximumDuration = options.videoMaximumDuration,
                            .themeManager = themeManager.object(),
                            .didCancel = [dismiss] { dismiss(); },
                            .didPickItem =
                                [model = viewModel.object(), told = didPickItem,
                                 dismiss](platform::Result<platform::URL> item) {
                                    // Whoever is told may take the screen away.
                                    auto dismissal = model->didPick.sink([dismiss] { dismiss(); });
                                    model->didPickItem.set(told);
                                    model->pick(std::move(item));
                                }});
    }
};

} // namespace zelk

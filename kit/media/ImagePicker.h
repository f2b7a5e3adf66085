// SPDX-License-Identifier: MIT
#pragma once

#include "kit/media/ImagePickerError.h"
#include "kit/theme/ThemeManager.h"

#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"
#include "platform/services/UIImagePickerController.h"
#include "platform/swiftui/UIViewControllerRepresentable.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace zelk {

// Where an ImagePicker takes its item from.
class ImagePickerSource {
public:
    struct PhotoLibrary {
        std::vector<std::string> mediaTypes; // uniform type identifiers that are offered
        bool operator==(const PhotoLibrary&) const = default;
    };
    struct CameraCapture {
        bool video = false; // a movie is recorded, else a photo taken
        bool operator==(const CameraCapture&) const = default;
    };

    static ImagePickerSource photoLibrary(std::vector<std::string> mediaTypes)
    {
        return ImagePickerSource(PhotoLibrary{std::move(mediaTypes)});
    }
    static ImagePickerSource cameraCapture(bool video) { return ImagePickerSource(CameraCapture{video}); }

    static bool isCameraAvailable();
    static bool isPhotoLibraryAvailable();

    const std::variant<PhotoLibrary, CameraCapture>& value() const { return value_; }
    bool operator==(const ImagePickerSource&) const = default;

private:
    explicit ImagePickerSource(std::variant<PhotoLibrary, CameraCapture> value)
        : value_(std::move(value))
    {
    }
    std::variant<PhotoLibrary, CameraCapture> value_;
};

// The platform's picker of photos and videos as a view. Videos keep the encoding they have. Whether a camera is there is
// the caller's to ask. It does not go by itself: who presents it dismisses it. Main thread only.
struct ImagePicker : platform::UIViewControllerRepresentable<ImagePicker> {
    using Source = ImagePickerSource;
    class Coordinator;

    Source source;
    bool allowsEditing = false;
    std::optional<double> videoMaximumDuration; // seconds
    std::function<void()> didCancel;
    // The item's file, or an ImagePickerError where there is none. Once.
    std::function<void(platform::Result<platform::URL>)> didPickItem;
    std::shared_ptr<ThemeManager> themeManager; // null: the tint of the surroundings

    struct Options {
        Source source;
        bool allowsEditing = false;
        std::optional<double> videoMaximumDuration = {};
        std::shared_ptr<ThemeManager> themeManager = {};
        std::function<void()> didCancel = {};
        std::function<void(platform::Result<platform::URL>)> didPickItem = {};
    };
    explicit ImagePicker(Options options);

    using Context = platform::RepresentableContext<Coordinator>;
    std::shared_ptr<Coordinator> makeCoordinator() const;
    std::shared_ptr<platform::UIImagePickerController> makeUIViewController(const Context& context) const;
    void updateUIViewController(platform::UIImagePickerController&, const Context& context) const;
};

// Hears the picker and passes on what it hears.
class ImagePicker::Coordinator : public platform::UIImagePickerControllerDelegate {
public:
    explicit Coordinator(ImagePicker picker)
        : parent(std::move(picker))
    {
    }
    ImagePicker parent;

    void imagePickerControllerDidFinishPickingMedia(platform::UIImagePickerController&,
                                                    const platform::UIImagePickerInfo& info) override;
    void imagePickerControllerDidCancel(platform::UIImagePickerController&) override;
};

} // namespace zelk

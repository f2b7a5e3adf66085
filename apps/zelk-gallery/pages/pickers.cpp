// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"
#include "apps/zelk-gallery/frame/Samples.h"

#include "kit/media/FontPickerScreen.h"
#include "kit/media/ImagePicker.h"
#include "kit/media/VideoEditorView.h"
#include "kit/media/photoAssetPicker.h"
#include "kit/media/videoAssetPicker.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/Spacing.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/services/MediaGridView.h"
#include "platform/services/PHPhotoLibrary.h"
#include "platform/services/PhotoCropController.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::AssetPickerKind;
using zelk::CornerRadius;
using zelk::Spacing;

namespace {

auto said(const std::string& outcome)
{
    return Text{outcome} | foregroundColor(UIColor::secondaryLabel());
}

template <View Content>
auto framed(const Content& content, double height)
{
    return content | frame({.height = height}) | cornerRadius(CornerRadius::_150);
}

auto opening(const State<std::optional<AssetPickerKind>>& state, AssetPickerKind kind)
{
    return [binding = state.binding(), kind] { binding.set(kind); };
}

auto telling(const State<std::string>& outcome)
{
    return [outcome = outcome.binding()](const Result<URL>& item) {
        outcome.set(item ? item->lastPathComponent()
                         : item.error().localizedDescription());
    };
}

// [Pick and come back]
struct AssetScreens {
    State<std::optional<AssetPickerKind>> photo, video, clip;
    State<std::string> outcome = std::string("Nothing was picked yet.");

    auto dynamicProperties() { return std::tie(photo, video, clip, outcome); }
    auto body() const
    {
        auto tell = telling(outcome);
        constexpr AssetPickerKind library = AssetPickerKind::photoLibrary;
        return VStack{{.spacing = Spacing::_100},
                      Button{"A photo, cut to a square", opening(photo, library)},
                      Button{"A video", opening(video, library)},
                      Button{"Ten seconds of a video", opening(clip, library)},
                      said(*outcome)}
        | zelk::photoAssetPicker(photo.binding(), {.allowsEditing = true}, tell)
            | zelk::videoAssetPicker(video.binding(), {}, tell)
            | zelk::videoAssetPicker(clip.binding(),
                                     {.allowsEditing = true, .videoMaximumDuration = 10},
                                     tell);
    }
};
// [/]

// [The camera]
struct Camera {
    State<std::optional<AssetPickerKind>> photo, film;
    State<std::string> outcome =
        std::string(isThere() ? "Space is the shutter." : "There is no camera here.");

    auto dynamicProperties() { return std::tie(photo, film, outcome); }
    static bool isThere() { return zelk::ImagePickerSource::isCameraAvailable(); }
    auto body() const
    {
        auto tell = telling(outcome);
        constexpr AssetPickerKind camera = AssetPickerKind::cameraCapture;
        return VStack{{.spacing = Spacing::_100},
                      Button{"Take a photo", opening(photo, camera)},
                      Button{"Film ten seconds", opening(film, camera)},
                      said(*outcome)}
        | disabled(!isThere()) | zelk::photoAssetPicker(photo.binding(), {}, tell)
            | zelk::videoAssetPicker(film.binding(), {.videoMaximumDuration = 10}, tell);
    }
};
// [/]

// [A library]
struct Grid : UIViewRepresentable<Grid> {
    using Context = RepresentableContext<NoCoordinator>;
    std::function<void(const LibraryFile&)> didPick;

    explicit Grid(std::function<void(const LibraryFile&)> told)
        : didPick(std::move(told))
    {
    }
    std::shared_ptr<MediaGridView> makeUIView(const Context&) const
    {
        auto grid = std::make_shared<MediaGridView>();
        grid->setFiles(sampleLibrary());
        return grid;
    }
    void updateUIView(MediaGridView& grid, const Context&) const
    {
        grid.onPick = didPick;
    }
    std::optional<CGSize> sizeThatFits(const ProposedSize& room, MediaGridView&) const
    {
        return CGSize{room.width.value_or(400), room.height.value_or(300)};
    }
};

struct Library {
    State<std::string> outcome = std::string("The arrows choose, Return picks.");

    auto dynamicProperties() { return std::tie(outcome); }
    auto body() const
    {
        auto pick = [outcome = outcome.binding()](const LibraryFile& file) {
            outcome.set(file.name());
        };
        return VStack{
            {.spacing = Spacing::_100}, framed(Grid{pick}, 300), said(*outcome)};
    }
};
// [/]

// [A square of a photo]
struct Cropper : UIViewControllerRepresentable<Cropper> {
    using Context = RepresentableContext<NoCoordinator>;
    PhotoCropController::Completion didCrop;

    explicit Cropper(PhotoCropController::Completion told)
        : didCrop(std::move(told))
    {
    }
    std::shared_ptr<PhotoCropController> makeUIViewController(const Context&) const
    {
        return std::make_shared<PhotoCropController>(samplePicture(2, {1200, 800}),
                                                     didCrop);
    }
    void updateUIViewController(PhotoCropController&, const Context&) const { }
};

struct Square {
    State<std::string> outcome = std::string("Drag it, turn the wheel over it.");

    auto dynamicProperties() { return std::tie(outcome); }
    auto body() const
    {
        auto tell = [outcome = outcome.binding()](const std::optional<PhotoCrop>& crop) {
            auto side = crop ? static_cast<int>(crop->cropRect.width()) : 0;
            outcome.set(crop ? std::to_string(side).append(" pixels wide and high.")
                             : "Left as it was.");
        };
        return VStack{
            {.spacing = Spacing::_100}, framed(Cropper{tell}, 380), said(*outcome)};
    }
};
// [/]

// [A part of a film]
struct Trimmer {
    State<std::string> outcome = std::string("Space plays.");

    auto dynamicProperties() { return std::tie(outcome); }
    auto body() const
    {
        auto finish = [outcome = outcome.binding()](const Result<std::string>& film) {
            outcome.set(film ? URL::fileURL(*film).lastPathComponent()
                             : film.error().localizedDescription());
        };
        auto cancel = [outcome = outcome.binding()] { outcome.set("Left as it was."); };
        auto film = sampleFilm() ? sampleFilm()->path() : std::string();
        return VStack{{.spacing = Spacing::_100},
                      framed(zelk::VideoEditorView{film, cancel, finish}, 400),
                      said(*outcome)};
    }
};
// [/]

// [Fonts]
struct Fonts {
    State<UIFont> chosen = UIFont();

    auto dynamicProperties() { return std::tie(chosen); }
    auto body() const
    {
        auto pick = [chosen = chosen.binding()](const UIFont& picked) {
            chosen.set(picked);
        };
        return VStack{{.spacing = Spacing::_100},
                      framed(zelk::FontPickerScreen{pick, [] { }}, 320),
                      said(std::string(chosen->familyName()))};
    }
};
// [/]

// [What the user allowed]
struct Permission {
    State<int> asked = 0; // times, so that the page looks again

    auto dynamicProperties() { return std::tie(asked); }
    static std::string nameOf(PHAuthorizationStatus status)
    {
        switch (status) {
        case PHAuthorizationStatus::notDetermined:
            return "not asked yet";
        case PHAuthorizationStatus::restricted:
            return "forbidden on this machine";
        case PHAuthorizationStatus::denied:
            return "refused";
        case PHAuthorizationStatus::authorized:
            return "allowed";
        case PHAuthorizationStatus::limited:
            return "allowed for what this program added";
        }
        return {};
    }
    static auto row(const std::string& title, PHAccessLevel level,
                    const Binding<int>& asked)
    {
        auto ask = [level, asked] {
            PHPhotoLibrary::requestAuthorization(level, [asked](PHAuthorizationStatus) {
                DispatchQueue::main()->async([asked] { asked.set(asked.get() + 1); });
            });
        };
        return HStack{{.spacing = Spacing::_150},
                      Text{title},
                      said(nameOf(PHPhotoLibrary::authorizationStatus(level))),
                      Spacer{},
                      Button{"Ask", ask}};
    }
    auto body() const
    {
        return VStack{{.spacing = Spacing::_100},
                      row("Add to the photos", PHAccessLevel::addOnly, asked.binding()),
                      row("See the photos", PHAccessLevel::readWrite, asked.binding())};
    }
};
// [/]

} // namespace

Page pickersPage()
{
    return {.name = "pickers",
            .title = "Pickers",
            .group = "Media",
            .symbol = "photo.on.rectangle",
            .summary =
                "Photos, videos and fonts to choose from, and the screens on which "
                "they are cut. Files are asked for in the desktop's own dialog "
                "where there is one.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"Pick and come back", "Each screen leaves by itself.",
                     AnyView(AssetScreens{})},
                    {"The camera", "A photo or a film of now.", AnyView(Camera{})},
                    {"A library", "", AnyView(Library{})},
                    {"A square of a photo", "", AnyView(Square{})},
                    {"A part of a film", "", AnyView(Trimmer{})},
                    {"Fonts", "", AnyView(Fonts{})},
                    {"What the user allowed", "", AnyView(Permission{})}};
            }};
}

} // namespace gallery

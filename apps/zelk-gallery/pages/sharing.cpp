// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/foundation/alert.h"
#include "kit/sharing/Instagram.h"
#include "kit/sharing/photoLibraryPublishers.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/Spacing.h"
#include "platform/foundation/FileManager.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/graphics/UIImage.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::Spacing;

namespace {

// Something to share, drawn on the spot.
Result<UIImage> drawing()
{
    return makeImage({320, 200}, 1, [](CGContext& context) {
        context.fill(CGRect{{0, 0}, {320, 200}}, UIColor::systemTeal());
        context.fill(UIBezierPath::oval({{200, 30}, {70, 70}}), UIColor::systemYellow());
    });
}

Result<URL> postcard()
{
    auto picture = TRY(drawing());
    auto file = FileManager::defaultManager().temporaryDirectory().appendingPathComponent(
        "Postcard.png");
    TRY(picture.writePNG(file.path()));
    return file;
}

// [To the photo library]
struct SaveToPhotos {
    // Ends the stream when the place is gone.
    State<std::shared_ptr<AnyCancellable>> saving;
    State<std::optional<Error>> error;
    State<std::string> outcome = std::string("Asks first, once.");

    auto dynamicProperties() { return std::tie(saving, error, outcome); }
    static void save(const State<std::shared_ptr<AnyCancellable>>& saving,
                     const Binding<std::optional<Error>>& error,
                     const Binding<std::string>& outcome)
    {
        auto file = postcard();
        if (!file)
            return error.set(file.error());
        auto finish = [error, outcome](const Completion& completion) {
            if (completion.error())
                error.set(*completion.error());
            else
                outcome.set("Saved to your photos.");
        };
        auto add = [saving, finish, file = *file] {
            auto stream =
                zelk::saveURL(file, zelk::AssetType::image).sink([] { }, finish);
            saving.set(std::make_shared<AnyCancellable>(std::move(stream)));
        };
        auto refuse = [error](const Completion& completion) {
            if (completion.error())
                error.set(*completion.error());
        };
        auto stream =
            zelk::authorizationRequestPublisher(PHAccessLevel::addOnly).sink(add, refuse);
        saving.set(std::make_shared<AnyCancellable>(std::move(stream)));
    }
    auto body() const
    {
        auto begin = [saving = saving, error = error.binding(),
                      outcome = outcome.binding()] { save(saving, error, outcome); };
        return VStack{{.spacing = Spacing::_100},
                      Image{drawing().value_or(UIImage())}
                          | cornerRadius(CornerRadius::_100),
                      Button{"Save the postcard", begin},
                      Text{*outcome} | foregroundColor(UIColor::secondaryLabel())}
        | zelk::alert(error.binding());
    }
};
// [/]

// [To Stories]
struct ShareToStories {
    State<std::optional<Error>> error;
    State<std::string> outcome = std::string("On the pasteboard for five minutes.");

    auto dynamicProperties() { return std::tie(error, outcome); }
    auto body() const
    {
        auto share = [error = error.binding(), outcome = outcome.binding()] {
            auto file = postcard();
            auto shared = file
                ? zelk::Instagram::shareMediaFileURLToInstagramStories(*file)
                : Result<void>(std::unexpected(file.error()));
            if (!shared)
                return error.set(shared.error());
            outcome.set("Handed over.");
        };
        return VStack{{.spacing = Spacing::_100},
                      Button{"Share to Stories", share},
                      Text{*outcome} | foregroundColor(UIColor::secondaryLabel())}
        | zelk::alert(error.binding());
    }
};
// [/]

} // namespace

Page sharingPage()
{
    return {.name = "sharing",
            .title = "Sharing",
            .group = "Sharing",
            .symbol = "square.and.arrow.up",
            .summary =
                "Ways out for a picture or a video: the user's own photos, which ask "
                "first, and another program.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"To the photo library", "The answer is remembered.",
                     AnyView(SaveToPhotos{})},
                    {"To Stories", "Says so where nothing takes them.",
                     AnyView(ShareToStories{})}};
            }};
}

} // namespace gallery

// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/foundation/alert.h"
#include "kit/sharing/Instagram.h"
#include "kit/sharing/photoLibraryPublishers.h"
#include "kit/theme/CornerRadius.h"
#include "kit/theme/Spacing.h"
#include "platform/dispatch/currentDate.h"
#include "platform/foundation/FileManager.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"
#include "platform/graphics/UIImage.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIPasteboard.h"

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

// [On the pasteboard]
struct Pasteboard {
    State<std::string> outcome = std::string("Gone after a minute.");

    auto dynamicProperties() { return std::tie(outcome); }
    static void copy()
    {
        UIPasteboardOptions options{.UIPasteboardOptionExpirationDate =
                                        Date{currentDate().timeIntervalSince1970 + 60},
                                    .UIPasteboardOptionLocalOnly = true};
        UIPasteboard::general().setItems(
            {{{"public.utf8-plain-text", String("From the gallery")},
              {"public.png",
               NSData::dataWithBytes(drawing().value_or(UIImage()).pngData())}}},
            options);
    }
    static std::string pasted()
    {
        std::string all;
        for (const auto& type : UIPasteboard::general().types())
            all.append(all.empty() ? "" : ", ").append(type);
        return all.empty() ? "There is nothing." : all;
    }
    auto body() const
    {
        auto said = outcome.binding();
        return VStack{{.spacing = Spacing::_100},
                      Button{"Copy the postcard and a text",
                             [said] {
                                 copy();
                                 said.set("Copied; this program alone may keep it.");
                             }},
                      Button{"See what there is", [said] { said.set(pasted()); }},
                      Text{*outcome} | foregroundColor(UIColor::secondaryLabel())};
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
                "first, another program, and the pasteboard.",
            .exhibits = [] {
                return std::vector<Exhibit>{
                    {"To the photo library", "The answer is remembered.",
                     AnyView(SaveToPhotos{})},
                    {"To Stories", "Says so where nothing takes them.",
                     AnyView(ShareToStories{})},
                    {"On the pasteboard", "Paste it in any other program.",
                     AnyView(Pasteboard{})}};
            }};
}

} // namespace gallery

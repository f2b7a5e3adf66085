// SPDX-License-Identifier: MIT
// Ways out for a picture or a video: share-media FILE. Stories, the photo library (which asks first), and word to the
// makers.
#include "kit/foundation/alert.h"
#include "kit/sharing/Instagram.h"
#include "kit/sharing/feedbackSheet.h"
#include "kit/sharing/photoLibraryPublishers.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/graphics/UIImage.h"
#include "platform/services/PHPhotoLibrary.h"
#include "platform/swiftui/swiftui.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIWindow.h"

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace platform;

constexpr CGSize windowSize{420, 360};

struct Media {
    URL file;
    zelk::AssetType type;
    std::optional<UIImage> picture; // nothing for a video

    static Media of(const URL& file)
    {
        auto picture = UIImage::fromFile(file.path());
        if (picture)
            return {file, zelk::AssetType::image, std::move(*picture)};
        return {file, zelk::AssetType::video, std::nullopt};
    }
};

// What has been begun ends here, on the main thread; it lives as long as the window.
struct Saving {
    std::vector<AnyCancellable> subscriptions;
};

struct ShareMedia {
    Media media;
    std::shared_ptr<Saving> saving;
    State<bool> asksForFeedback = false;
    State<std::optional<Error>> error;
    State<std::string> outcome = std::string("Nothing has been shared yet.");

    auto dynamicProperties() { return std::tie(asksForFeedback, error, outcome); }

    auto storiesButton() const
    {
        auto error_ = error.binding();
        auto outcome_ = outcome.binding();
        return Button{"Share to Stories", [file = media.file, error_, outcome_] {
                          if (auto shared = zelk::Instagram::shareMediaFileURLToInstagramStories(file);
                              !shared)
                              return error_.set(shared.error());
                          outcome_.set("On the pasteboard for five minutes.");
                      }};
    }

    auto saveButton() const
    {
        auto error_ = error.binding();
        auto outcome_ = outcome.binding();
        auto finish = [error_, outcome_](const Completion& completion) {
            if (completion.error())
                error_.set(*completion.error());
            else
                outcome_.set("Saved to your photos.");
        };
        return Button{"Save to Photos", [media = media, weak = std::weak_ptr(saving), error_, finish] {
                          auto access = zelk::authorizationRequestPublisher(PHAccessLevel::addOnly);
                          auto save = [media, weak, finish] {
                              if (auto alive = weak.lock())
                                  zelk::saveURL(media.file, media.type)
                                      .sink([] { }, finish)
                                      .store(alive->subscriptions);
                          };
                          auto refuse = [error_](const Completion& completion) {
                              if (completion.error())
                                  error_.set(*completion.error());
                          };
                          if (auto alive = weak.lock())
                              access.sink(save, refuse).store(alive->subscriptions);
                      }};
    }

    auto body() const
    {
        auto asks = asksForFeedback.binding();
        auto outcome_ = outcome.binding();
        return VStack{{.spacing = 14},
                      Text{media.file.lastPathComponent()} | font(Font::title2()),
                      Text{media.picture ? "A picture" : "A video, or something else"}
                          | foregroundColor(UIColor::secondaryLabel()),
                      storiesButton(),
                      saveButton(),
                      Button{"Send Feedback…", [asks] { asks.set(true); }},
                      Text{*outcome} | foregroundColor(UIColor::secondaryLabel())}
        | padding(24) | zelk::alert(error.binding())
            | zelk::feedbackSheet(asks, "How would you like to write to us?",
                                  {zelk::FeedbackSheetItem::email(
                                       "makers@example.org", "About " + media.file.lastPathComponent() + ":"),
                                   zelk::FeedbackSheetItem::iMessage("makers@example.org"),
                                   zelk::FeedbackSheetItem::whatsapp("+1 555 0100"),
                                   zelk::FeedbackSheetItem::custom("Never Mind the Media", [outcome_] {
                                       outcome_.set("We do not mind.");
                                   })});
    }
};

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: share-media FILE\n");
        return 2;
    }
    if (!displayIsAvailable()) {
        std::fprintf(stderr, "share-media: there is no display\n");
        return 1;
    }
    auto& application = UIApplication::shared();
    application.setIdentifier("org.zelk.ShareMedia");
    application.start();
    auto window = std::make_shared<UIWindow>(CGRect{{}, windowSize});
    window->setTitle("Share media");
    auto saving = std::make_shared<Saving>();
    window->setRootViewController(std::make_shared<UIHostingController<ShareMedia>>(
        ShareMedia{Media::of(URL::fileURL(arguments[1])), saving}));
    window->makeKeyAndVisible();
    return application.run();
}

// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Page.h"

#include "kit/sharing/feedbackSheet.h"
#include "kit/theme/Spacing.h"
#include "platform/swiftui/swiftui.h"

namespace gallery {

using namespace platform;
using zelk::FeedbackSheetItem;
using zelk::Spacing;

namespace {

// [Several ways to write]
struct Feedback {
    State<bool> isOffered = false;
    State<std::string> outcome = std::string("Nobody has written yet.");
    Environment<IsPosedKey> isPosed;

    auto dynamicProperties() { return std::tie(isOffered, outcome, isPosed); }
    auto body() const
    {
        auto offered = isOffered.binding();
        auto said = outcome.binding();
        return VStack{{.spacing = Spacing::_100},
                      Button{"Send feedback", [offered] { offered.set(true); }},
                      Text{*outcome} | foregroundColor(UIColor::secondaryLabel())}
        | frame({.height = 300})
            | zelk::feedbackSheet(
                   offered, "How would you like to write to us?",
                   {FeedbackSheetItem::email("makers@example.org", "About the gallery:"),
                    FeedbackSheetItem::iMessage("makers@example.org"),
                    FeedbackSheetItem::whatsapp("+1 555 0100"),
                    FeedbackSheetItem::custom("Keep it to Myself",
                                              [said] { said.set("Kept."); })})
            | onAppear([offered, poses = *isPosed] {
                   if (poses)
                       offered.set(true);
               });
    }
};
// [/]

} // namespace

Page feedbackPage()
{
    return {
        .name = "feedback",
        .title = "Feedback",
        .group = "Sharing",
        .symbol = "square.and.pencil",
        .summary =
            "A sheet that offers ways to write to a program's makers. Mail comes with "
            "the version and the device filled in; where nothing writes mail, an "
            "alert says so.",
        .exhibits = [] {
            return std::vector<Exhibit>{
                {"Several ways to write", "", AnyView(Feedback{})}};
        }};
}

} // namespace gallery

// SPDX-License-Identifier: MIT
#include "platform/services/CameraControls.h"

#include "platform/graphics/SymbolImage.h"
#include "platform/services/cameraText_p.h"
#include "platform/services/mediaDuration.h"
#include "platform/services/mediaPickerText_p.h"
#include "platform/uikit/AnimationTiming.h"
#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UISegmentedControl.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr CGFloat margin = 8, pictureRadius = 14, panelDepth = 104, columnWidth = 112, roundSide = 44;
constexpr CGFloat timeHeight = 26, modesHeight = 30, symbolSide = 56, playSide = 64;
constexpr AnimationTiming flashTiming{.x1 = 0, .y1 = 0, .x2 = 0.4, .y2 = 1, .duration = 0.3};

UIColor recordingRed()
{
    return {1, 0.23, 0.19};
}

} // namespace

CameraControls::CameraControls()
    : preview_(std::make_shared<CameraPreviewView>())
    , light_(std::make_shared<UIView>())
    , time_(std::make_shared<UILabel>())
    , notice_(std::make_shared<UILabel>())
    , symbol_(std::make_shared<UIImageView>())
    , message_(std::make_shared<UILabel>())
    , wheel_(std::make_shared<UIActivityIndicatorView>(UIActivityIndicatorViewStyle::large))
    , shutter_(std::make_shared<CameraShutterButton>())
    , back_(std::make_shared<UIButton>())
    , use_(std::make_shared<UIButton>())
    , switch_(std::make_shared<UIButton>())
    , play_(std::make_shared<UIButton>())
    , modes_(std::make_shared<UISegmentedControl>(
          std::vector{cameraText(CameraText::photo), cameraText(CameraText::video)}))
{
    setOverrideUserInterfaceStyle(UIUserInterfaceStyle::dark);
    preview_->setCornerRadius(pictureRadius);
    preview_->accessibility().role = AccessibilityRole::image;
    preview_->accessibility().label = cameraText(CameraText::viewfinder);
    light_->setBackgroundColor(UIColor::white());
    light_->setCornerRadius(pictureRadius);
    light_->setAlpha(0);
    light_->setUserInteractionEnabled(false);
    time_->setFont(UIFont::monospacedSystemFont(14, FontWeight::semibold));
    time_->setBackgroundColor(recordingRed());
    notice_->setFont(UIFont::systemFont(14, FontWeight::medium));
    notice_->setBackgroundColor(UIColor::gray(0, 0.6));
    for (const auto& capsule : {time_, notice_}) {
        capsule->setTextAlignment(TextAlignment::center);
        capsule->setTextColor(UIColor::white());
        capsule->setCornerRadius(timeHeight / 2);
        capsule->setClipsToBounds(true);
        capsule->setHidden(true);
    }
    symbol_->setTintColor(UIColor::gray(1, 0.5));
    symbol_->setContentMode(UIViewContentMode::center);
    symbol_->accessibility().isHidden = true;
    message_->setPreferredFont(FontTextStyle::title3);
    message_->setTextColor(UIColor::gray(1, 0.75));
    message_->setTextAlignment(TextAlignment::center);
    message_->setNumberOfLines(0);
    back_->setTintColor(UIColor::white());
    use_->setFont(UIFont::systemFont(17, FontWeight::semibold));
    switch_->setBackgroundColor(UIColor::gray(1, 0.16));
    switch_->setCornerRadius(roundSide / 2);
    play_->setBackgroundColor(UIColor::gray(0, 0.5));
    play_->setCornerRadius(playSide / 2);
    play_->setHidden(true);
    play_->accessibility().label = mediaPickerText(MediaPickerText::play);
    for (const auto& round : {switch_, play_}) {
        round->setTintColor(UIColor::white());
        round->setContentInsets({});
    }
    switch_->accessibility().label = cameraText(CameraText::switchCamera);
    setMessage({});
    for (const auto& view :
         {std::shared_ptr<UIView>(preview_), light_, std::shared_ptr<UIView>(symbol_),
          std::shared_ptr<UIView>(message_), std::shared_ptr<UIView>(wheel_), std::shared_ptr<UIView>(time_),
          std::shared_ptr<UIView>(notice_), std::shared_ptr<UIView>(modes_), std::shared_ptr<UIView>(play_),
          std::shared_ptr<UIView>(back_), std::shared_ptr<UIView>(shutter_), std::shared_ptr<UIView>(switch_),
          std::shared_ptr<UIView>(use_)})
        addSubview(view);
}

void CameraControls::setTime(std::optional<double> seconds)
{
    time_->setHidden(!seconds);
    if (!seconds)
        return;
    auto text = mediaDuration(std::floor(*seconds));
    time_->accessibility().label = cameraText(CameraText::recordingTime);
    time_->accessibility().value = text;
    if (text.size() != time_->text().size())
        setNeedsLayout();
    time_->setText(std::move(text));
}

void CameraControls::setMessage(std::string text, std::string_view symbol)
{
    message_->setHidden(text.empty());
    symbol_->setHidden(text.empty());
    message_->setText(std::move(text));
    symbolName_ = symbol;
    setNeedsLayout();
}

void CameraControls::setNotice(std::string text)
{
    notice_->setHidden(text.empty());
    notice_->setText(std::move(text));
    setNeedsLayout();
}

void CameraControls::setWaiting(bool waiting)
{
    waiting ? wheel_->startAnimating() : wheel_->stopAnimating();
}

void CameraControls::flash()
{
    light_->setAlpha(0.85);
    UIView::animate(flashTiming, [this] { light_->setAlpha(0); });
}

bool CameraControls::isRightToLeft() const
{
    return effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
}

void CameraControls::layoutSubviews()
{
    UIView::layoutSubviews();
    auto area = bounds().inset(safeAreaInsets());
    if (area.isNull())
        area = bounds();
    auto isColumn = area.width() > area.height() * 1.1 && area.width() >= 3 * columnWidth;
    auto wanted = [&](const UIButton& button) {
        return button.isHidden() ? 0 : button.sizeThatFits({area.width(), roundSide}).width + 24;
    };
    auto depth = isColumn ? std::min(std::max({columnWidth, wanted(*back_), wanted(*use_)}), area.width() / 2)
                          : std::min(panelDepth, area.height() / 2);
    auto picture = area, panel = area;
    if (isColumn) {
        picture.size.width -= depth;
        panel.size.width = depth;
        (isRightToLeft() ? picture : panel).origin.x += isRightToLeft() ? depth : picture.width();
    } else {
        picture.size.height -= depth;
        panel.size.height = depth;
        panel.origin.y = picture.maxY();
    }
    auto inner = isColumn
        ? picture.inset({margin, isRightToLeft() ? 0 : margin, margin, isRightToLeft() ? margin : 0})
        : picture.inset({margin, margin, 0, margin});
    preview_->setFrame(inner.isNull() ? picture : inner);
    light_->setFrame(preview_->frame());
    layOutOverlays(preview_->frame());
    layOutPanel(panel, isColumn);
}

void CameraControls::layOutOverlays(CGRect picture)
{
    for (const auto& capsule : {time_, notice_}) {
        auto wide =
            std::min(capsule->sizeThatFits(picture.size).width + 24, std::max(picture.width() - 16, 0.0));
        capsule->setFrame(CGRect::make(picture.midX() - wide / 2, picture.minY() + 12, wide, timeHeight));
    }
    auto modesWide =
        std::min(std::max(modes_->sizeThatFits(picture.size).width, 160.0), picture.width() - 16);
    modes_->setFrame(CGRect::make(picture.midX() - modesWide / 2, picture.maxY() - modesHeight - 12,
                                  std::max(modesWide, 0.0), modesHeight));
    auto middle = picture.center();
    wheel_->setCenter(middle);
    play_->setFrame(CGRect::make(middle.x - playSide / 2, middle.y - playSide / 2, playSide, playSide));
    play_->setImage(
        symbolImage("play.fill", {.pointSize = 26}, std::max(traitCollection().displayScale, 1.0)));
    auto textWide = std::max(std::min(picture.width() - 40, 360.0), 0.0);
    auto textHigh = std::min(message_->sizeThatFits({textWide, picture.height()}).height, picture.height());
    // With the symbol above, the two in the middle together, where both have room.
    auto hasSymbol = textHigh + symbolSide + 12 <= picture.height() && !message_->isHidden();
    symbol_->setHidden(!hasSymbol);
    auto top = middle.y - (textHigh + (hasSymbol ? symbolSide + 12 : 0)) / 2;
    if (hasSymbol) {
        symbol_->setImage(
            symbolImage(symbolName_, {.pointSize = 40}, std::max(traitCollection().displayScale, 1.0)));
        symbol_->setFrame(CGRect::make(middle.x - symbolSide / 2, top, symbolSide, symbolSide));
        top += symbolSide + 12;
    }
    message_->setFrame(CGRect::make(middle.x - textWide / 2, top, textWide, textHigh));
}

void CameraControls::layOutPanel(CGRect panel, bool isColumn)
{
    auto centered = [](UIView& view, CGPoint center, CGSize size) {
        view.setFrame(CGRect::make(std::round(center.x - size.width / 2),
                                   std::round(center.y - size.height / 2), size.width, size.height));
    };
    auto side = std::max(std::min({CameraShutterButton::side, panel.width() - 8, panel.height() - 8}), 0.0);
    auto middle = panel.center();
    centered(*shutter_, middle, {side, side});
    switch_->setImage(symbolImage("arrow.triangle.2.circlepath",
                                  {.pointSize = 18, .weight = FontWeight::medium},
                                  std::max(traitCollection().displayScale, 1.0)));
    if (isColumn) {
        auto fitting = [&](const UIButton& button) {
            auto size = button.sizeThatFits({panel.width() - 8, roundSide});
            return CGSize{std::min(size.width, panel.width() - 8), roundSide};
        };
        centered(*back_, {middle.x, panel.maxY() - 16 - roundSide / 2}, fitting(*back_));
        centered(*use_, middle, fitting(*use_));
        centered(*switch_, {middle.x, panel.minY() + 16 + roundSide / 2}, {roundSide, roundSide});
        return;
    }
    // Reading begins at the way back. Without the shutter between them the two share all there is.
    auto room = std::max((panel.width() - side) / 2 - 12, 0.0);
    if (!use_->isHidden())
        room = std::max(panel.width() - 32, 0.0);
    auto place = [&](UIView& view, CGFloat wide, bool isAtEnd) {
        auto x = isAtEnd != isRightToLeft() ? panel.maxX() - 12 - wide : panel.minX() + 12;
        view.setFrame(CGRect::make(x, std::round(middle.y - roundSide / 2), wide, roundSide));
    };
    auto useWide = use_->isHidden() ? 0 : std::min(use_->sizeThatFits({room, roundSide}).width, room * 0.6);
    auto backWide = std::min(back_->sizeThatFits({room, roundSide}).width, room - useWide);
    place(*back_, backWide, false);
    place(*use_, useWide, true);
    place(*switch_, std::min(roundSide, room), true);
}

// --- The page --------------------------------------------------------------------------------------

CameraPage::CameraPage()
{
    setBackgroundColor(UIColor::black());
}

bool CameraPage::takesShutter(const UIPress& press)
{
    if ((press.key != UIKeyCode::space && press.key != UIKeyCode::returnKey) || press.modifiers.rawValue != 0)
        return false;
    if (auto shutter = onShutter; shutter && !press.isRepeat)
        shutter(); // this may be gone
    return true;
}

bool CameraPage::pressesBegan(const UIPress& press)
{
    return takesShutter(press) || PickerPage::pressesBegan(press);
}

bool CameraPage::performKeyEquivalent(const UIPress& press)
{
    return takesShutter(press) || PickerPage::performKeyEquivalent(press);
}

} // namespace platform

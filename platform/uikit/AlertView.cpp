// SPDX-License-Identifier: MIT
#include "platform/uikit/AlertView.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/shadow.h"
#include "platform/uikit/AlertButton.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIScrollView.h"
#include "platform/uikit/shortened.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr CGFloat alertWidth = 270, sheetWidth = 400; // at the default text size
constexpr double widestGrowth = 1.6;                  // of the width, with the text size
constexpr CGFloat sideInset = 16, topInset = 20, sheetTopInset = 14, textGap = 4;
constexpr std::size_t mostText = 8000; // bytes of a title or a message: some minutes' reading
constexpr CGFloat cancelGap = 8;       // between a sheet and the button that cancels it
constexpr CGFloat plateRadius = 14;
constexpr CGFloat shadowBlur = 11, shadowDrop = 8, shadowRoom = shadowReach(shadowBlur) + shadowDrop;

UIColor plateColor()
{
    return UIColor::dynamic(UIColor(0.98, 0.98, 0.985), UIColor(0.165, 0.165, 0.175), UIColor::white(),
                            UIColor::gray(0.06));
}

UIColor edgeColor()
{
    return UIColor::dynamic(UIColor::gray(0, 0.06), UIColor::gray(1, 0.14), UIColor::gray(0, 0.9),
                            UIColor::gray(1, 0.9));
}

// The ground of a card, with a fine edge.
class Plate : public UIView {
public:
    Plate()
    {
        setBackgroundColor(plateColor());
        setCornerRadius(plateRadius);
        setClipsToBounds(true);
    }
    void draw(CGContext& context, CGRect) override
    {
        auto width = 1 / std::max(traitCollection().displayScale, 1.0);
        auto edge = bounds().insetBy(width / 2, width / 2);
        if (!edge.isNull())
            context.stroke(UIBezierPath::roundedRect(edge, plateRadius), edgeColor(), {.lineWidth = width});
    }
};

// A soft shadow around where the card stands: of both cards behind both of them.
class Shadow : public UIView {
public:
    Shadow() { setUserInteractionEnabled(false); }
    void draw(CGContext& context, CGRect) override
    {
        auto card = bounds().insetBy(shadowRoom, shadowRoom);
        if (!card.isNull())
            drawShadow(context,
                       RectShadow{.rect = card.offsetBy(0, shadowDrop),
                                  .cornerRadius = plateRadius,
                                  .deviation = shadowBlur,
                                  .color = UIColor::gray(0, 0.3),
                                  .hidden = card.insetBy(plateRadius, plateRadius)});
    }
};

std::shared_ptr<UILabel> makeLabel()
{
    auto label = std::make_shared<UILabel>();
    label->setNumberOfLines(0);
    label->setTextAlignment(TextAlignment::center);
    return label;
}

class Area : public UIScrollView {
protected:
    CGRect indicatorArea() const override
    {
        auto area = UIScrollView::indicatorArea().insetBy(2, plateRadius / 2); // clear of the round corners
        return area.isNull() ? UIScrollView::indicatorArea() : area;
    }
};

std::shared_ptr<UIScrollView> makeArea(UIView& plate)
{
    auto area = std::make_shared<Area>();
    area->setClipsToBounds(true);
    area->setContentInsetAdjustmentBehavior(ContentInsetAdjustmentBehavior::never);
    area->setShowsHorizontalScrollIndicator(false);
    plate.addSubview(area);
    return area;
}

} // namespace

// Where all of it stands in a card of some width and at most some height.
struct AlertView::Arrangement {
    CGRect title, message; // in the text area
    CGFloat textContent = 0, text = 0;
    CGFloat buttonContent = 0, buttons = 0;
    bool isRow = false;
    CGFloat cancel = 0; // of the card below a sheet's, with the gap
    CGFloat height() const { return text + buttons + cancel; }
    std::vector<CGRect> buttonFrames; // in the area that holds each
};

AlertView::AlertView(UIAlertController& owner)
    : owner_(std::static_pointer_cast<UIAlertController>(owner.shared_from_this()))
    , shadow_(std::make_shared<Shadow>())
    , cancelShadow_(std::make_shared<Shadow>())
    , plate_(std::make_shared<Plate>())
    , cancelPlate_(std::make_shared<Plate>())
    , textArea_(makeArea(*plate_))
    , buttonArea_(makeArea(*plate_))
    , title_(makeLabel())
    , message_(makeLabel())
    , isSheet_(owner.preferredStyle() == UIAlertControllerStyle::actionSheet)
{
    textArea_->addSubview(title_);
    textArea_->addSubview(message_);
    for (const auto& view : {shadow_, cancelShadow_, plate_, cancelPlate_})
        addSubview(view);
    if (isSheet_) {
        title_->setTextColor(UIColor::secondaryLabel());
        message_->setTextColor(UIColor::secondaryLabel());
    }
    updateFonts();
}

void AlertView::updateFonts()
{
    auto& traits = traitCollection();
    auto font = [&](FontTextStyle style) {
        return UIFont::preferredFont(style, traits.preferredContentSizeCategory, traits.textScale);
    };
    title_->setFont(isSheet_ ? font(FontTextStyle::callout).withWeight(FontWeight::semibold)
                             : font(FontTextStyle::headline));
    message_->setFont(font(FontTextStyle::footnote));
}

void AlertView::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    updateFonts();
    setNeedsLayout();
    // The card's size is the container's to choose.
    if (auto container = superview())
        container->setNeedsLayout();
}

void AlertView::setContent(const std::string& title, const std::string& message)
{
    title_->setText(shortened(title, mostText));
    message_->setText(shortened(message, mostText));
    if (auto owner = owner_.lock())
        makeButtons(*owner);
    setNeedsLayout();
    if (auto container = superview())
        container->setNeedsLayout();
}

void AlertView::makeButtons(UIAlertController& owner)
{
    auto actions = owner.actions();
    std::ranges::stable_partition(
        actions, [](const auto& action) { return action->style() != UIAlertActionStyle::cancel; });
    auto isShown =
        std::ranges::equal(buttons_, actions, {}, [](const auto& button) { return button->action(); });
    if (!isShown) {
        for (const auto& button : buttons_)
            button->removeFromSuperview();
        for (const auto& separator : separators_)
            separator->removeFromSuperview();
        buttons_.clear();
        separators_.clear();
        for (const auto& action : actions) {
            auto button = std::make_shared<AlertButton>(action);
            std::weak_ptr<UIAlertController> weak = owner_;
            button->addAction(
                [weak, action](UIControl&) {
                    if (auto alert = weak.lock())
                        alert->choose(action);
                },
                {UIControlEvents::primaryActionTriggered});
            // A subview does not outlive the card with its actions.
            button->onPress = [this](const UIPress& press) { return handleKey(press); };
            auto isApart = isSheet_ && action->style() == UIAlertActionStyle::cancel;
            auto separator = std::make_shared<UIView>();
            separator->setBackgroundColor(UIColor::separator());
            separator->setUserInteractionEnabled(false);
            if (isApart) {
                cancelPlate_->addSubview(button);
            } else {
                buttonArea_->addSubview(button);
                buttonArea_->addSubview(separator);
            }
            buttons_.push_back(button);
            separators_.push_back(separator);
        }
        for (const auto& separator : separators_) {
            if (auto area = separator->superview())
                area->bringSubviewToFront(*separator);
        }
    }
    auto main = owner.actionOfReturn();
    for (const auto& button : buttons_) {
        button->setEnabled(button->action()->isEnabled());
        auto isApart = isSheet_ && button->action()->style() == UIAlertActionStyle::cancel;
        button->setDefault(isSheet_ ? isApart : button->action() == main);
        button->setShowsFocus(showsFocus_);
    }
}

CGFloat AlertView::widthIn(CGFloat room) const
{
    auto& traits = traitCollection();
    auto usual = preferredPointSize(FontTextStyle::body, UIContentSizeCategory::large);
    auto growth = preferredPointSize(FontTextStyle::body, traits.preferredContentSizeCategory)
        * traits.textScale / usual;
    auto wish = (isSheet_ ? sheetWidth : alertWidth) * std::clamp(growth, 1.0, widestGrowth);
    return std::max(std::min(std::round(wish), room), 0.0);
}

AlertView::Arrangement AlertView::arrange(CGFloat width, CGFloat height) const
{
    Arrangement all;
    auto textWidth = std::max(width - 2 * sideInset, 1.0);
    auto top = isSheet_ ? sheetTopInset : topInset;
    auto y = top;
    auto stand = [&](const UILabel& label, CGRect& frame) {
        if (label.text().empty())
            return;
        if (y > top)
            y += textGap;
        frame = CGRect::make(sideInset, y, textWidth, label.sizeThatFits({textWidth, 0}).height);
        y = frame.maxY();
    };
    stand(*title_, all.title);
    stand(*message_, all.message);
    all.textContent = y > top ? y + top : 0;

    auto fitsHalf = [&](const auto& button) { return button->naturalWidth() <= width / 2; };
    auto owner = owner_.lock();
    auto mayBeRow = !isSheet_ && buttons_.size() == 2 && (!owner || owner->allowsActionsSideBySide());
    all.isRow = mayBeRow && std::ranges::all_of(buttons_, fitsHalf);
    for (const auto& button : buttons_) {
        auto isApart = isSheet_ && button->action()->style() == UIAlertActionStyle::cancel;
        auto own = button->heightFitting(all.isRow ? width / 2 : width);
        if (isApart) {
            all.cancel = own + (buttons_.size() > 1 || all.textContent > 0 ? cancelGap : 0);
            all.buttonFrames.push_back(CGRect::make(0, 0, width, own));
        } else if (all.isRow) {
            all.buttonContent = std::max(all.buttonContent, own);
            // The one that cancels, which is last, stands where reading begins.
            auto isMirrored =
                effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
            auto isLeft = (button == buttons_.back()) != isMirrored;
            all.buttonFrames.push_back(CGRect::make(isLeft ? 0 : width / 2, 0, width / 2, own));
        } else {
            all.buttonFrames.push_back(CGRect::make(0, all.buttonContent, width, own));
            all.buttonContent += own;
        }
    }
    if (all.isRow) {
        for (auto& frame : all.buttonFrames)
            frame.size.height = all.buttonContent;
    }
    // What does not fit scrolls: the text first, the buttons where they would take more than half.
    auto room = std::max(height - all.cancel, 0.0);
    all.text = all.textContent;
    all.buttons = all.buttonContent;
    if (all.text + all.buttons > room) {
        all.buttons = std::min(all.buttons, std::max(std::floor(room / 2), room - all.text));
        all.text = std::min(all.text, room - all.buttons);
    }
    return all;
}

CGSize AlertView::sizeThatFits(CGSize room) const
{
    auto width = widthIn(room.width);
    return {width, std::min(std::ceil(arrange(width, room.height).height()), room.height)};
}

void AlertView::layoutSubviews()
{
    UIView::layoutSubviews();
    auto width = bounds().width();
    auto all = arrange(width, bounds().height());
    auto card = CGRect::make(0, 0, width, all.text + all.buttons);
    plate_->setFrame(card);
    plate_->setHidden(card.isEmpty());
    shadow_->setFrame(card.insetBy(-shadowRoom, -shadowRoom));
    textArea_->setFrame(CGRect::make(0, 0, width, all.text));
    textArea_->setContentSize({width, all.textContent});
    title_->setFrame(all.title);
    message_->setFrame(all.message);
    buttonArea_->setFrame(CGRect::make(0, all.text, width, all.buttons));
    buttonArea_->setContentSize({width, all.buttonContent});
    for (std::size_t i = 0; i < buttons_.size(); ++i)
        buttons_[i]->setFrame(all.buttonFrames[i]);
    placeSeparators(all);

    auto isApart = all.cancel > 0;
    auto cancelHeight = isApart ? buttons_.back()->frame().height() : 0;
    auto apart = CGRect::make(0, bounds().height() - cancelHeight, width, cancelHeight);
    cancelPlate_->setFrame(apart);
    cancelPlate_->setHidden(!isApart);
    cancelShadow_->setFrame(apart.insetBy(-shadowRoom, -shadowRoom));
    cancelShadow_->setHidden(!isApart);
}

void AlertView::placeSeparators(const Arrangement& all)
{
    auto hairline = 1 / std::max(traitCollection().displayScale, 1.0);
    auto width = bounds().width();
    for (std::size_t i = 0; i < separators_.size(); ++i) {
        auto frame = buttons_[i]->frame();
        auto isBetween = all.isRow && i == 1;
        separators_[i]->setFrame(isBetween ? CGRect::make(std::round(width / 2), 0, hairline, frame.height())
                                           : CGRect::make(0, frame.minY(), width, hairline));
        separators_[i]->setHidden(i == 0 && all.textContent == 0);
    }
}

void AlertView::didAppear()
{
    textArea_->flashScrollIndicators();
    buttonArea_->flashScrollIndicators();
    if (std::ranges::any_of(buttons_, &AlertButton::isFirstResponder))
        return;
    auto owner = owner_.lock();
    auto main = owner ? owner->actionOfReturn() : nullptr;
    auto found = std::ranges::find(buttons_, main, &AlertButton::action);
    if (main && found != buttons_.end())
        (*found)->becomeFirstResponder();
}

void AlertView::setShowsFocus(bool shows)
{
    showsFocus_ = shows;
    for (const auto& button : buttons_)
        button->setShowsFocus(shows);
}

// By where the buttons stand, whatever the direction of reading.
bool AlertView::moveFocus(int step)
{
    std::vector<std::shared_ptr<AlertButton>> order;
    std::ranges::copy_if(buttons_, std::back_inserter(order), &AlertButton::isEnabled);
    std::ranges::sort(order, {}, [](const auto& button) {
        auto place = button->convertTo(button->bounds(), nullptr);
        return std::pair(place.minY(), place.minX());
    });
    if (order.empty())
        return false;
    auto present = std::ranges::find_if(order, &AlertButton::isFirstResponder);
    if (present == order.end()) {
        (step > 0 ? order.front() : order.back())->becomeFirstResponder();
        return true;
    }
    auto next = present - order.begin() + step;
    if (next >= 0 && next < static_cast<std::ptrdiff_t>(order.size()))
        order[static_cast<std::size_t>(next)]->becomeFirstResponder();
    return true;
}

bool AlertView::handleKey(const UIPress& press)
{
    constexpr auto commanding =
        UIKeyModifierFlags::control | UIKeyModifierFlags::alternate | UIKeyModifierFlags::command;
    if ((press.modifiers.rawValue & commanding) != 0)
        return false;
    switch (press.key) {
    case UIKeyCode::tab:
        setShowsFocus(true);
        return false; // the window moves the focus
    case UIKeyCode::left:
    case UIKeyCode::up:
        setShowsFocus(true);
        return moveFocus(-1);
    case UIKeyCode::right:
    case UIKeyCode::down:
        setShowsFocus(true);
        return moveFocus(1);
    case UIKeyCode::pageUp:
    case UIKeyCode::pageDown:
    case UIKeyCode::home:
    case UIKeyCode::end:
        textArea_->scrollByKey(press);
        return true;
    case UIKeyCode::escape:
        // Held down it is still about what was there before.
        if (auto owner = owner_.lock(); owner && !press.isRepeat)
            owner->choose(owner->actionOfEscape());
        return true;
    default:
        return false;
    }
}

bool AlertView::pressesBegan(const UIPress& press)
{
    if (handleKey(press))
        return true;
    constexpr auto commanding =
        UIKeyModifierFlags::control | UIKeyModifierFlags::alternate | UIKeyModifierFlags::command;
    if (press.key == UIKeyCode::tab || (press.modifiers.rawValue & commanding) != 0)
        return UIView::pressesBegan(press);
    if (press.key == UIKeyCode::returnKey && !press.isRepeat) {
        if (auto owner = owner_.lock())
            owner->choose(owner->actionOfReturn());
    }
    return true; // a key meant for what is behind does nothing there
}

AccessibilityProperties AlertView::accessibilityNow() const
{
    auto properties = UIView::accessibilityNow();
    properties.role = isSheet_ ? AccessibilityRole::dialog : AccessibilityRole::alert;
    properties.isModal = true;
    if (properties.label.empty())
        properties.label = title_->text().empty() ? message_->text() : title_->text();
    if (properties.hint.empty() && !title_->text().empty())
        properties.hint = message_->text();
    return properties;
}

} // namespace platform

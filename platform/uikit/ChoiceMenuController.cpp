// SPDX-License-Identifier: MIT
#include "platform/uikit/ChoiceMenuController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/TextLayout.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UIScrollView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat markWidth = 28, sideInset = 12, verticalInset = 7;
constexpr CGFloat menuInset = 5;
constexpr CGFloat leastWidth = 120, mostWidth = 420, mostHeight = 360;
constexpr CGFloat cornerRadiusOfRow = 6;

TextStyle styleOf(const UIView& view)
{
    auto& traits = view.traitCollection();
    return {.font = UIFont::preferredFont(FontTextStyle::body, traits.preferredContentSizeCategory,
                                          traits.textScale),
            .lineBreak = LineBreak::truncateTail,
            .maxLines = 1};
}

bool isMirrored(const UIView& view)
{
    return view.effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
}

} // namespace

// A row, which draws its title itself: only rows that are seen are shaped.
class ChoiceMenuController::Row : public UIControl {
public:
    Row(ChoiceMenuController& menu, int index)
        : menu_(menu)
        , index_(index)
    {
        accessibility().role = AccessibilityRole::menuItem;
        accessibility().label = menu.titles_[static_cast<std::size_t>(index)];
        accessibility().isSelected = index == menu.selected_;
        addAction(
            [](UIControl& control) {
                static_cast<Row&>(control).menu_.choose(static_cast<Row&>(control).index_);
            },
            {UIControlEvents::primaryActionTriggered});
    }
    void pointerEntered() override { becomeFirstResponder(); }
    bool pressesBegan(const UIPress& press) override
    {
        return menu_.handleKey(press) || UIControl::pressesBegan(press);
    }
    void draw(CGContext& context, CGRect) override
    {
        auto area = bounds();
        bool isLit = isFirstResponder() || isHighlighted();
        if (isLit)
            context.fill(UIBezierPath::roundedRect(area, cornerRadiusOfRow), tintColor());
        auto ink = isLit ? legibleColor(tintColor()) : UIColor::label();
        bool mirrored = isMirrored(*this);
        TextLayout text(accessibility().label, styleOf(*this),
                        std::max(area.width() - markWidth - sideInset, 1.0));
        auto x = mirrored ? area.maxX() - markWidth - text.size().width : area.minX() + markWidth;
        text.draw(context, {x, area.midY() - text.size().height / 2}, ink);
        if (index_ != menu_.selected_)
            return;
        auto middle = mirrored ? area.maxX() - markWidth / 2 : area.minX() + markWidth / 2;
        UIBezierPath mark;
        mark.moveTo({middle - 5, area.midY()});
        mark.addLine({middle - 1.5, area.midY() + 4});
        mark.addLine({middle + 5, area.midY() - 4});
        StrokeStyle line;
        line.lineWidth = 1.8;
        line.lineCap = LineCap::round;
        line.lineJoin = LineJoin::round;
        context.stroke(mark, ink, line);
    }

private:
    ChoiceMenuController& menu_; // which removes this before it goes
    const int index_;
};

ChoiceMenuController::ChoiceMenuController(std::vector<std::string> titles, int selected,
                                           std::function<void(int)> onChoice)
    : titles_(std::move(titles))
    , selected_(selected)
    , onChoice_(std::move(onChoice))
{
    setModalPresentationStyle(UIModalPresentationStyle::popover);
}

ChoiceMenuController::~ChoiceMenuController()
{
    for (auto& row : rows_) {
        row->removeAllActions();
        row->removeFromSuperview();
    }
}

std::shared_ptr<UIViewController> controllerAround(const UIView& view)
{
    auto step = std::static_pointer_cast<const UIView>(view.weak_from_this().lock());
    for (; step; step = step->superview()) {
        if (auto controller = step->viewController())
            return controller;
    }
    return nullptr;
}

bool ChoiceMenuController::present(const std::shared_ptr<ChoiceMenuController>& menu, UIView& source,
                                   std::function<void()> onClosed)
{
    assertOnMainThread();
    auto presenter = controllerAround(source);
    if (!presenter || presenter->presentedViewController() || menu->titles_.empty())
        return false;
    menu->onClosed_ = std::move(onClosed);
    menu->source_ = std::static_pointer_cast<UIView>(source.shared_from_this());
    menu->view()->setTintColor(source.tintColor());
    // As large as its titles, as they are written where it opens.
    auto style = styleOf(source);
    CGFloat widest = 0;
    constexpr std::size_t titlesMeasured = 200;
    for (std::size_t index = 0; index < std::min(menu->titles_.size(), titlesMeasured); ++index)
        widest = std::max(widest, TextLayout(menu->titles_[index], style).size().width);
    menu->rowHeight_ = std::ceil(style.font.lineHeight()) + 2 * verticalInset;
    menu->setPreferredContentSize(
        {std::clamp(std::ceil(widest) + markWidth + sideInset + 2 * menuInset, leastWidth, mostWidth),
         std::min(static_cast<double>(menu->titles_.size()) * menu->rowHeight_ + 2 * menuInset, mostHeight)});
    presenter->present(menu, Animated::yes);
    return true;
}

std::shared_ptr<UIPresentationController>
ChoiceMenuController::makePresentationController(const std::shared_ptr<UIViewController>& presenting)
{
    auto self = std::static_pointer_cast<UIViewController>(shared_from_this());
    auto popover = std::make_shared<UIPopoverPresentationController>(self, presenting);
    popover->setSourceView(source_.lock());
    return popover;
}

void ChoiceMenuController::loadView()
{
    scroll_ = std::make_shared<UIScrollView>();
    scroll_->accessibility().role = AccessibilityRole::menu;
    for (int index = 0; index < static_cast<int>(titles_.size()); ++index) {
        rows_.push_back(std::make_shared<Row>(*this, index));
        scroll_->addSubview(rows_.back());
    }
    setView(scroll_);
}

void ChoiceMenuController::viewDidLayoutSubviews()
{
    auto width = std::max(scroll_->bounds().width() - 2 * menuInset, 0.0);
    for (std::size_t index = 0; index < rows_.size(); ++index)
        rows_[index]->setFrame(
            CGRect::make(menuInset, menuInset + static_cast<double>(index) * rowHeight_, width, rowHeight_));
    scroll_->setContentSize(
        {scroll_->bounds().width(), static_cast<double>(rows_.size()) * rowHeight_ + 2 * menuInset});
}

void ChoiceMenuController::viewDidAppear(Animated animated)
{
    UIViewController::viewDidAppear(animated);
    focus(std::max(selected_, 0));
}

void ChoiceMenuController::viewDidDisappear(Animated animated)
{
    UIViewController::viewDidDisappear(animated);
    if (auto tell = std::exchange(onClosed_, nullptr))
        tell();
}

void ChoiceMenuController::choose(int index)
{
    auto keepAlive = shared_from_this();
    auto tell = std::exchange(onChoice_, nullptr);
    dismiss(Animated::yes);
    if (tell)
        tell(index);
}

int ChoiceMenuController::focusedIndex() const
{
    auto found = std::ranges::find_if(rows_, [](auto& row) { return row->isFirstResponder(); });
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

void ChoiceMenuController::focus(int index)
{
    if (rows_.empty())
        return;
    auto& row = rows_[static_cast<std::size_t>(std::clamp(index, 0, static_cast<int>(rows_.size()) - 1))];
    scroll_->scrollRectToVisible(row->frame().insetBy(0, -menuInset));
    row->becomeFirstResponder();
}

bool ChoiceMenuController::handleKey(const UIPress& press)
{
    auto count = static_cast<int>(rows_.size());
    auto here = focusedIndex();
    auto page = std::max(static_cast<int>(scroll_->bounds().height() / std::max(rowHeight_, 1.0)) - 1, 1);
    switch (press.key) {
    case UIKeyCode::down:
        focus(here + 1 < count ? here + 1 : 0);
        return true;
    case UIKeyCode::up:
        focus(here > 0 ? here - 1 : count - 1);
        return true;
    case UIKeyCode::pageDown:
        focus(here + page);
        return true;
    case UIKeyCode::pageUp:
        focus(here - page);
        return true;
    case UIKeyCode::home:
        focus(0);
        return true;
    case UIKeyCode::end:
        focus(count - 1);
        return true;
    case UIKeyCode::character:
        break;
    default:
        return false;
    }
    if (press.charactersIgnoringModifiers.empty()
        || (press.modifiers.rawValue & ~UIKeyModifierFlags::shift) != 0)
        return false;
    auto begins = [&](const std::string& title) {
        auto lower = [](char each) {
            return each >= 'A' && each <= 'Z' ? static_cast<char>(each + 32) : each;
        };
        return std::ranges::equal(press.charactersIgnoringModifiers,
                                  std::string_view(title).substr(0, press.charactersIgnoringModifiers.size()),
                                  {}, {}, lower);
    };
    for (int step = 1; step <= count; ++step) {
        auto index = (std::max(here, 0) + step) % count;
        if (begins(titles_[static_cast<std::size_t>(index)])) {
            focus(index);
            break;
        }
    }
    return true;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPickerView.h"

#include "platform/dispatch/DisplayLink.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/TextLayout.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/NumericControl.h"
#include "platform/uikit/UIEvent.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace platform {

namespace {

constexpr int rowsSeen = 5;
constexpr CGFloat sideInset = 8;
constexpr CGFloat cornerRadiusOfBand = 8;
constexpr CGFloat clickTolerance = 4;
constexpr double settlingTime = 0.08; // seconds, in which two thirds of the way are done
constexpr double flingTime = 0.15;    // seconds that a fling goes on at its speed
constexpr double nearRow = 0.004;     // of a row: at rest

UIFont fontOf(const UIView& view)
{
    auto& traits = view.traitCollection();
    return UIFont::preferredFont(FontTextStyle::title3, traits.preferredContentSizeCategory,
                                 traits.textScale);
}

double secondsBetween(Instant from, Instant to)
{
    return std::chrono::duration<double>(to - from).count();
}

} // namespace

// One wheel: the number of its row, and where it is while it turns.
class UIPickerView::Wheel : public NumericControl {
public:
    Wheel(UIPickerView& picker, int component)
        : NumericControl({0, 0}, 1)
        , picker_(picker)
        , component_(component)
        , ring_(std::make_shared<FocusRing>())
    {
        setClipsToBounds(true);
        addSubview(ring_);
        addAction(
            [](UIControl& control) {
                static_cast<Wheel&>(control).picker_.rowChosen(static_cast<Wheel&>(control).component_);
            },
            {UIControlEvents::valueChanged});
    }
    void setRows(int rows)
    {
        bool isSame = std::exchange(rows_, std::max(rows, 0)) == rows_;
        setRange({0, std::max(rows_ - 1.0, 0.0)});
        if (!isSame)
            offset_ = value();
        setNeedsDisplay();
    }
    int row() const { return rows_ > 0 ? static_cast<int>(value()) : -1; }
    void goTo(int row, Animated animated)
    {
        setValue(row);
        if (animated == Animated::yes && !traitCollection().prefersReducedMotion && window())
            return;
        frames_ = {};
        offset_ = value();
        setNeedsDisplay();
    }
    bool pressesBegan(const UIPress& press) override
    {
        // Down is further down the rows.
        auto turned = press;
        using enum UIKeyCode;
        constexpr std::pair<UIKeyCode, UIKeyCode> swaps[] = {
            {up, down}, {down, up}, {pageUp, pageDown}, {pageDown, pageUp}};
        for (auto [from, to] : swaps) {
            if (press.key == from)
                turned.key = to;
        }
        if (press.key == left || press.key == right)
            return UIView::pressesBegan(press);
        return NumericControl::pressesBegan(turned);
    }
    bool scrollWheel(const UIScrollWheel& wheel) override
    {
        if (!isEnabled() || wheel.delta.dy == 0)
            return NumericControl::scrollWheel(wheel);
        wheelDelta_ -= wheel.delta.dy;
        auto rows = std::trunc(wheelDelta_ / picker_.rowHeight());
        wheelDelta_ -= rows * picker_.rowHeight();
        changeByUser(value() + rows);
        return true;
    }
    void draw(CGContext& context, CGRect) override
    {
        auto height = picker_.rowHeight();
        auto middle = bounds().midY();
        TextStyle style{.font = fontOf(*this),
                        .alignment = TextAlignment::center,
                        .lineBreak = LineBreak::truncateTail,
                        .maxLines = 1};
        auto width = std::max(bounds().width() - 2 * sideInset, 1.0);
        auto reach = rowsSeen / 2 + 1;
        auto nearest = static_cast<int>(std::round(offset_));
        for (int row = std::max(nearest - reach, 0); row <= std::min(nearest + reach, rows_ - 1); ++row) {
            auto away = row - offset_;
            auto strength = std::clamp(1 - std::abs(away) / (reach + 0.2), 0.0, 1.0);
            TextLayout text(picker_.titleOf(row, component_), style, width);
            auto y = middle + away * height - text.size().height / 2;
            auto color = isEnabled() ? UIColor::label() : UIColor::tertiaryLabel();
            auto alpha =
                color.components(context.appearance()).alpha * (std::abs(away) < 0.5 ? 1 : 0.75 * strength);
            text.draw(context, {bounds().minX() + sideInset, y},
                      color.resolved(context.appearance()).withAlphaComponent(alpha));
        }
    }
    void layoutSubviews() override
    {
        NumericControl::layoutSubviews();
        auto height = picker_.rowHeight();
        ring_->showAround(CGRect::make(3, bounds().midY() - height / 2 + 3,
                                       std::max(bounds().width() - 6, 0.0), height - 6),
                          cornerRadiusOfBand - 3);
    }
    AccessibilityProperties accessibilityNow() const override
    {
        auto properties = NumericControl::accessibilityNow();
        properties.role = AccessibilityRole::spinButton;
        if (properties.label.empty())
            properties.label = picker_.accessibility().label;
        if (rows_ > 0)
            properties.value = picker_.titleOf(row(), component_);
        return properties;
    }
    void didMoveToWindow() override
    {
        NumericControl::didMoveToWindow();
        frames_ = {};
        offset_ = value();
    }

protected:
    double pageStep() const override { return rowsSeen - 1; }
    void controlStateChanged() override
    {
        ring_->setHidden(!isFirstResponder());
        setNeedsDisplay();
    }
    // The number has changed: the rows follow.
    void placeParts() override
    {
        if (traitCollection().prefersReducedMotion || !window()) {
            offset_ = value();
            setNeedsDisplay();
        } else if (!isTracking()) {
            settle();
        }
    }
    bool beginTracking(UITouch& touch) override
    {
        frames_ = {};
        start_ = last_ = touch.location(*this).y;
        lastTime_ = touch.timestamp;
        speed_ = 0;
        hasMoved_ = false;
        return rows_ > 0;
    }
    bool continueTracking(UITouch& touch) override
    {
        auto y = touch.location(*this).y;
        hasMoved_ |= std::abs(y - start_) > clickTolerance;
        if (!hasMoved_)
            return true;
        auto rows = (last_ - y) / picker_.rowHeight();
        if (auto time = secondsBetween(lastTime_, touch.timestamp); time > 0)
            speed_ = rows / time;
        last_ = y;
        lastTime_ = touch.timestamp;
        auto past = offset_ < range().lower || offset_ > range().upper;
        offset_ = std::clamp(offset_ + (past ? rows / 2 : rows), -1.0, range().upper + 1);
        setNeedsDisplay();
        return true;
    }
    void endTracking(UITouch& touch) override
    {
        if (!hasMoved_) {
            offset_ = value();
            chosen_ = value() + std::round((touch.location(*this).y - bounds().midY()) / picker_.rowHeight());
        } else {
            auto rested = secondsBetween(lastTime_, touch.timestamp) > flingTime;
            chosen_ = offset_ + (rested ? 0 : speed_ * flingTime);
        }
    }
    void cancelTracking() override { settle(); }
    void touchesEnded(UITouch& touch) override
    {
        auto keepAlive = weak_from_this().lock();
        NumericControl::touchesEnded(touch);
        if (auto chosen = std::exchange(chosen_, std::nullopt); chosen && !changeByUser(*chosen))
            settle();
    }

private:
    void settle()
    {
        if (frames_ || offset_ == value())
            return;
        lastTime_ = RunLoop::main().clock().now();
        frames_ = DisplayLink::shared().request([this](Instant time) {
            auto part = 1 - std::exp(-secondsBetween(lastTime_, time) / settlingTime);
            lastTime_ = time;
            offset_ += (value() - offset_) * part;
            if (std::abs(value() - offset_) < nearRow) {
                offset_ = value();
                frames_ = {};
            }
            setNeedsDisplay();
        });
    }

    UIPickerView& picker_; // which removes this before it goes
    const int component_;
    std::shared_ptr<FocusRing> ring_;
    int rows_ = 0;
    double offset_ = 0; // rows, where it is on screen
    CGFloat start_ = 0, last_ = 0;
    Instant lastTime_;
    double speed_ = 0; // rows a second
    double wheelDelta_ = 0;
    std::optional<double> chosen_; // by the touch that ends
    bool hasMoved_ = false;
    Token frames_; // while it turns
};

UIPickerView::UIPickerView() = default;

UIPickerView::UIPickerView(CGRect frame)
    : UIView(frame)
{
}

UIPickerView::~UIPickerView()
{
    for (auto& wheel : wheels_) {
        wheel->removeAllActions();
        wheel->removeFromSuperview();
    }
}

void UIPickerView::setDelegate(std::weak_ptr<UIPickerViewDelegate> delegate)
{
    assertOnMainThread();
    delegate_ = std::move(delegate);
    reloadAllComponents();
}

void UIPickerView::reloadAllComponents()
{
    assertOnMainThread();
    auto delegate = delegate_.lock();
    auto count = delegate ? static_cast<std::size_t>(std::max(delegate->numberOfComponents(*this), 0)) : 0;
    while (wheels_.size() > count) {
        wheels_.back()->removeFromSuperview();
        wheels_.pop_back();
    }
    while (wheels_.size() < count) {
        wheels_.push_back(std::make_shared<Wheel>(*this, static_cast<int>(wheels_.size())));
        wheels_.back()->setEnabled(isEnabled_);
        addSubview(wheels_.back());
    }
    for (int component = 0; component < numberOfComponents(); ++component)
        wheels_[static_cast<std::size_t>(component)]->setRows(delegate->numberOfRows(*this, component));
    setNeedsLayout();
}

std::string UIPickerView::titleOf(int row, int component) const
{
    auto delegate = delegate_.lock();
    return delegate ? delegate->titleForRow(*this, row, component) : std::string();
}

void UIPickerView::rowChosen(int component)
{
    if (auto delegate = delegate_.lock())
        delegate->didSelectRow(*this, selectedRow(component), component);
}

int UIPickerView::selectedRow(int component) const
{
    auto isThere = component >= 0 && component < numberOfComponents();
    return isThere ? wheels_[static_cast<std::size_t>(component)]->row() : -1;
}

void UIPickerView::selectRow(int row, int component, Animated animated)
{
    assertOnMainThread();
    if (component >= 0 && component < numberOfComponents())
        wheels_[static_cast<std::size_t>(component)]->goTo(row, animated);
}

void UIPickerView::setEnabled(bool isEnabled)
{
    isEnabled_ = isEnabled;
    for (auto& wheel : wheels_)
        wheel->setEnabled(isEnabled);
}

// --- Look ----------------------------------------------------------------------------------------

CGFloat UIPickerView::rowHeight() const
{
    return std::ceil(fontOf(*this).lineHeight()) + 8;
}

void UIPickerView::draw(CGContext& context, CGRect)
{
    auto height = rowHeight();
    auto band = CGRect::make(bounds().minX(), bounds().midY() - height / 2, bounds().width(), height);
    context.fill(UIBezierPath::roundedRect(band, cornerRadiusOfBand), UIColor::tertiarySystemFill());
    if (isHighContrast(*this))
        context.stroke(UIBezierPath::roundedRect(band.insetBy(0.5, 0.5), cornerRadiusOfBand),
                       UIColor::label());
}

void UIPickerView::layoutSubviews()
{
    UIView::layoutSubviews();
    bool isMirrored = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto delegate = delegate_.lock();
    auto weightOf = [&](int component) {
        return delegate ? std::max(delegate->weightOfComponent(*this, component), 0.01) : 1;
    };
    double whole = 0;
    for (int component = 0; component < numberOfComponents(); ++component)
        whole += weightOf(component);
    auto widthOf = [&](int component) { return bounds().width() * weightOf(component) / whole; };
    CGFloat start = 0;
    for (int first = 0, next = 0; first < numberOfComponents(); first = next) {
        auto together = widthOf(first);
        for (next = first + 1;
             next < numberOfComponents() && delegate && delegate->isReadAfterPrevious(*this, next); ++next)
            together += widthOf(next);
        auto x = isMirrored ? bounds().maxX() - start - together : bounds().minX() + start;
        for (int component = first; component < next; ++component) {
            wheels_[static_cast<std::size_t>(component)]->setFrame(
                CGRect::make(x, bounds().minY(), widthOf(component), bounds().height()));
            x += widthOf(component);
        }
        start += together;
    }
}

CGSize UIPickerView::intrinsicContentSize() const
{
    return {noIntrinsicMetric, rowHeight() * rowsSeen};
}

CGSize UIPickerView::sizeThatFits(CGSize available) const
{
    constexpr CGFloat usualWidth = 240;
    auto width = std::isfinite(available.width) && available.width > 0 ? available.width : usualWidth;
    return {width, rowHeight() * rowsSeen};
}

void UIPickerView::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    invalidateIntrinsicContentSize();
    setNeedsLayout();
    setNeedsDisplay();
}

AccessibilityProperties UIPickerView::accessibilityNow() const
{
    auto properties = UIView::accessibilityNow();
    if (properties.role == AccessibilityRole::none)
        properties.role = AccessibilityRole::group;
    return properties;
}

} // namespace platform

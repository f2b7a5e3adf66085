// SPDX-License-Identifier: MIT
#include "platform/uikit/ColorPanelController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/ChoiceMenuController.h"
#include "platform/uikit/ControlLook.h"
#include "platform/uikit/UIPopoverPresentationController.h"
#include "platform/uikit/UISlider.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace platform {

namespace {

constexpr int columns = 6;
constexpr CGFloat swatchSize = 30, distance = 10, inset = 14, sliderHeight = 30;

std::vector<ColorComponents> palette()
{
    const UIColor colors[] = {UIColor::systemRed(),    UIColor::systemOrange(), UIColor::systemYellow(),
                              UIColor::systemGreen(),  UIColor::systemTeal(),   UIColor::systemBlue(),
                              UIColor::systemIndigo(), UIColor::systemPurple(), UIColor::systemPink(),
                              UIColor::systemBrown(),  UIColor::systemGray(),   UIColor::black()};
    std::vector<ColorComponents> components;
    for (auto& color : colors)
        components.push_back(color.components());
    return components;
}

std::string hexOf(const ColorComponents& color)
{
    auto byte = [](double part) { return static_cast<unsigned>(std::clamp(part, 0.0, 1.0) * 255 + 0.5); };
    char text[8];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", byte(color.red), byte(color.green), byte(color.blue));
    return text;
}

} // namespace

class ColorPanelController::Swatch : public UIControl {
public:
    explicit Swatch(const ColorComponents& components)
        : color(components)
        , ring_(std::make_shared<FocusRing>())
    {
        accessibility().role = AccessibilityRole::radioButton;
        accessibility().label = hexOf(components);
        addSubview(ring_);
    }
    const ColorComponents color;

    void draw(CGContext& context, CGRect) override
    {
        auto area = bounds().insetBy(1, 1);
        context.fill(UIBezierPath::oval(area), UIColor(color));
        context.stroke(UIBezierPath::oval(area), UIColor::separator());
        if (isSelected())
            context.stroke(UIBezierPath::oval(area.insetBy(4, 4)), UIColor::white(), {.lineWidth = 2.5});
    }
    void layoutSubviews() override
    {
        UIControl::layoutSubviews();
        ring_->showAround(bounds(), bounds().width() / 2);
    }

protected:
    void controlStateChanged() override
    {
        ring_->setHidden(!isFirstResponder());
        setNeedsDisplay();
    }

private:
    std::shared_ptr<FocusRing> ring_;
};

ColorPanelController::ColorPanelController(const UIColor& color, std::function<void(const UIColor&)> onChange)
    : color_(color.components())
    , onChange_(std::move(onChange))
{
    setModalPresentationStyle(UIModalPresentationStyle::popover);
    auto rows = (static_cast<double>(palette().size()) + columns - 1) / columns;
    setPreferredContentSize(
        {2 * inset + columns * swatchSize + (columns - 1) * distance,
         2 * inset + static_cast<int>(rows) * (swatchSize + distance) + 3 * sliderHeight});
}

ColorPanelController::~ColorPanelController()
{
    for (auto& swatch : swatches_)
        swatch->removeAllActions();
    for (auto& slider : sliders_)
        slider->removeAllActions();
}

bool ColorPanelController::present(const std::shared_ptr<ColorPanelController>& panel, UIView& source,
                                   std::function<void()> onClosed)
{
    assertOnMainThread();
    auto presenter = controllerAround(source);
    if (!presenter || presenter->presentedViewController())
        return false;
    panel->source_ = std::static_pointer_cast<UIView>(source.shared_from_this());
    panel->onClosed_ = std::move(onClosed);
    presenter->present(panel, Animated::yes);
    return true;
}

std::shared_ptr<UIPresentationController>
ColorPanelController::makePresentationController(const std::shared_ptr<UIViewController>& presenting)
{
    auto self = std::static_pointer_cast<UIViewController>(shared_from_this());
    auto popover = std::make_shared<UIPopoverPresentationController>(self, presenting);
    popover->setSourceView(source_.lock());
    return popover;
}

void ColorPanelController::loadView()
{
    auto content = std::make_shared<UIView>();
    for (auto& color : palette()) {
        auto swatch = std::make_shared<Swatch>(color);
        swatch->addAction([this](UIControl& control) { take(static_cast<Swatch&>(control).color); },
                          {UIControlEvents::primaryActionTriggered});
        content->addSubview(swatch);
        swatches_.push_back(std::move(swatch));
    }
    constexpr std::pair<const char*, const UIColor& (*)()> channels[] = {
        {"R", &UIColor::systemRed}, {"G", &UIColor::systemGreen}, {"B", &UIColor::systemBlue}};
    for (auto& [name, color] : channels) {
        auto slider = std::make_shared<UISlider>();
        slider->accessibility().label = name;
        slider->setRange({0, 255});
        slider->setStepValue(1);
        slider->setMinimumTrackTintColor(color());
        slider->addAction([this](UIControl&) { mixed(); }, {UIControlEvents::valueChanged});
        content->addSubview(slider);
        sliders_.push_back(std::move(slider));
    }
    setView(content);
    show();
}

void ColorPanelController::viewDidLayoutSubviews()
{
    auto width = view()->bounds().width();
    auto used = columns * swatchSize + (columns - 1) * distance;
    auto start = std::max((width - used) / 2, 0.0);
    CGFloat y = inset;
    for (std::size_t index = 0; index < swatches_.size(); ++index) {
        auto column = static_cast<double>(index % columns);
        y = inset + static_cast<double>(index / columns) * (swatchSize + distance);
        swatches_[index]->setFrame(
            CGRect::make(start + column * (swatchSize + distance), y, swatchSize, swatchSize));
    }
    y += swatchSize + distance;
    for (auto& slider : sliders_) {
        slider->setFrame(CGRect::make(inset, y, std::max(width - 2 * inset, 0.0), sliderHeight));
        y += sliderHeight;
    }
}

void ColorPanelController::viewDidDisappear(Animated animated)
{
    UIViewController::viewDidDisappear(animated);
    if (auto tell = std::exchange(onClosed_, nullptr))
        tell();
}

void ColorPanelController::take(const ColorComponents& color)
{
    auto keepAlive = shared_from_this();
    color_ = {color.red, color.green, color.blue, color_.alpha};
    show();
    if (auto tell = onChange_)
        tell(UIColor(color_));
}

void ColorPanelController::mixed()
{
    take({sliders_[0]->value() / 255, sliders_[1]->value() / 255, sliders_[2]->value() / 255});
}

void ColorPanelController::show()
{
    const double parts[] = {color_.red, color_.green, color_.blue};
    for (std::size_t index = 0; index < sliders_.size(); ++index)
        sliders_[index]->setValue(parts[index] * 255);
    for (auto& swatch : swatches_)
        swatch->setSelected(hexOf(swatch->color) == hexOf(color_));
}

} // namespace platform

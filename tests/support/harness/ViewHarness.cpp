// SPDX-License-Identifier: MIT
#include "tests/support/harness/ViewHarness.h"

#include "platform/foundation/Precondition.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIImage.h"
#include "tests/support/harness/accessibilityTree.h"

namespace harness {

using namespace platform;
using namespace std::chrono_literals;

namespace {

// Between the events of one gesture, as hands are.
constexpr Duration pause = 10ms;

UIView* findIn(UIView& view, std::string_view label)
{
    const auto properties = view.accessibilityNow();
    if (properties.label == label || properties.identifier == label)
        return &view;
    for (const auto& subview : view.subviews()) {
        if (auto* found = findIn(*subview, label))
            return found;
    }
    return nullptr;
}

std::size_t sequenceLength(char lead)
{
    auto byte = static_cast<unsigned char>(lead);
    return byte < 0x80 ? 1 : byte < 0xe0 ? 2 : byte < 0xf0 ? 3 : 4;
}

} // namespace

ViewHarness::ViewHarness(CGSize size, const UITraitCollection& traits)
    : window_(std::make_shared<UIWindow>(CGRect{{}, size}))
{
    window_->setBaseTraits(traits);
}

ViewHarness::~ViewHarness()
{
    if (window_)
        window_->close();
}

void ViewHarness::show(std::shared_ptr<UIViewController> controller)
{
    window_->setRootViewController(std::move(controller));
    window_->showOffscreen();
    window_->setKeyWindow(true);
    clock_.settle();
}

void ViewHarness::show(std::shared_ptr<UIView> view)
{
    auto controller = std::make_shared<UIViewController>();
    controller->setView(std::move(view));
    show(std::move(controller));
}

void ViewHarness::changeTraits(const std::function<void(UITraitCollection&)>& change)
{
    auto traits = window_->baseTraits();
    change(traits);
    window_->setBaseTraits(traits);
    clock_.settle();
}

void ViewHarness::resize(CGSize size)
{
    window_->setFrameSize(size);
    clock_.settle();
}

std::vector<Element> ViewHarness::findAllWithin(const UIView& root, AccessibilityRole role, Label label)
{
    clock_.settle();
    std::vector<Element> found;
    forEachElement(root, [&](const std::shared_ptr<UIView>& view, int) {
        const auto properties = view->accessibilityNow();
        if (properties.role == role
            && (!label || properties.label == *label || properties.identifier == *label))
            found.emplace_back(*this, view);
        return true;
    });
    return found;
}

Element ViewHarness::findWithin(const UIView& root, AccessibilityRole role, Label label)
{
    auto found = findAllWithin(root, role, label);
    if (found.size() != 1) {
        auto reason = std::string("the test looks for the one ").append(roleName(role));
        if (label)
            reason.append(" \"").append(*label).append("\"");
        reason.append(" and finds ").append(std::to_string(found.size())).append("; there are:\n");
        preconditionFailure(reason.append(describeElements(root)));
    }
    return found.front();
}

Element ViewHarness::find(AccessibilityRole role, std::string_view label)
{
    return findWithin(*window_, role, label);
}

Element ViewHarness::find(AccessibilityRole role)
{
    return findWithin(*window_, role, std::nullopt);
}

std::optional<Element> ViewHarness::tryFind(AccessibilityRole role, std::string_view label)
{
    auto found = findAll(role, label);
    return found.empty() ? std::nullopt : std::optional(found.front());
}

std::optional<Element> ViewHarness::tryFind(AccessibilityRole role)
{
    auto found = findAll(role);
    return found.empty() ? std::nullopt : std::optional(found.front());
}

std::vector<Element> ViewHarness::findAll(AccessibilityRole role)
{
    return findAllWithin(*window_, role, std::nullopt);
}

std::vector<Element> ViewHarness::findAll(AccessibilityRole role, std::string_view label)
{
    return findAllWithin(*window_, role, label);
}

std::optional<Element> ViewHarness::focused()
{
    auto view = std::dynamic_pointer_cast<UIView>(window_->firstResponder());
    if (!view || view->accessibilityNow().role == AccessibilityRole::none)
        return std::nullopt;
    return Element(*this, std::move(view));
}

UIView& ViewHarness::find(std::string_view label)
{
    auto* found = findIn(*window_, label);
    precondition(found != nullptr, "no view has the label that the test looks for");
    return *found;
}

void ViewHarness::tap(CGPoint place, const Press& press)
{
    auto keptAlive = window_;
    for (int count = 1; count <= press.tapCount; ++count) {
        auto once = press;
        once.tapCount = count;
        down(place, once);
        clock_.advance(pause);
        up();
        clock_.advance(pause);
    }
}

void ViewHarness::tap(std::string_view label)
{
    auto& view = find(label);
    tap(view.convertTo(view.bounds().center(), nullptr));
}

void ViewHarness::down(CGPoint place, const Press& press)
{
    precondition(!touch_, "the pointer is down already");
    touch_ = std::make_shared<UITouch>(UITouch{.type = press.type,
                                               .button = press.button,
                                               .modifiers = press.modifiers,
                                               .tapCount = press.tapCount,
                                               .timestamp = clock_.now(),
                                               .windowLocation = place});
    window_->sendTouch(*touch_);
    clock_.settle();
}

void ViewHarness::moveTo(CGPoint place)
{
    send(UITouchPhase::moved, place);
}

ViewHarness& ViewHarness::pull(std::initializer_list<CGPoint> places)
{
    down(*places.begin());
    for (const auto* place = places.begin() + 1; place != places.end(); ++place)
        moveTo(*place);
    return *this;
}

void ViewHarness::up()
{
    send(UITouchPhase::ended, touch_ ? touch_->windowLocation : CGPoint{});
}

void ViewHarness::cancel()
{
    send(UITouchPhase::cancelled, touch_ ? touch_->windowLocation : CGPoint{});
}

void ViewHarness::send(UITouchPhase phase, CGPoint place)
{
    precondition(touch_ != nullptr, "the pointer is not down");
    touch_->phase = phase;
    touch_->previousWindowLocation = std::exchange(touch_->windowLocation, place);
    touch_->timestamp = clock_.now();
    auto isLast = phase != UITouchPhase::moved;
    std::shared_ptr<UITouch> touch = isLast ? std::exchange(touch_, nullptr) : touch_;
    if (window_)
        window_->sendTouch(*touch);
    clock_.settle();
}

void ViewHarness::drag(CGPoint from, CGPoint to)
{
    drag(from, to, 200ms, Press{});
}

void ViewHarness::drag(CGPoint from, CGPoint to, Duration time, const Press& press)
{
    drag(from, to, DragOptions{.time = time, .press = press});
}

void ViewHarness::drag(CGPoint from, CGPoint to, const DragOptions& options)
{
    precondition(options.steps > 0, "a drag takes one step or more");
    down(from, options.press);
    for (int step = 1; step <= options.steps; ++step) {
        clock_.advance(options.time / options.steps);
        auto part = CGFloat(step) / options.steps;
        moveTo({from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part});
    }
    clock_.advance(options.rest);
    up();
}

void ViewHarness::hover(CGPoint place)
{
    window_->sendHover(place);
    clock_.settle();
}

bool ViewHarness::scroll(CGPoint place, CGVector delta)
{
    return turnWheel(place, UIScrollWheel{.delta = delta});
}

bool ViewHarness::turnWheel(CGPoint place, const UIScrollWheel& wheel)
{
    auto sent = wheel;
    sent.windowLocation = place;
    sent.timestamp = clock_.now();
    auto wasTaken = window_->sendScroll(sent);
    clock_.settle();
    return wasTaken;
}

bool ViewHarness::press(UIKeyCode key, std::uint8_t modifiers)
{
    UIPress press{.key = key, .modifiers = {modifiers}};
    if (key == UIKeyCode::space)
        press.characters = press.charactersIgnoringModifiers = " ";
    return send(std::move(press));
}

void ViewHarness::press(std::initializer_list<UIKeyCode> keys)
{
    for (auto key : keys)
        press(key);
}

bool ViewHarness::press(std::string_view character, std::uint8_t modifiers)
{
    constexpr auto silent =
        UIKeyModifierFlags::control | UIKeyModifierFlags::alternate | UIKeyModifierFlags::command;
    return send({.key = character == " " ? UIKeyCode::space : UIKeyCode::character,
                 .modifiers = {modifiers},
                 .characters = std::string((modifiers & silent) == 0 ? character : ""),
                 .charactersIgnoringModifiers = std::string(character)});
}

bool ViewHarness::send(UIPress press)
{
    press.timestamp = clock_.now();
    auto keptAlive = window_;
    auto wasHandled = keptAlive->sendPress(press);
    keptAlive->sendPressEnded(press); // though it may be closed
    clock_.settle();
    return wasHandled;
}

void ViewHarness::type(std::string_view text)
{
    while (!text.empty() && window_) {
        if (text.front() == '\n') {
            press(UIKeyCode::returnKey);
            text.remove_prefix(1);
            continue;
        }
        auto length = std::min(sequenceLength(text.front()), text.size());
        press(text.substr(0, length), 0);
        text.remove_prefix(length);
    }
}

std::vector<CGRect> ViewHarness::paintFrame()
{
    clock_.settle();
    auto dirty = window_->takeDirtyRegion();
    if (!dirty.isEmpty())
        picture(dirty.rects());
    return dirty.rects();
}

ViewHarness::Frames ViewHarness::playFrames(Duration time)
{
    constexpr Duration frame = std::chrono::nanoseconds{1'000'000'000 / 60};
    Frames frames;
    for (Duration passed{}; passed + frame <= time; passed += frame) {
        clock_.advance(frame);
        ++frames.passed;
        auto rects = paintFrame();
        frames.painted += rects.empty() ? 0 : 1;
        for (const auto& rect : rects)
            frames.area += rect.size.width * rect.size.height;
    }
    return frames;
}

UIImage ViewHarness::snapshot()
{
    clock_.settle();
    return picture({{{}, window_->bounds().size}});
}

UIImage ViewHarness::picture(const std::vector<CGRect>& painted)
{
    auto traits = window_->traitCollection();
    auto image = makeImage(
        window_->bounds().size, traits.displayScale,
        [&](CGContext& context) {
            for (const auto& rect : painted)
                window_->paint(context, rect);
        },
        traits.colorAppearance());
    precondition(image.has_value(), "the window is too large for a picture");
    return *image;
}

} // namespace harness

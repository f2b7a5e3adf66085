// SPDX-License-Identifier: MIT
#include "platform/uikit/UISearchBar.h"

#include "platform/graphics/CGContext.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/systemText.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat ornamentWidth = 26; // of the lens and of the button, inside of the field
constexpr CGFloat cancelDistance = 8;
constexpr CGFloat usualWidth = 240;

} // namespace

class UISearchBar::Lens : public UIView {
public:
    Lens()
    {
        setUserInteractionEnabled(false);
        accessibility().isHidden = true;
    }
    bool isMirrored = false;
    void draw(CGContext& context, CGRect) override
    {
        auto middle = bounds().center();
        constexpr CGFloat radius = 4.5;
        auto handle = isMirrored ? -1.0 : 1.0;
        CGPoint glass{middle.x - 1.5 * handle, middle.y - 1.5};
        UIBezierPath path =
            UIBezierPath::oval(CGRect::make(glass.x - radius, glass.y - radius, 2 * radius, 2 * radius));
        path.moveTo({glass.x + handle * radius * 0.72, glass.y + radius * 0.72});
        path.addLine({glass.x + handle * (radius + 3), glass.y + radius + 3});
        StrokeStyle line;
        line.lineWidth = 1.6;
        line.lineCap = LineCap::round;
        context.stroke(path, UIColor::secondaryLabel(), line);
    }
};

class UISearchBar::ClearButton : public UIControl {
public:
    // For the pointer: Escape does the same, and assistive technology edits the text.
    ClearButton() { accessibility().isHidden = true; }
    bool canBecomeFirstResponder() const override { return false; }
    void draw(CGContext& context, CGRect) override
    {
        auto middle = bounds().center();
        constexpr CGFloat radius = 8, arm = 2.8;
        auto disc = CGRect::make(middle.x - radius, middle.y - radius, 2 * radius, 2 * radius);
        context.fill(UIBezierPath::oval(disc),
                     isHighlighted() ? UIColor::secondaryLabel() : UIColor::tertiaryLabel());
        UIBezierPath cross;
        cross.moveTo({middle.x - arm, middle.y - arm});
        cross.addLine({middle.x + arm, middle.y + arm});
        cross.moveTo({middle.x + arm, middle.y - arm});
        cross.addLine({middle.x - arm, middle.y + arm});
        StrokeStyle line;
        line.lineWidth = 1.6;
        line.lineCap = LineCap::round;
        context.stroke(cross, UIColor::systemBackground(), line);
    }
};

UISearchBar::UISearchBar()
{
    setUp();
}

UISearchBar::UISearchBar(CGRect frame)
    : UIView(frame)
{
    setUp();
}

UISearchBar::~UISearchBar()
{
    // Introspection may have handed them to somebody who keeps them.
    field_->removeAllActions();
    clear_->removeAllActions();
    cancel_->removeAllActions();
}

void UISearchBar::setUp()
{
    field_ = std::make_shared<UITextField>();
    lens_ = std::make_shared<Lens>();
    clear_ = std::make_shared<ClearButton>();
    cancel_ = std::make_shared<UIButton>();
    field_->setContentPadding(ornamentWidth);
    clear_->setHidden(true);
    cancel_->setTitle(systemText(SystemText::cancel));
    cancel_->setHidden(true);
    for (auto& view : std::initializer_list<std::shared_ptr<UIView>>{field_, lens_, clear_, cancel_})
        addSubview(view);
    field_->addAction([this](UIControl&) { textChanged(); }, {UIControlEvents::valueChanged});
    field_->addAction(
        [this](UIControl&) {
            if (auto delegate = delegate_.lock())
                delegate->searchBarSearchButtonClicked(*this);
        },
        {UIControlEvents::primaryActionTriggered});
    clear_->addAction([this](UIControl&) { clear(); }, {UIControlEvents::primaryActionTriggered});
    cancel_->addAction([this](UIControl&) { cancel(); }, {UIControlEvents::primaryActionTriggered});
}

void UISearchBar::setText(std::string_view text)
{
    field_->setText(text);
    clear_->setHidden(field_->text().empty());
}

bool UISearchBar::showsCancelButton() const
{
    return !cancel_->isHidden();
}

void UISearchBar::setShowsCancelButton(bool shows)
{
    cancel_->setHidden(!shows);
    setNeedsLayout();
}

void UISearchBar::textChanged()
{
    auto text = field_->text();
    clear_->setHidden(text.empty());
    if (auto delegate = delegate_.lock())
        delegate->searchBarTextDidChange(*this, text);
}

void UISearchBar::clear()
{
    auto keepAlive = weak_from_this().lock();
    field_->setText({});
    field_->becomeFirstResponder();
    textChanged();
}

void UISearchBar::cancel()
{
    if (auto delegate = delegate_.lock())
        delegate->searchBarCancelButtonClicked(*this);
}

bool UISearchBar::pressesBegan(const UIPress& press)
{
    if (press.key != UIKeyCode::escape || press.modifiers.rawValue != 0)
        return UIView::pressesBegan(press);
    if (!text().empty())
        clear();
    else if (showsCancelButton())
        cancel();
    else
        return UIView::pressesBegan(press);
    return true;
}

void UISearchBar::layoutSubviews()
{
    UIView::layoutSubviews();
    auto area = bounds();
    bool isMirrored = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto place = [&](UIView& view, CGFloat start, CGFloat width) {
        auto x = isMirrored ? area.maxX() - start - width : area.minX() + start;
        view.setFrame(CGRect::make(x, area.minY(), width, area.height()));
    };
    auto cancelWidth = showsCancelButton() ? cancel_->intrinsicContentSize().width : 0;
    auto width = std::max(area.width() - (showsCancelButton() ? cancelWidth + cancelDistance : 0), 0.0);
    place(*field_, 0, width);
    place(*lens_, 2, ornamentWidth);
    place(*clear_, width - ornamentWidth, ornamentWidth);
    place(*cancel_, width + cancelDistance, cancelWidth);
    if (std::exchange(lens_->isMirrored, isMirrored) != isMirrored)
        lens_->setNeedsDisplay();
}

CGSize UISearchBar::intrinsicContentSize() const
{
    return {noIntrinsicMetric, field_->intrinsicContentSize().height + 4};
}

CGSize UISearchBar::sizeThatFits(CGSize available) const
{
    auto width = std::isfinite(available.width) && available.width > 0 ? available.width : usualWidth;
    return {width, intrinsicContentSize().height};
}

} // namespace platform

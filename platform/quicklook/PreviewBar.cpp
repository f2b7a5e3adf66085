// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewBar.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/quicklook/BarButton.h"
#include "platform/quicklook/HostText.h"
#include "platform/uikit/AccessibilityEvents.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UITextField.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr Duration noticeTime = std::chrono::seconds(5);
constexpr CGFloat sideInset = 12, endInset = 6, gap = 4, leastField = 84, leastName = 60;

constexpr unsigned pressed = UIControlEvents::primaryActionTriggered | UIControlEvents::touchUpInside;

UIColor groundColor()
{
    return UIColor::dynamic(UIColor(0.965, 0.965, 0.97), UIColor(0.135, 0.135, 0.145), UIColor::white(),
                            UIColor::black());
}

void onPress(BarButton& button, std::function<void()> action)
{
    button.addAction([action = std::move(action)](UIControl&) { action(); }, {pressed});
}

} // namespace

PreviewBar::PreviewBar()
    : name_(std::make_shared<UILabel>())
    , encoding_(std::make_shared<BarButton>(BarSymbol::disclosure))
    , search_(std::make_shared<BarButton>(BarSymbol::search))
    , menu_(std::make_shared<BarButton>(BarSymbol::more))
{
    setBackgroundColor(groundColor());
    accessibility().role = AccessibilityRole::group;
    name_->setPreferredFont(FontTextStyle::footnote);
    addSubview(name_);
    addSubview(encoding_);
    addSubview(search_);
    addSubview(menu_);
    encoding_->setHidden(true);
    onPress(*encoding_, [this] { onEncodingMenu(); });
    onPress(*search_, [this] { beginSearch(); });
    onPress(*menu_, [this] { onMenu(); });
}

PreviewBar::~PreviewBar() = default;

void PreviewBar::setName(std::string name)
{
    fileName_ = std::move(name);
    if (!noticeEnd_)
        showName();
}

void PreviewBar::showName()
{
    name_->setText(fileName_);
    name_->setTextColor(UIColor::label());
    name_->accessibility().role = AccessibilityRole::header;
}

void PreviewBar::showNotice(const std::string& text)
{
    if (isSearching()) { // where the name is not: beside the field, until the matches are others
        count_->setText(text);
        return setNeedsLayout();
    }
    if (noticeEnd_)
        noticeEnd_->cancel();
    name_->setText(text);
    name_->setTextColor(UIColor::systemOrange());
    name_->accessibility().role = AccessibilityRole::alert;
    notifyAccessibility(*name_, AccessibilityEvent::labelChanged);
    noticeEnd_ = std::make_shared<DispatchWorkItem>([weak = weak_from_this()] {
        if (auto self = std::static_pointer_cast<PreviewBar>(weak.lock())) {
            self->noticeEnd_.reset();
            self->showName();
        }
    });
    DispatchQueue::main()->asyncAfter(noticeTime, noticeEnd_);
}

void PreviewBar::setEncoding(const std::optional<Encoding>& encoding)
{
    hasEncoding_ = encoding.has_value();
    encoding_->setHidden(!hasEncoding_);
    setNeedsLayout();
    if (!encoding)
        return;
    bool isNamed = !encoding_->accessibility().label.empty();
    shownEncoding_ = *encoding;
    auto title = encoding->isGuess ? encoding->name + " ?" : encoding->name;
    if (encoding->replacements > 0)
        title += " · " + hostText("%1$@ replaced", {std::to_string(encoding->replacements)});
    encoding_->setTitle(title);
    encoding_->setTitleColor(encoding->replacements > 0 ? UIColor::systemOrange()
                                                        : UIColor::secondaryLabel());
    if (isNamed)
        nameControls();
}

void PreviewBar::nameControls()
{
    auto label = hostText("Encoding: %1$@", {shownEncoding_.name});
    if (shownEncoding_.isGuess)
        label += ", " + hostText("guessed");
    if (shownEncoding_.replacements > 0)
        label += ", " + hostText("%1$@ replaced", {std::to_string(shownEncoding_.replacements)});
    encoding_->accessibility().label = std::move(label);
    encoding_->accessibility().hint = "Ctrl+E";
    search_->accessibility().label = hostText("Find");
    search_->accessibility().hint = "Ctrl+F";
    menu_->accessibility().label = hostText("More");
    menu_->accessibility().hint = "F10";
}

void PreviewBar::setSearchable(bool searchable)
{
    isSearchable_ = searchable;
    search_->setEnabled(searchable);
    if (!searchable)
        endSearch();
}

// --- Search --------------------------------------------------------------------------------------

bool PreviewBar::isSearching() const
{
    return field_ && !field_->isHidden();
}

void PreviewBar::makeSearch()
{
    field_ = std::make_shared<UITextField>();
    count_ = std::make_shared<UILabel>();
    previous_ = std::make_shared<BarButton>(BarSymbol::previous);
    next_ = std::make_shared<BarButton>(BarSymbol::next);
    close_ = std::make_shared<BarButton>(BarSymbol::close);
    for (std::shared_ptr<UIView> each :
         std::initializer_list<std::shared_ptr<UIView>>{field_, count_, previous_, next_, close_}) {
        each->setHidden(true);
        addSubview(each);
    }
    field_->setPlaceholder(hostText("Find"));
    field_->setFont(name_->font());
    count_->setPreferredFont(FontTextStyle::footnote);
    count_->setTextColor(UIColor::secondaryLabel());
    previous_->accessibility().label = hostText("Previous match");
    previous_->accessibility().hint = "Shift+F3";
    next_->accessibility().label = hostText("Next match");
    next_->accessibility().hint = "F3";
    close_->accessibility().label = hostText("Close search");
    field_->addAction([this](UIControl&) { onSearch(field_->text()); }, {UIControlEvents::valueChanged});
    field_->addAction([this](UIControl&) { onNext(); }, {UIControlEvents::primaryActionTriggered});
    onPress(*previous_, [this] { onPrevious(); });
    onPress(*next_, [this] { onNext(); });
    onPress(*close_, [this] { endSearch(); });
}

void PreviewBar::showSearch(bool isShown)
{
    for (std::shared_ptr<UIView> each :
         std::initializer_list<std::shared_ptr<UIView>>{field_, count_, previous_, next_, close_})
        each->setHidden(!isShown);
    name_->setHidden(isShown);
    search_->setHidden(isShown);
    setNeedsLayout();
}

void PreviewBar::beginSearch()
{
    assertOnMainThread();
    if (!isSearchable_)
        return;
    if (!field_)
        makeSearch();
    bool wasSearching = isSearching();
    showSearch(true);
    layoutIfNeeded();
    field_->becomeFirstResponder();
    field_->selectAll();
    if (!wasSearching && !field_->text().empty())
        onSearch(field_->text());
}

void PreviewBar::endSearch()
{
    if (!isSearching())
        return;
    showSearch(false);
    encoding_->setHidden(!hasEncoding_);
    if (onSearchEnd)
        onSearchEnd();
}

void PreviewBar::setMatches(const TextFinder::Status& matches)
{
    if (!isSearching())
        return;
    std::string text;
    auto count = std::to_string(matches.count);
    bool isSomethingSought = !field_->text().empty();
    if (isSomethingSought && matches.isComplete && matches.count == 0)
        text = hostText("No matches");
    else if (isSomethingSought && matches.present > 0)
        text = hostText("%1$@ of %2$@", {std::to_string(matches.present), count});
    else if (isSomethingSought)
        text = matches.isComplete ? count : count + "…";
    previous_->setEnabled(matches.count > 0);
    next_->setEnabled(matches.count > 0);
    if (count_->text() == text)
        return;
    count_->setText(std::move(text));
    setNeedsLayout();
}

bool PreviewBar::pressesBegan(const UIPress& press)
{
    bool hasShift = press.modifiers.contains(UIKeyModifierFlags::shift);
    if (!isSearching())
        return UIView::pressesBegan(press);
    if (press.key == UIKeyCode::escape)
        endSearch();
    else if (press.key == UIKeyCode::returnKey && hasShift)
        onPrevious();
    else if (press.key == UIKeyCode::down && field_->isEditing())
        onNext();
    else if (press.key == UIKeyCode::up && field_->isEditing())
        onPrevious();
    else
        return UIView::pressesBegan(press);
    return true;
}

// --- Look ----------------------------------------------------------------------------------------

void PreviewBar::layoutSubviews()
{
    UIView::layoutSubviews();
    auto width = bounds().width();
    bool isMirrored = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto place = [&](UIView& view, CGFloat x, CGFloat viewWidth, CGFloat viewHeight) {
        viewWidth = std::max(viewWidth, 0.0);
        auto y = std::round((height - viewHeight) / 2);
        view.setFrame(CGRect::make(isMirrored ? width - x - viewWidth : x, y, viewWidth, viewHeight));
    };
    auto end = width - endInset; // from here to the end all is taken
    auto placeAtEnd = [&](UIView& view, CGFloat most) {
        auto size = view.sizeThatFits({unlimitedWidth, height});
        auto viewWidth = std::min(std::ceil(size.width), std::max(most, 0.0));
        end -= viewWidth;
        place(view, end, viewWidth, std::ceil(size.height));
        end -= gap;
    };
    placeAtEnd(*menu_, width);
    if (!isSearching()) {
        placeAtEnd(*search_, width);
        if (hasEncoding_)
            placeAtEnd(*encoding_, end - sideInset - leastName);
        auto size = name_->sizeThatFits({unlimitedWidth, height});
        // A name of either direction begins where the bar does.
        name_->setTextAlignment(isMirrored ? TextAlignment::right : TextAlignment::left);
        place(*name_, sideInset, end - sideInset - gap, std::ceil(size.height));
        return;
    }
    auto buttons = 3 * (close_->intrinsicContentSize().width + gap);
    auto room = end - endInset - leastField - buttons - 90; // 90: of the count
    encoding_->setHidden(!hasEncoding_ || room < encoding_->intrinsicContentSize().width);
    if (!encoding_->isHidden())
        placeAtEnd(*encoding_, width);
    placeAtEnd(*close_, width);
    placeAtEnd(*next_, width);
    placeAtEnd(*previous_, width);
    end -= gap;
    placeAtEnd(*count_, end - endInset - leastField);
    place(*field_, endInset, end - endInset - gap, 26);
}

void PreviewBar::draw(CGContext& context, CGRect)
{
    auto scale = std::max(traitCollection().displayScale, 1.0);
    bool isHighContrast = traitCollection().accessibilityContrast == UIAccessibilityContrast::high;
    auto width = isHighContrast ? 1 : 1 / scale;
    context.fill(CGRect::make(0, height - width, bounds().width(), width),
                 isHighContrast ? UIColor::label() : UIColor::separator());
}

} // namespace platform

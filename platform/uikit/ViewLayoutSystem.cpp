// SPDX-License-Identifier: MIT
#include "platform/uikit/ViewLayoutSystem.h"

#include "platform/foundation/Logger.h"
#include "platform/uikit/UIScrollView.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

namespace platform {

namespace {

using Relation = LinearSolver::Relation;

// Below every priority that can be asked for: where nothing else decides, a view stays where it is.
constexpr UILayoutPriority stayPriority = 0;
// Of a target size; the platform's.
constexpr UILayoutPriority fittingSizePriority = 50;

bool followsDirection(NSLayoutAttribute attribute)
{
    return attribute == NSLayoutAttribute::leading || attribute == NSLayoutAttribute::trailing;
}

double finite(double value)
{
    return std::isfinite(value) ? value : 0;
}

CGSize intrinsicSize(const UIView& view)
{
    auto size = view.intrinsicContentSize();
    return {std::isfinite(size.width) ? size.width : noIntrinsicMetric,
            std::isfinite(size.height) ? size.height : noIntrinsicMetric};
}

// Untransformed: constraints know nothing of transforms.
CGRect modelFrame(const UIView& view)
{
    auto size = view.bounds().size;
    return CGRect::make(view.center().x - size.width / 2, view.center().y - size.height / 2, size.width,
                        size.height);
}

std::shared_ptr<UIView> shared(UIView& view)
{
    return std::static_pointer_cast<UIView>(view.shared_from_this());
}

const char* name(NSLayoutAttribute attribute)
{
    static constexpr const char* names[] = {"nothing", "left",           "right",        "top",    "bottom",
                                            "leading", "trailing",       "width",        "height", "centerX",
                                            "centerY", "first baseline", "last baseline"};
    return names[static_cast<int>(attribute)];
}

} // namespace

ViewLayout::System::Expression& ViewLayout::System::Expression::add(const Expression& other, double factor)
{
    for (auto& term : other.terms)
        terms.push_back({term.variable, term.coefficient * factor});
    constant += other.constant * factor;
    return *this;
}

ViewLayout::System::System(UIView& root, std::optional<CGSize> target)
    : root_(shared(root))
    , target_(target)
{
    auto bounds = root.bounds();
    rootBox_.x.constant = finite(bounds.minX());
    rootBox_.y.constant = finite(bounds.minY());
    if (target) {
        rootBox_.x.constant = rootBox_.y.constant = 0;
        for (auto axis : {UILayoutAxis::horizontal, UILayoutAxis::vertical}) {
            auto& length = axis == UILayoutAxis::horizontal ? rootBox_.width : rootBox_.height;
            variable(length);
            (void)solver_.require(length.terms, Relation::greaterThanOrEqual,
                                  0); // nothing is there to contradict
            auto wanted = length;
            wanted.constant = -finite(axis == UILayoutAxis::horizontal ? target->width : target->height);
            wish(wanted, Relation::equal, fittingSizePriority);
        }
        addIntrinsicSize(root, rootBox_, intrinsicSize(root));
    } else {
        rootBox_.width.constant = finite(bounds.width());
        rootBox_.height.constant = finite(bounds.height());
    }
    if (dynamic_cast<UIScrollView*>(&root)) {
        for (auto* length : {&contentBox_.width, &contentBox_.height}) {
            variable(*length);
            (void)solver_.require(length->terms, Relation::greaterThanOrEqual, 0);
            wish(*length, Relation::equal, stayPriority);
        }
    }
    collectConstraints(root);
    includeSubviews(root);
    // Constraints may bring in views from further down, and those theirs.
    for (std::size_t i = 0; i < pending_.size(); ++i) {
        auto [constraint, owner] = pending_[i];
        add(*constraint, *owner);
    }
}

LinearSolver::Variable ViewLayout::System::variable(Expression& expression)
{
    auto variable = solver_.addVariable();
    expression.terms = {{variable, 1}};
    return variable;
}

void ViewLayout::System::includeSubviews(UIView& view)
{
    for (auto& subview : view.subviews())
        if (!subview->translatesAutoresizingMaskIntoConstraints())
            include(subview);
}

void ViewLayout::System::include(const std::shared_ptr<UIView>& view)
{
    if (view == root_ || placeOf_.contains(view.get()))
        return;
    // Outer views are placed first: a frame is told relative to them.
    if (auto superview = view->superview();
        superview && superview != root_ && !superview->translatesAutoresizingMaskIntoConstraints())
        include(superview);

    Box box;
    Place place{.view = view, .intrinsicSize = intrinsicSize(*view)};
    place.x = variable(box.x);
    place.y = variable(box.y);
    place.width = variable(box.width);
    place.height = variable(box.height);
    placeOf_.emplace(view.get(), places_.size());
    places_.push_back(place);
    for (auto* length : {&box.width, &box.height})
        (void)solver_.require(length->terms, Relation::greaterThanOrEqual, 0);
    addIntrinsicSize(*view, box, place.intrinsicSize);

    auto frame = modelFrame(*view);
    auto superview = view->superview();
    auto stay = [&](const Expression& expression, double value, const Expression* origin) {
        auto held = expression;
        held.constant -= finite(value);
        if (origin)
            held.add(*origin, -1);
        wish(std::move(held), Relation::equal, stayPriority);
    };
    auto originX = contentOrigin(*superview, UILayoutAxis::horizontal);
    auto originY = contentOrigin(*superview, UILayoutAxis::vertical);
    stay(box.x, frame.minX(), &originX);
    stay(box.y, frame.minY(), &originY);
    stay(box.width, frame.width(), nullptr);
    stay(box.height, frame.height(), nullptr);

    if (dynamic_cast<UIScrollView*>(view.get())) {
        // Its content is its own to solve, but not what is said of the view alone, like a width.
        for (auto& constraint : view->constraints())
            if (constraint->secondAttribute() == NSLayoutAttribute::notAnAttribute
                || constraint->secondItem() == constraint->firstItem())
                pending_.emplace_back(constraint, view);
        return;
    }
    collectConstraints(*view);
    includeSubviews(*view);
}

void ViewLayout::System::addIntrinsicSize(UIView& view, const Box& box, CGSize size)
{
    for (auto axis : {UILayoutAxis::horizontal, UILayoutAxis::vertical}) {
        auto wanted = axis == UILayoutAxis::horizontal ? size.width : size.height;
        if (wanted < 0)
            continue;
        auto length = axis == UILayoutAxis::horizontal ? box.width : box.height;
        length.constant -= wanted;
        wish(length, Relation::lessThanOrEqual, view.contentHuggingPriority(axis));
        wish(std::move(length), Relation::greaterThanOrEqual,
             view.contentCompressionResistancePriority(axis));
    }
}

void ViewLayout::System::collectConstraints(UIView& owner)
{
    for (auto& constraint : owner.constraints())
        pending_.emplace_back(constraint, shared(owner));
}

void ViewLayout::System::add(NSLayoutConstraint& constraint, UIView& owner)
{
    auto first = constraint.firstItem(), second = constraint.secondItem();
    auto needsSecond = constraint.secondAttribute() != NSLayoutAttribute::notAnAttribute;
    if (!first || (needsSecond && !second))
        return; // an item is gone; nothing is left to hold
    if (!std::isfinite(constraint.constant()) || !std::isfinite(constraint.multiplier())) {
        report(constraint, "has a constant or multiplier that is no number and is left out");
        return;
    }
    auto guide = std::dynamic_pointer_cast<UILayoutGuide>(first);
    auto view = guide ? guide->owningView() : std::static_pointer_cast<UIView>(first);
    if (!view)
        return;
    auto isRightToLeft =
        view->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    auto isMirrored = isRightToLeft
        && (followsDirection(constraint.firstAttribute()) || followsDirection(constraint.secondAttribute()));

    auto sum = attribute(*first, constraint.firstAttribute(), owner, isMirrored, isRightToLeft);
    if (needsSecond)
        sum.add(attribute(*second, constraint.secondAttribute(), owner, isMirrored, isRightToLeft),
                -constraint.multiplier());
    sum.constant -= constraint.constant();
    if (sum.terms.empty())
        return; // between things that are where they are
    auto relation = static_cast<Relation>(constraint.relation());
    if (constraint.priority() < UILayoutPriorityRequired)
        wish(std::move(sum), relation, constraint.priority());
    else if (!solver_.require(sum.terms, relation, sum.constant))
        report(constraint, "contradicts others and is left out");
}

void ViewLayout::System::report(NSLayoutConstraint& constraint, const char* fault) const
{
    if (std::exchange(constraint.conflictIsReported_, true))
        return;
    char numbers[80];
    std::snprintf(numbers, sizeof numbers, "%g x ", constraint.multiplier());
    auto text = std::string("The constraint ") + name(constraint.firstAttribute())
        + (constraint.relation() == NSLayoutRelation::equal                 ? " = "
               : constraint.relation() == NSLayoutRelation::lessThanOrEqual ? " <= "
                                                                            : " >= ");
    if (constraint.secondAttribute() != NSLayoutAttribute::notAnAttribute)
        text += std::string(numbers) + name(constraint.secondAttribute()) + " + ";
    std::snprintf(numbers, sizeof numbers, "%g ", constraint.constant());
    static const Logger logger("org.zelk.uikit", "layout");
    logger.error(text + numbers + fault);
}

ViewLayout::System::Box ViewLayout::System::box(UIView& view)
{
    if (&view == root_.get())
        return rootBox_;
    if (!view.translatesAutoresizingMaskIntoConstraints())
        include(shared(view));
    if (auto found = placeOf_.find(&view); found != placeOf_.end()) {
        auto& place = places_[found->second];
        return {{{{place.x, 1}}, 0}, {{{place.y, 1}}, 0}, {{{place.width, 1}}, 0}, {{{place.height, 1}}, 0}};
    }
    auto frame = modelFrame(view);
    Box box;
    if (auto superview = view.superview()) {
        box.x = contentOrigin(*superview, UILayoutAxis::horizontal);
        box.y = contentOrigin(*superview, UILayoutAxis::vertical);
    }
    box.x.constant += finite(frame.minX());
    box.y.constant += finite(frame.minY());
    box.width.constant = finite(frame.width());
    box.height.constant = finite(frame.height());
    return box;
}

ViewLayout::System::Expression ViewLayout::System::contentOrigin(UIView& view, UILayoutAxis axis)
{
    if (&view == root_.get())
        return {};
    auto outer = box(view);
    auto origin = axis == UILayoutAxis::horizontal ? outer.x : outer.y;
    origin.constant -= finite(axis == UILayoutAxis::horizontal ? view.bounds().minX() : view.bounds().minY());
    return origin;
}

// What stands inside a scroll view is held by the edges of its content, whereas width and height are those of
// the view itself.
ViewLayout::System::Box ViewLayout::System::box(NSObject& item, NSLayoutAttribute attribute, UIView& owner)
{
    auto* guide = dynamic_cast<UILayoutGuide*>(&item);
    auto view = guide ? guide->owningView() : std::static_pointer_cast<UIView>(item.shared_from_this());
    auto isLength = attribute == NSLayoutAttribute::width || attribute == NSLayoutAttribute::height;
    if (view == root_ && &owner == root_.get() && !guide && !isLength && !contentBox_.width.terms.empty()) {
        contentSizeIsUsed_ = true;
        return contentBox_;
    }
    auto result = box(*view);
    if (guide) {
        auto insets = view->safeAreaInsets();
        result.x.constant += finite(insets.left);
        result.y.constant += finite(insets.top);
        result.width.constant -= finite(insets.left + insets.right);
        result.height.constant -= finite(insets.top + insets.bottom);
    }
    return result;
}

// A mirrored axis runs from right to left, so that distances to the leading edge keep their sign.
ViewLayout::System::Expression ViewLayout::System::attribute(NSObject& item, NSLayoutAttribute attribute,
                                                             UIView& owner, bool isMirrored,
                                                             bool isRightToLeft)
{
    auto box = this->box(item, attribute, owner);
    if (followsDirection(attribute))
        attribute = (attribute == NSLayoutAttribute::leading) != isRightToLeft ? NSLayoutAttribute::left
                                                                               : NSLayoutAttribute::right;
    auto* view = dynamic_cast<UIView*>(&item);
    Expression result;
    switch (attribute) {
    case NSLayoutAttribute::width:
        return box.width;
    case NSLayoutAttribute::height:
        return box.height;
    case NSLayoutAttribute::left:
        result = box.x;
        break;
    case NSLayoutAttribute::right:
        result = box.x.add(box.width, 1);
        break;
    case NSLayoutAttribute::centerX:
        result = box.x.add(box.width, 0.5);
        break;
    case NSLayoutAttribute::centerY:
        return box.y.add(box.height, 0.5);
    case NSLayoutAttribute::bottom:
        return box.y.add(box.height, 1);
    case NSLayoutAttribute::firstBaseline:
        // A view without text has its bottom edge there, wherever that will be.
        if (!view || view->firstBaselineOffset() == view->bounds().height())
            return box.y.add(box.height, 1);
        box.y.constant += finite(view->firstBaselineOffset());
        return box.y;
    case NSLayoutAttribute::lastBaseline:
        box.y.add(box.height, 1).constant -= view ? finite(view->lastBaselineOffset()) : 0;
        return box.y;
    default:
        return box.y;
    }
    return isMirrored ? Expression{}.add(result, -1) : result;
}

void ViewLayout::System::wish(Expression expression, Relation relation, UILayoutPriority priority)
{
    if (!(priority < UILayoutPriorityRequired))
        priority =
            std::nextafter(UILayoutPriorityRequired, 0.0f); // an own size never breaks what is required
    wishes_.push_back({std::move(expression), relation, priority});
}

void ViewLayout::System::solve()
{
    std::set<UILayoutPriority, std::greater<>> priorities{stayPriority};
    for (auto& wish : wishes_)
        priorities.insert(wish.priority);
    std::map<UILayoutPriority, std::size_t> levels;
    for (auto priority : priorities)
        levels.emplace(priority, std::min(levels.size(), levelLimit - 1));
    auto prefer = [&](const Wish& wish) {
        solver_.prefer(wish.expression.terms, wish.relation, wish.expression.constant,
                       levels.at(wish.priority));
    };
    std::vector<const Wish*> stays;
    for (auto& wish : wishes_) {
        if (wish.priority == stayPriority)
            stays.push_back(&wish);
        else
            prefer(wish);
    }
    solver_.solve();
    // Nearly everything is determined by now, so hardly any of these enters the system.
    for (auto* stay : stays)
        if (!solver_.isDetermined(stay->expression.terms)) {
            prefer(*stay);
            solver_.solve();
        }
}

double ViewLayout::System::evaluate(const Expression& expression) const
{
    auto value = expression.constant;
    for (auto& term : expression.terms)
        value += solver_.value(term.variable) * term.coefficient;
    return value;
}

CGSize ViewLayout::System::rootSize() const
{
    return {evaluate(rootBox_.width), evaluate(rootBox_.height)};
}

bool ViewLayout::System::apply()
{
    auto scale = root_->traitCollection().displayScale;
    if (!(scale > 0) || !std::isfinite(scale))
        scale = 1;
    // Edges are rounded, not lengths: views that touch stay in touch.
    auto onPixel = [scale](double value) { return std::round(value * scale) / scale; };
    for (auto& place : places_) {
        auto superview = place.view->superview();
        if (!superview)
            continue;
        auto left = onPixel(solver_.value(place.x)), top = onPixel(solver_.value(place.y));
        auto right = onPixel(solver_.value(place.x) + solver_.value(place.width));
        auto bottom = onPixel(solver_.value(place.y) + solver_.value(place.height));
        CGPoint origin{onPixel(evaluate(contentOrigin(*superview, UILayoutAxis::horizontal))),
                       onPixel(evaluate(contentOrigin(*superview, UILayoutAxis::vertical)))};
        CGSize size{std::max(right - left, 0.0), std::max(bottom - top, 0.0)};
        place.view->setBounds({place.view->bounds().origin, size});
        place.view->setCenter({left - origin.x + size.width / 2, top - origin.y + size.height / 2});
    }
    if (contentSizeIsUsed_)
        static_cast<UIScrollView&>(*root_).setContentSize(
            {onPixel(evaluate(contentBox_.width)), onPixel(evaluate(contentBox_.height))});
    return std::ranges::all_of(
        places_, [](const Place& place) { return place.intrinsicSize == intrinsicSize(*place.view); });
}

} // namespace platform

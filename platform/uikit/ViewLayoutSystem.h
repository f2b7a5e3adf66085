// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/LinearSolver.h"
#include "platform/uikit/ViewLayout.h"

#include <functional>
#include <map>
#include <optional>
#include <set>

namespace platform {

// The constraints of one view tree as linear equations, built anew for each solution. Coordinates are those of the
// root's bounds.
//
// Views that no longer follow their autoresizing mask get four variables; all others stand where their frame is in
// their superview. What such a view solves itself is part of the system, as its own size may hang on it. A scroll
// view's content is not: it never changes the scroll view's own place.
class ViewLayout::System {
public:
    // The root keeps its size, or (given a target) takes the size near it that its constraints want.
    explicit System(UIView& root, std::optional<CGSize> target = std::nullopt);

    void solve();
    CGSize rootSize() const; // after solve()
    // Sets frames, rounded to pixels. False when a view's intrinsic size is another in its new frame: solve again.
    bool apply();

private:
    struct Expression {
        std::vector<LinearSolver::Term> terms;
        double constant = 0;
        Expression& add(const Expression& other, double factor);
    };
    struct Box {
        Expression x, y, width, height;
    };
    struct Wish { // an optional constraint
        Expression expression;
        LinearSolver::Relation relation;
        UILayoutPriority priority;
    };
    struct Place { // a view that is placed by its variables
        std::shared_ptr<UIView> view;
        CGSize intrinsicSize;
        LinearSolver::Variable x = 0, y = 0, width = 0, height = 0;
    };

    void include(const std::shared_ptr<UIView>& view);
    void includeSubviews(UIView& view);
    void addIntrinsicSize(UIView& view, const Box& box, CGSize size);
    void collectConstraints(UIView& owner);
    void add(NSLayoutConstraint& constraint, UIView& owner);
    void report(NSLayoutConstraint& constraint, const char* fault) const;
    LinearSolver::Variable variable(Expression& expression);
    Box box(UIView& view);
    Box box(NSObject& item, NSLayoutAttribute attribute, UIView& owner);
    // What is taken from a subview's place to get its frame.
    Expression contentOrigin(UIView& view, UILayoutAxis axis);
    Expression attribute(NSObject& item, NSLayoutAttribute attribute, UIView& owner, bool isMirrored,
                         bool isRightToLeft);
    void wish(Expression expression, LinearSolver::Relation relation, UILayoutPriority priority);
    double evaluate(const Expression& expression) const;

    std::shared_ptr<UIView> root_;
    std::optional<CGSize> target_;
    Box rootBox_;
    Box contentBox_; // of a root that is a scroll view
    bool contentSizeIsUsed_ = false;
    LinearSolver solver_{levelLimit};
    std::vector<Place> places_;
    std::map<const UIView*, std::size_t> placeOf_;
    std::vector<Wish> wishes_;
    std::vector<std::pair<std::shared_ptr<NSLayoutConstraint>, std::shared_ptr<UIView>>> pending_;

    // Priorities in use are few; those beyond the limit share the last level.
    static constexpr std::size_t levelLimit = 32;
};

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/uikit/NSLayoutAnchor.h"

#include "platform/foundation/Precondition.h"
#include "platform/uikit/NSLayoutConstraint.h"

#include <utility>

namespace platform {

NSLayoutAnchor::NSLayoutAnchor(std::weak_ptr<NSObject> item, NSLayoutAttribute attribute)
    : item_(std::move(item))
    , attribute_(attribute)
{
}

std::shared_ptr<NSLayoutConstraint> NSLayoutAnchor::constraint(int relation, const NSLayoutAnchor* other,
                                                               CGFloat multiplier, CGFloat constant) const
{
    auto first = item();
    auto second = other ? other->item() : nullptr;
    precondition(first && (!other || second), "the view or guide of a layout anchor is gone");
    return std::make_shared<NSLayoutConstraint>(
        std::move(first), attribute_, static_cast<NSLayoutRelation>(relation), std::move(second),
        other ? other->attribute_ : NSLayoutAttribute::notAnAttribute, multiplier, constant);
}

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIViewController.h"

#include <memory>
#include <span>
#include <vector>

// What controllers that are made of other controllers share. Main thread only.
namespace platform::containment {

using Controllers = std::vector<std::shared_ptr<UIViewController>>;

// Makes `wanted` what `container` keeps in `present`: those that leave are sent off with their views, those that
// come are taken in, those that stay are told nothing. Requires: none is null, none comes twice.
void replace(UIViewController& container, Controllers& present, Controllers wanted);

// Makes `shown` the only ones of `contained` whose views stand in the container's view, in that order. Nothing
// happens before the container's view is loaded.
void show(UIViewController& container, const Controllers& contained,
          std::span<const std::shared_ptr<UIViewController>> shown);
// The same for one that fills the container; null shows none.
void showFilling(UIViewController& container, const Controllers& contained,
                 const std::shared_ptr<UIViewController>& shown);

} // namespace platform::containment

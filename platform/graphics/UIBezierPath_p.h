// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/UIBezierPath.h"

#include <QtGui/QPainterPath>

namespace platform {

QPainterPath painterPath(const UIBezierPath& path, FillRule rule = FillRule::nonZero);

} // namespace platform

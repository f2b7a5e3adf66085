// SPDX-License-Identifier: MIT
#include "platform/graphics/CurrentAppearance.h"

#include <atomic>
#include <utility>

namespace platform {

namespace {

thread_local std::optional<ColorAppearance> innermost;

std::atomic<ColorAppearance>& processAppearance()
{
    static std::atomic<ColorAppearance> appearance;
    return appearance;
}

} // namespace

ColorAppearance currentAppearance()
{
    return innermost ? *innermost : processAppearance().load();
}

void setProcessAppearance(ColorAppearance appearance)
{
    processAppearance() = appearance;
}

CurrentAppearance::CurrentAppearance(ColorAppearance appearance)
    : previous_(std::exchange(innermost, appearance))
{
}

CurrentAppearance::~CurrentAppearance()
{
    innermost = previous_;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "kit/ui/SizeReader.h"

#include <functional>
#include <utility>

namespace zelk {

// `text | readSize([height](CGSize size) { height.set(size.height); })`; see SizeReader.
inline auto readSize(std::function<void(platform::CGSize)> onChange)
{
    return SizeReader{std::move(onChange)};
}

} // namespace zelk

// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>

namespace platform {

class UIPresentationController;

// How a presented controller knows its presentation: attached to it, not kept alive by it.
using PresentationLink = std::weak_ptr<UIPresentationController>;
inline constexpr std::string_view presentationKey = "presentationController";

} // namespace platform

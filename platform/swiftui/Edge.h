// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// A side of a rectangle; leading is where reading begins.
enum class Edge { top, leading, bottom, trailing };

} // namespace platform

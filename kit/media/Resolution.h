// SPDX-License-Identifier: MIT
#pragma once

namespace zelk {

// Whether a clock shows a fraction of the second.
enum class Resolution { milliseconds, seconds };

} // namespace zelk

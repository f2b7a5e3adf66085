// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Locale.h"

#include <unicode/locid.h>

namespace platform {

// The root locale when `locale` is none.
icu::Locale icuLocale(const Locale& locale);

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/combine/ObservableObject.h"

namespace platform {

ObservableObject::ObservableObject() = default;
ObservableObject::~ObservableObject() = default;

} // namespace platform

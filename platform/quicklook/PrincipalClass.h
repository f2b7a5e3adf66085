// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIViewController.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

// The classes that a manifest can name. C++ keeps no names of classes at run time, so a program registers
// those it offers before it calls NSExtensionMain.

using PrincipalClassMaker = std::function<std::shared_ptr<UIViewController>()>;

// A name that is registered twice keeps its last maker. Main thread only.
void registerPrincipalClass(std::string name, PrincipalClassMaker maker);

template <class Controller>
void registerPrincipalClass(std::string name)
{
    registerPrincipalClass(std::move(name), [] { return std::make_shared<Controller>(); });
}

// A new object of the class of that name; null when nobody registered it.
std::shared_ptr<UIViewController> makePrincipalClass(std::string_view name);

} // namespace platform

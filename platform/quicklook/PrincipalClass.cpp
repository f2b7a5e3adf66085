// SPDX-License-Identifier: MIT
#include "platform/quicklook/PrincipalClass.h"

#include "platform/dispatch/RunLoop.h"

#include <map>
#include <utility>

namespace platform {

namespace {

auto& makers()
{
    static std::map<std::string, PrincipalClassMaker, std::less<>> makers;
    return makers;
}

} // namespace

void registerPrincipalClass(std::string name, PrincipalClassMaker maker)
{
    assertOnMainThread();
    makers().insert_or_assign(std::move(name), std::move(maker));
}

std::shared_ptr<UIViewController> makePrincipalClass(std::string_view name)
{
    assertOnMainThread();
    auto found = makers().find(name);
    return found == makers().end() ? nullptr : found->second();
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/quicklook/HostText.h"

#include "platform/foundation/Bundle.h"

#include <memory>

namespace platform {

namespace {

const int codeOfThisProgram = 0; // its address tells which file this code came in

std::shared_ptr<Bundle> openTables()
{
    auto resources = Bundle::forCode(&codeOfThisProgram);
    if (!resources)
        return nullptr;
    auto bundle = Bundle::open(resources->resourceURL().appendingPathComponent("ZelkQuickLook.bundle"));
    return bundle ? *bundle : nullptr;
}

} // namespace

std::string hostText(std::string_view english)
{
    static const auto tables = openTables();
    return tables ? tables->localizedString(english, {}, "Host") : std::string(english);
}

std::string hostText(std::string_view english, std::initializer_list<std::string> arguments)
{
    auto text = hostText(english);
    int number = 0;
    for (auto& argument : arguments) {
        auto place = "%" + std::to_string(++number) + "$@";
        if (auto at = text.find(place); at != std::string::npos)
            text.replace(at, place.size(), argument);
    }
    return text;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "kit/foundation/ZelkKitBundle.h"

#include "platform/foundation/Precondition.h"

namespace zelk {

namespace {

// Lies where the kit's code lies.
const char bundleFinder = 0;

} // namespace

const std::shared_ptr<platform::Bundle>& zelkKitBundle()
{
    // Never destroyed: threads may still run while the process exits.
    static const auto& bundle =
        *new std::shared_ptr<platform::Bundle>(openZelkKitBundle(zelkKitBundleDirectories()));
    return bundle;
}

std::vector<platform::URL> zelkKitBundleDirectories()
{
    auto& main = *platform::Bundle::main();
    std::vector directories{main.resourceURL()};
    if (auto code = platform::Bundle::forCode(&bundleFinder))
        directories.push_back(code->resourceURL());
    directories.push_back(main.bundleURL());
    return directories;
}

std::shared_ptr<platform::Bundle> openZelkKitBundle(std::span<const platform::URL> directories)
{
    for (auto& directory : directories) {
        if (auto bundle = platform::Bundle::open(directory.appendingPathComponent("ZelkKit_ZelkKit.bundle")))
            return *bundle;
    }
    platform::preconditionFailure("unable to find bundle named ZelkKit_ZelkKit");
}

} // namespace zelk

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Bundle.h"

#include <memory>
#include <span>
#include <vector>

namespace zelk {

// The bundle of the kit's own resources, ZelkKit_ZelkKit.bundle. Found at first use in one of
// zelkKitBundleDirectories() and kept for the life of the process; when it is in none of them the process stops
// with "unable to find bundle named ZelkKit_ZelkKit". Any thread.
const std::shared_ptr<platform::Bundle>& zelkKitBundle();

// Where the bundle may lie, in the order of the search: the main bundle's resources, the resources that came with
// the program or library that holds the kit's code, the main bundle itself.
std::vector<platform::URL> zelkKitBundleDirectories();

// The bundle in the first of `directories` where it opens; stops the process when there is none.
std::shared_ptr<platform::Bundle> openZelkKitBundle(std::span<const platform::URL> directories);

} // namespace zelk

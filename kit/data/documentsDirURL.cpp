// SPDX-License-Identifier: MIT
#include "kit/data/documentsDirURL.h"

#include "platform/foundation/Precondition.h"

namespace zelk {

platform::URL documentsDirURL(const platform::FileManager& manager)
{
    auto urls = manager.urls(platform::SearchPathDirectory::document, platform::SearchPathDomain::user);
    platform::precondition(!urls.empty(), "this user has no documents directory");
    return urls.front();
}

} // namespace zelk

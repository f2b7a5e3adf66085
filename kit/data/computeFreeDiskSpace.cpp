// SPDX-License-Identifier: MIT
#include "kit/data/computeFreeDiskSpace.h"

#include "kit/data/documentsDirURL.h"

namespace zelk {

platform::Result<std::uint64_t> computeFreeDiskSpace(const platform::FileManager& manager)
{
    auto attributes = TRY(manager.attributesOfFileSystem(documentsDirURL(manager).path()));
    auto found = attributes.find(platform::NSFileSystemFreeSize);
    auto* size = found == attributes.end() ? nullptr : found->second.as<std::int64_t>();
    return size && *size > 0 ? static_cast<std::uint64_t>(*size) : 0;
}

} // namespace zelk

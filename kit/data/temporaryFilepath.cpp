// SPDX-License-Identifier: MIT
#include "kit/data/temporaryFilepath.h"

#include "platform/foundation/UUID.h"

namespace zelk {

platform::URL temporaryFilepathForUniqueFilename(const platform::FileManager& manager,
                                                 std::string_view filename,
                                                 std::optional<std::string_view> pathExtension)
{
    std::string name(filename);
    if (pathExtension && !pathExtension->empty())
        name += "." + std::string(*pathExtension);
    return manager.temporaryDirectory().appendingPathComponent(name);
}

platform::URL uniqueTemporaryFilepath(const platform::FileManager& manager,
                                      std::optional<std::string_view> pathExtension)
{
    return temporaryFilepathForUniqueFilename(manager, platform::UUID().string(), pathExtension);
}

} // namespace zelk

// SPDX-License-Identifier: MIT
#include "kit/data/cleanTemporaryDirectory.h"

#include "platform/dispatch/DispatchQueue.h"

namespace zelk {

namespace {

void clean(const platform::FileManager& manager)
{
    auto directory = manager.temporaryDirectory();
    auto entries = manager.enumerator(directory.path());
    if (!entries)
        return;
    while (auto entry = entries->next()) {
        // Entries of a directory that has gone with all it held fail here too, and nobody could do anything about the rest.
        [[maybe_unused]] auto ignored = manager.removeItem(directory.appendingPathComponent(*entry));
    }
}

} // namespace

void cleanTemporaryDirectory(const platform::FileManager& manager,
                             const std::shared_ptr<platform::DispatchQueue>& queue)
{
    if (queue)
        queue->async([&manager] { clean(manager); });
    else
        clean(manager);
}

} // namespace zelk

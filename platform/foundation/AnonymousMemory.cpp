// SPDX-License-Identifier: MIT
#include "platform/foundation/AnonymousMemory_p.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::size_t hugePage = 2 * 1024 * 1024;

std::size_t roundedUp(std::size_t size, std::size_t unit)
{
    return (size + unit - 1) / unit * unit;
}

std::size_t pageSize()
{
    static const auto size = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return size;
}

} // namespace

std::optional<AnonymousMemory> AnonymousMemory::allocate(std::size_t capacity)
{
    if (capacity > std::numeric_limits<std::size_t>::max() / 2)
        return std::nullopt;
    // From here on one page fault for 2 MiB is cheaper than many small ones, even if most of it stays unused.
    bool isLarge = capacity >= hugePage / 4;
    capacity = roundedUp(std::max<std::size_t>(capacity, 1), isLarge ? hugePage : pageSize());
    // Small memory is wanted whole at once; asking for it so saves a page fault for each 4 KiB.
    int populate = isLarge ? 0 : MAP_POPULATE;
    auto mapped = isLarge ? capacity + hugePage : capacity;
    void* address =
        ::mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | populate, -1, 0);
    if (address == MAP_FAILED)
        return std::nullopt;
    auto* data = static_cast<char*>(address);
    if (isLarge) {
        // Only aligned memory is given in huge pages: 512 times fewer page faults.
        auto unaligned = reinterpret_cast<std::uintptr_t>(data) % hugePage;
        auto skipped = unaligned == 0 ? 0 : hugePage - unaligned;
        if (skipped > 0)
            ::munmap(data, skipped);
        data += skipped;
        ::munmap(data + capacity, hugePage - skipped);
        ::madvise(data, capacity, MADV_HUGEPAGE); // a wish: without it everything works, slower
    }
    return AnonymousMemory(data, capacity);
}

AnonymousMemory::AnonymousMemory(AnonymousMemory&& other) noexcept
    : data_(std::exchange(other.data_, nullptr))
    , capacity_(other.capacity_)
{
}

AnonymousMemory& AnonymousMemory::operator=(AnonymousMemory&& other) noexcept
{
    std::swap(data_, other.data_);
    std::swap(capacity_, other.capacity_);
    return *this;
}

AnonymousMemory::~AnonymousMemory()
{
    if (data_)
        ::munmap(data_, capacity_);
}

bool AnonymousMemory::grow(std::size_t capacity)
{
    capacity = roundedUp(capacity, pageSize());
    void* address = ::mremap(data_, capacity_, capacity, MREMAP_MAYMOVE);
    if (address == MAP_FAILED)
        return false;
    data_ = static_cast<char*>(address);
    capacity_ = capacity;
    return true;
}

void AnonymousMemory::trim(std::size_t size)
{
    auto kept = roundedUp(std::max<std::size_t>(size, 1), pageSize());
    if (kept >= capacity_)
        return;
    ::munmap(data_ + kept, capacity_ - kept);
    capacity_ = kept;
}

std::shared_ptr<const void> AnonymousMemory::share() &&
{
    struct Unmap {
        std::size_t capacity;
        void operator()(const void* data) const { ::munmap(const_cast<void*>(data), capacity); }
    };
    return std::shared_ptr<const void>(std::exchange(data_, nullptr), Unmap{capacity_});
}

} // namespace platform

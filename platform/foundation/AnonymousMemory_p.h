// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>

namespace platform {

// Memory for large texts, straight from the system: it costs nothing until it is written, comes in huge pages
// when it is large, and goes back as soon as it is let go.
class AnonymousMemory {
public:
    // Nothing when the system has not that much.
    static std::optional<AnonymousMemory> allocate(std::size_t capacity);

    AnonymousMemory(AnonymousMemory&& other) noexcept;
    AnonymousMemory& operator=(AnonymousMemory&& other) noexcept;
    ~AnonymousMemory();

    char* data() { return data_; }
    std::size_t capacity() const { return capacity_; }

    // Moves the contents to more memory: data() changes. False, and nothing changed, when there is none.
    bool grow(std::size_t capacity);
    // Gives back what lies beyond the first `size` bytes.
    void trim(std::size_t size);
    // Makes the memory live as long as the result does.
    std::shared_ptr<const void> share() &&;

private:
    AnonymousMemory(char* data, std::size_t capacity)
        : data_(data)
        , capacity_(capacity)
    {
    }

    char* data_;           // null after a move
    std::size_t capacity_; // a multiple of the page size
};

} // namespace platform

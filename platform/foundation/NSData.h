// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/URL.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace platform {

// How a file is read. The numbers are the platform's.
enum class NSDataReadingOptions : unsigned {
    none = 0,
    mappedIfSafe = 1, // as the file is on a disk of this machine or not: mapped or read
    alwaysMapped =
        8, // its pages are read when they are looked at, and never copied into memory of this process
};

class RegularFile;

// Bytes that never change: their own, or a file's, mapped. Any thread.
class NSData : public NSObject {
    struct Token { }; // makes the constructor ours alone, yet open to std::make_shared

public:
    static std::shared_ptr<const NSData> dataWithBytes(std::string bytes);
    // The whole file; anything but a regular file is refused. Errors: the file-read codes.
    [[nodiscard]] static Result<std::shared_ptr<const NSData>>
    contentsOf(const URL& url, NSDataReadingOptions options = NSDataReadingOptions::none);

    std::size_t length() const { return length_; }
    bool isMapped() const { return mapping_ != nullptr; }
    // Valid while this lives. Looking at pages of a mapped file that somebody has cut short since ends the process;
    // whoever cannot rule that out takes a copy.
    std::span<const std::byte> bytes() const;
    // Copies everything; of a mapped file what it holds now. Requires: into.size() == length(). False when a mapped file
    // has become shorter or cannot be read any more.
    [[nodiscard]] bool copyBytes(std::span<char> into) const;

    NSData(Token, std::string bytes);
    NSData(Token, std::unique_ptr<RegularFile> file, void* mapping, std::size_t length);
    ~NSData() override;

private:
    // all fixed after construction
    const std::string own_;
    const std::unique_ptr<RegularFile> file_; // null: not a mapped file
    void* const mapping_ = nullptr;
    const std::size_t length_;
};

} // namespace platform

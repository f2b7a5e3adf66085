// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotosWholeness_p.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <fstream>

namespace platform {

namespace {

// A file read forwards, in pieces.
class Bytes {
public:
    explicit Bytes(const std::string& path)
        : file_(path, std::ios::binary | std::ios::ate)
    {
        auto end = static_cast<std::streamoff>(file_.tellg());
        size_ = end > 0 ? static_cast<std::uint64_t>(end) : 0;
        file_.seekg(0);
    }

    std::uint64_t place() const { return place_; }
    std::uint64_t left() const { return size_ - place_; }
    bool isOver() const { return isOver_; } // more was asked for than there is

    int next()
    {
        if (used_ == filled_ && !fill())
            return -1;
        ++place_;
        return static_cast<unsigned char>(buffer_[used_++]);
    }
    // To just behind the next such byte.
    bool skipTo(char byte)
    {
        for (;;) {
            auto* begin = buffer_.data() + used_;
            auto* end = buffer_.data() + filled_;
            auto* found = std::find(begin, end, byte);
            place_ += static_cast<std::uint64_t>(found - begin);
            used_ += static_cast<std::size_t>(found - begin);
            if (found != end)
                return next() >= 0;
            if (!fill())
                return false;
        }
    }
    // False, and over, when there is not as much.
    bool skip(std::uint64_t count)
    {
        if (count > left())
            isOver_ = true;
        if (isOver_)
            return false;
        place_ += count;
        if (count <= filled_ - used_) {
            used_ += static_cast<std::size_t>(count);
            return true;
        }
        used_ = filled_ = 0;
        file_.clear();
        file_.seekg(static_cast<std::streamoff>(place_));
        return true;
    }
    std::uint64_t number(int bytes, std::endian order)
    {
        std::uint64_t value = 0;
        for (int i = 0; i < bytes; ++i) {
            auto byte = static_cast<std::uint64_t>(std::max(next(), 0));
            value = order == std::endian::big ? value << 8 | byte : value | byte << (8 * i);
        }
        return value;
    }
    std::uint64_t big(int bytes) { return number(bytes, std::endian::big); }
    std::uint64_t little(int bytes) { return number(bytes, std::endian::little); }

private:
    bool fill()
    {
        file_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
        filled_ = static_cast<std::size_t>(file_.gcount());
        used_ = 0;
        isOver_ = filled_ == 0;
        return !isOver_;
    }

    std::ifstream file_;
    std::uint64_t size_ = 0, place_ = 0;
    std::array<char, 1 << 15> buffer_;
    std::size_t used_ = 0, filled_ = 0;
    bool isOver_ = false;
};

// From marker to marker. Pixels stand behind the marker of a scan, up to the next one that is no part of them.
bool isWholeJPEG(Bytes bytes)
{
    bytes.skip(2);
    while (bytes.skipTo('\xFF')) {
        auto marker = bytes.next();
        while (marker == 0xFF)
            marker = bytes.next();
        if (marker == 0xD9)
            return true;
        auto isPartOfPixels = marker == 0 || marker == 1 || (marker >= 0xD0 && marker <= 0xD8);
        if (marker < 0)
            return false;
        if (isPartOfPixels)
            continue;
        auto length = bytes.big(2);
        if (length < 2 || !bytes.skip(length - 2))
            return false;
    }
    return false;
}

bool isWholePNG(Bytes bytes)
{
    bytes.skip(8);
    while (!bytes.isOver()) {
        auto length = bytes.big(4);
        auto isLast = bytes.big(4) == 0x49454E44; // IEND
        if (!bytes.skip(length + 4))
            return false;
        if (isLast)
            return true;
    }
    return false;
}

bool skipGIFBlocks(Bytes& bytes)
{
    for (;;) {
        auto length = bytes.next();
        if (length <= 0)
            return length == 0;
        if (!bytes.skip(static_cast<std::uint64_t>(length)))
            return false;
    }
}

bool isWholeGIF(Bytes bytes)
{
    auto skipColors = [&bytes](int flags) {
        return (flags & 0x80) == 0 || bytes.skip(std::uint64_t(6) << (flags & 7));
    };
    bytes.skip(10);
    auto flags = bytes.next();
    bytes.skip(2);
    if (flags < 0 || !skipColors(flags))
        return false;
    while (bytes.left() > 0) {
        auto kind = bytes.next();
        if (kind == 0x21) {
            bytes.next();
        } else if (kind == 0x2C) {
            bytes.skip(8);
            flags = bytes.next();
            if (flags < 0 || !skipColors(flags))
                return false;
            bytes.next();
        } else {
            return kind == 0x3B;
        }
        if (!skipGIFBlocks(bytes))
            return false;
    }
    return false;
}

// WebP and AVI: lists one after the other, of which the last may want for a byte of padding.
bool isWholeRIFF(Bytes bytes)
{
    do {
        if (bytes.big(4) != 0x52494646) // RIFF; what follows is somebody else's
            return bytes.place() > 4;
        auto length = bytes.little(4);
        if (!bytes.skip(length))
            return false;
        if (length % 2 != 0 && bytes.left() > 0)
            bytes.skip(1);
    } while (bytes.left() >= 8);
    return true;
}

bool isWholeBMP(Bytes bytes)
{
    bytes.skip(10);
    auto pixels = bytes.little(4);
    if (bytes.little(4) < 40)
        return true; // the oldest ones, which nobody writes
    auto width = static_cast<std::int32_t>(bytes.little(4)),
         height = static_cast<std::int32_t>(bytes.little(4));
    bytes.skip(2);
    auto depth = bytes.little(2);
    if (auto packing = bytes.little(4); packing != 0 && packing != 3)
        return true; // its length is not known beforehand
    auto row = (static_cast<std::uint64_t>(std::max(width, 0)) * depth + 31) / 32 * 4;
    auto rows = static_cast<std::uint64_t>(std::llabs(height));
    return !bytes.isOver() && pixels + row * rows <= bytes.place() + bytes.left();
}

// The number that says how long an element is, itself of one to eight bytes. All ones: nobody knew.
struct MatroskaLength {
    std::uint64_t value = 0;
    bool isKnown = false;
};
MatroskaLength matroskaLength(Bytes& bytes)
{
    auto first = bytes.next();
    auto more = std::countl_zero(static_cast<std::uint8_t>(std::max(first, 0)));
    if (more > 7)
        return {};
    auto most = (std::uint64_t(1) << (7 * (more + 1))) - 1;
    auto value = (static_cast<std::uint64_t>(first) << (8 * more) | bytes.big(more)) & most;
    return {value, value != most};
}

bool isWholeMatroska(Bytes bytes)
{
    bytes.skip(4);
    auto head = matroskaLength(bytes);
    if (!head.isKnown || !bytes.skip(head.value))
        return false;
    while (bytes.left() > 0) {
        auto name = bytes.big(4);
        auto length = matroskaLength(bytes);
        if (!length.isKnown)
            return name == 0x18538067 && !bytes.isOver(); // a recording that was never finished can be played
        if (!bytes.skip(length.value))
            return false;
        if (name == 0x18538067) // the one segment, with everything in it
            return true;
    }
    return false;
}

bool isWholeOgg(Bytes bytes)
{
    while (bytes.left() > 0) {
        if (bytes.big(4) != 0x4F676753) // OggS; what follows is somebody else's
            return bytes.place() > 4;
        bytes.skip(22);
        auto parts = bytes.next();
        std::uint64_t length = 0;
        for (int i = 0; i < parts; ++i)
            length += static_cast<std::uint64_t>(std::max(bytes.next(), 0));
        if (parts < 0 || bytes.isOver() || !bytes.skip(length))
            return false;
    }
    return true;
}

} // namespace

bool isWholePicture(const std::string& path, std::string_view format)
{
    if (format == "jpeg")
        return isWholeJPEG(Bytes(path));
    if (format == "png")
        return isWholePNG(Bytes(path));
    if (format == "gif")
        return isWholeGIF(Bytes(path));
    if (format == "webp")
        return isWholeRIFF(Bytes(path));
    return format != "bmp" || isWholeBMP(Bytes(path));
}

// What names the samples can stand before them, so a file whose end is missing may look whole to whoever only opens it.
bool isWholeISOMedia(const std::string& path)
{
    Bytes bytes(path);
    while (bytes.left() > 0) {
        auto begin = bytes.place();
        auto length = bytes.big(4);
        bytes.skip(4);
        if (length == 0)
            return !bytes.isOver(); // to the end of the file, wherever that is
        if (length == 1)
            length = bytes.big(8);
        auto head = bytes.place() - begin;
        if (bytes.isOver() || length < head || !bytes.skip(length - head))
            return false;
    }
    return true;
}

bool isWholeVideo(const std::string& path)
{
    switch (Bytes(path).big(4)) {
    case 0x1A45DFA3:
        return isWholeMatroska(Bytes(path));
    case 0x52494646:
        return isWholeRIFF(Bytes(path));
    case 0x4F676753:
        return isWholeOgg(Bytes(path));
    default:
        return true;
    }
}

} // namespace platform

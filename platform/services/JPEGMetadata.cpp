// SPDX-License-Identifier: MIT
#include "platform/services/JPEGMetadata_p.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace platform {

namespace {

using namespace std::string_view_literals;

constexpr auto pictureBegins = "\xff\xd8"sv, exifName = "Exif\0\0"sv, profileName = "ICC_PROFILE\0"sv;
constexpr std::size_t segmentHead = 4; // a mark and a length, which counts itself

unsigned byteAt(std::string_view bytes, std::size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

// Calls `each` with the mark and all bytes of every whole segment before the picture itself.
template <class Each>
void forEachSegment(std::string_view jpeg, Each&& each)
{
    if (!jpeg.starts_with(pictureBegins))
        return;
    for (auto at = pictureBegins.size(); at + segmentHead <= jpeg.size() && byteAt(jpeg, at) == 0xff;) {
        auto mark = byteAt(jpeg, at + 1);
        if (mark == 0xff) { // filling
            ++at;
            continue;
        }
        std::size_t length = byteAt(jpeg, at + 2) << 8 | byteAt(jpeg, at + 3);
        if (mark == 0xda || mark == 0xd9 || length < 2 || length > jpeg.size() - at - 2)
            return;
        each(mark, jpeg.substr(at, length + 2));
        at += length + 2;
    }
}

// Directories of numbered entries in the manner of TIFF, changed where they stand: what notes of cameras refer to by its place
// stays there. Nothing outside of the bytes is touched, whatever they say.
class Exif {
public:
    explicit Exif(std::string bytes)
        : bytes_(std::move(bytes))
    {
    }
    std::string take() && { return std::move(bytes_); }

    // Whether it was understood.
    bool describeCut(int width, int height)
    {
        if (!bytes_.starts_with("II*\0"sv) && !bytes_.starts_with("MM\0*"sv))
            return false;
        isBigEndian_ = bytes_[0] == 'M';
        if (auto whole = directoryAt(4); whole && !dropSmallCopy(*whole))
            return false;
        auto image = directoryAt(4);
        if (!image)
            return false;
        for (std::size_t i = 0; i < image->count; ++i) {
            auto entry = entryAt(*image, i);
            if (auto tag = get(entry, 2); tag == orientation)
                set(entry, 3, 1);
            else if (tag == imageWidth || tag == imageHeight)
                set(entry, 4, static_cast<std::uint32_t>(tag == imageWidth ? width : height));
        }
        auto pointer = find(*image, exifDirectory);
        auto picture = pointer ? directoryAt(*pointer + 8) : std::nullopt;
        for (std::size_t i = 0; picture && i < picture->count;) {
            auto tag = get(entryAt(*picture, i), 2);
            if (tag == subjectArea || tag == subjectLocation) { // in pixels that are others now
                remove(*picture, i);
                continue;
            }
            if (tag == pixelWidth || tag == pixelHeight)
                set(entryAt(*picture, i), 4, static_cast<std::uint32_t>(tag == pixelWidth ? width : height));
            ++i;
        }
        return true;
    }

private:
    static constexpr std::uint32_t imageWidth = 0x100, imageHeight = 0x101, stripOffset = 0x111,
                                   orientation = 0x112, stripLength = 0x117, copyOffset = 0x201,
                                   copyLength = 0x202, exifDirectory = 0x8769, subjectArea = 0x9214,
                                   pixelWidth = 0xa002, pixelHeight = 0xa003, subjectLocation = 0xa214;
    static constexpr std::size_t entrySize = 12;

    struct Directory {
        std::size_t at = 0, count = 0;
        std::size_t end() const { return at + 2 + count * entrySize; } // then the place of the next one
    };

    bool has(std::size_t at, std::size_t size) const
    {
        return at <= bytes_.size() && size <= bytes_.size() - at;
    }
    std::uint32_t get(std::size_t at, std::size_t size) const
    {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < size; ++i)
            value = value << 8 | byteAt(bytes_, at + (isBigEndian_ ? i : size - 1 - i));
        return value;
    }
    void put(std::size_t at, std::size_t size, std::uint32_t value)
    {
        for (std::size_t i = 0; i < size; ++i)
            bytes_[at + (isBigEndian_ ? size - 1 - i : i)] = static_cast<char>(value >> 8 * i & 0xff);
    }
    // Whose place stands at `pointer`.
    std::optional<Directory> directoryAt(std::size_t pointer) const
    {
        if (!has(pointer, 4))
            return std::nullopt;
        Directory found{.at = get(pointer, 4)};
        if (found.at == 0 || !has(found.at, 2))
            return std::nullopt;
        found.count = get(found.at, 2);
        return has(found.at, 2 + found.count * entrySize) ? std::optional(found) : std::nullopt;
    }
    static std::size_t entryAt(const Directory& directory, std::size_t index)
    {
        return directory.at + 2 + index * entrySize;
    }
    std::optional<std::size_t> find(const Directory& directory, std::uint32_t tag) const
    {
        for (std::size_t i = 0; i < directory.count; ++i) {
            if (get(entryAt(directory, i), 2) == tag)
                return entryAt(directory, i);
        }
        return std::nullopt;
    }
    // One number, short (3) or long (4).
    void set(std::size_t entry, std::uint32_t type, std::uint32_t value)
    {
        put(entry + 2, 2, type);
        put(entry + 4, 4, 1);
        put(entry + 8, 4, 0);
        put(entry + 8, type == 3 ? 2 : 4, value);
    }
    void remove(Directory& directory, std::size_t index)
    {
        auto begin = bytes_.begin() + static_cast<std::ptrdiff_t>(entryAt(directory, index));
        auto end = bytes_.begin() + static_cast<std::ptrdiff_t>(std::min(directory.end() + 4, bytes_.size()));
        std::fill(std::shift_left(begin, end, entrySize), end, '\0');
        put(directory.at, 2, static_cast<std::uint32_t>(--directory.count));
    }
    // The second directory, which shows what was cut away.
    // Whether it is gone, or there was none.
    bool dropSmallCopy(const Directory& whole)
    {
        auto copy = directoryAt(whole.end());
        if (!copy)
            return true;
        put(whole.end(), 4, 0);
        auto number = [&](std::uint32_t tag) -> std::size_t {
            auto entry = find(*copy, tag);
            if (!entry)
                return 0;
            return get(*entry + 8, get(*entry + 2, 2) == 3 ? 2 : 4); // a short one stands in the first half
        };
        // Of a copy in several strips, which nobody writes, the places are no places of bytes.
        for (auto tag : {stripOffset, stripLength}) {
            auto entry = find(*copy, tag);
            if (entry && get(*entry + 4, 4) != 1)
                return false;
        }
        const std::pair<std::size_t, std::size_t> parts[] = {{number(copyOffset), number(copyLength)},
                                                             {number(stripOffset), number(stripLength)}};
        for (auto [begin, length] : parts) {
            begin = std::min(begin, bytes_.size());
            length = std::min(length, bytes_.size() - begin);
            std::fill_n(bytes_.begin() + static_cast<std::ptrdiff_t>(begin), length, '\0');
            if (length > 0 && begin + length == bytes_.size())
                bytes_.resize(begin);
        }
        return true;
    }

    std::string bytes_;
    bool isBigEndian_ = false;
};

std::string segment(char mark, std::string_view name, std::string_view content)
{
    auto length = 2 + name.size() + content.size();
    std::string made{'\xff', mark, static_cast<char>(length >> 8), static_cast<char>(length & 0xff)};
    return made.append(name).append(content);
}

} // namespace

JPEGMetadata metadataOfCut(std::string_view original, int width, int height)
{
    JPEGMetadata metadata;
    forEachSegment(original, [&](unsigned mark, std::string_view whole) {
        auto content = whole.substr(segmentHead);
        if (mark == 0xe1 && content.starts_with(exifName) && metadata.exif.empty()) {
            Exif exif{std::string(content.substr(exifName.size()))};
            if (exif.describeCut(width, height))
                metadata.exif = segment('\xe1', exifName, std::move(exif).take());
        }
        if (mark == 0xe2 && content.starts_with(profileName))
            metadata.profile.append(whole);
    });
    // What the profile is of stands 16 bytes after its beginning, which follows its number and how many there are.
    constexpr auto space = segmentHead + profileName.size() + 2 + 16;
    if (metadata.profile.size() < space + 4 || metadata.profile.compare(space, 4, "RGB ") != 0)
        metadata.profile.clear();
    return metadata;
}

std::string withMetadata(std::string jpeg, const JPEGMetadata& metadata)
{
    // The file's own first segment stays the first.
    auto place = pictureBegins.size();
    forEachSegment(jpeg, [&](unsigned mark, std::string_view whole) {
        if (mark == 0xe0 && place == pictureBegins.size())
            place += whole.size();
    });
    if (jpeg.starts_with(pictureBegins))
        jpeg.insert(place, metadata.exif + metadata.profile);
    return jpeg;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/avfoundation/JPEGEncoding_p.h"

#include "platform/avfoundation/CVPixelBuffer_p.h"
#include "platform/avfoundation/FFmpegError_p.h"
#include "platform/avfoundation/PictureConverter_p.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <vector>

namespace platform {

namespace {

constexpr int quality = 3; // of the encoder's 1 (best) to 31

// One directory of TIFF, little-endian: entries by tag, then what does not fit into them.
class Directory {
public:
    void add(std::uint16_t tag, std::uint16_t number) { entries_.push_back({tag, 3, 1, number, {}}); }
    void addLong(std::uint16_t tag, std::uint32_t number) { entries_.push_back({tag, 4, 1, number, {}}); }
    void add(std::uint16_t tag, std::string text)
    {
        if (text.empty())
            return;
        text.push_back('\0');
        entries_.push_back({tag, 2, static_cast<std::uint32_t>(text.size()), 0, std::move(text)});
    }
    std::uint32_t size() const
    {
        std::size_t bytes = 2 + entries_.size() * 12 + 4;
        for (const auto& entry : entries_)
            bytes += entry.isApart() ? entry.text.size() + entry.text.size() % 2 : 0;
        return static_cast<std::uint32_t>(bytes);
    }
    // As it stands `offset` bytes after the header's beginning.
    std::string bytes(std::uint32_t offset) const
    {
        std::string directory = number(entries_.size(), 2), apart;
        auto place = offset + static_cast<std::uint32_t>(2 + entries_.size() * 12 + 4);
        for (const auto& entry : entries_) {
            directory += number(entry.tag, 2) + number(entry.type, 2) + number(entry.count, 4);
            if (entry.isApart()) {
                directory += number(place + apart.size(), 4);
                apart += entry.text + std::string(entry.text.size() % 2, '\0');
            } else if (entry.type == 2) {
                directory += entry.text + std::string(4 - entry.text.size(), '\0');
            } else {
                directory += number(entry.value, 4);
            }
        }
        return directory.append(4, '\0').append(apart);
    }
    static std::string number(std::uint64_t value, int bytes)
    {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text.push_back(static_cast<char>(value >> (8 * i) & 0xff));
        return text;
    }

private:
    struct Entry {
        std::uint16_t tag, type;
        std::uint32_t count, value;
        std::string text;
        bool isApart() const { return type == 2 && text.size() > 4; }
    };
    std::vector<Entry> entries_;
};

std::string exifSegment(const PhotoFacts& facts)
{
    constexpr std::uint32_t headerSize = 8;
    Directory image, exif;
    image.add(0x0110, facts.model);
    image.add(0x0112, std::uint16_t{1}); // upright
    image.add(0x0132, facts.date);
    auto after = image;
    after.addLong(0x8769, 0); // where the other directory is, known when this one's size is
    auto place = headerSize + after.size();
    image.addLong(0x8769, place);
    exif.add(0x9003, facts.date);
    exif.add(0x9011, facts.date.empty() ? std::string() : facts.offset);
    exif.addLong(0xa002, static_cast<std::uint32_t>(facts.width));
    exif.addLong(0xa003, static_cast<std::uint32_t>(facts.height));
    std::string content("Exif\0\0II*\0\x08\0\0\0", 14);
    content += image.bytes(headerSize);
    content += exif.bytes(place);
    auto length = content.size() + 2;
    std::string segment = "\xff\xe1";
    segment.push_back(static_cast<char>(length >> 8));
    segment.push_back(static_cast<char>(length & 0xff));
    return segment + content;
}

// A text of a device's is no longer than a segment takes.
std::string shortened(const std::string& text)
{
    return text.substr(0, 200);
}

} // namespace

PhotoFacts factsAt(const Date& date)
{
    PhotoFacts facts;
    auto seconds = static_cast<std::time_t>(std::floor(date.timeIntervalSince1970));
    std::tm local{};
    if (!::localtime_r(&seconds, &local))
        return facts;
    std::array<char, 32> text{};
    if (std::strftime(text.data(), text.size(), "%Y:%m:%d %H:%M:%S", &local) > 0)
        facts.date = text.data();
    auto minutes = std::abs(local.tm_gmtoff) / 60;
    std::snprintf(text.data(), text.size(), "%c%02ld:%02ld", local.tm_gmtoff < 0 ? '-' : '+',
                  minutes / 60 % 100, minutes % 60);
    facts.offset = text.data();
    return facts;
}

Result<std::string> encodeJPEG(const CVPixelBuffer& picture, const PhotoFacts& facts)
{
    const auto* codec = avcodec_find_encoder(AV_CODEC_ID_MJPEG);
    CodecContext context(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!context)
        return failure(AVError::encoderNotFound);
    // JPEG knows one matrix, and all of the range.
    PictureConverter toRGB(PixelBufferAttributes{});
    auto rgb = TRY(toRGB.convert(*picture.frame().picture));
    auto source = makeFrame();
    if (av_frame_ref(source.get(), rgb->frame().picture.get()) < 0)
        return failure(AVError::outOfMemory);
    source->colorspace = AVCOL_SPC_SMPTE170M;
    PictureConverter toJPEG(PixelBufferAttributes{.kCVPixelBufferPixelFormatTypeKey =
                                                      CVPixelFormatType::planar420YpCbCr8FullRange});
    auto converted = TRY(toJPEG.convert(*source));
    auto frame = makeFrame();
    if (av_frame_ref(frame.get(), converted->frame().picture.get()) < 0)
        return failure(AVError::outOfMemory);
    frame->format = AV_PIX_FMT_YUVJ420P;
    frame->quality = FF_QP2LAMBDA * quality;
    frame->pts = 0;
    context->width = frame->width;
    context->height = frame->height;
    context->pix_fmt = AV_PIX_FMT_YUVJ420P;
    context->color_range = AVCOL_RANGE_JPEG;
    context->time_base = {1, 25};
    context->flags |= AV_CODEC_FLAG_QSCALE;
    context->global_quality = FF_QP2LAMBDA * quality;
    context->thread_count = 1;
    if (int code = avcodec_open2(context.get(), codec, nullptr); code < 0)
        return std::unexpected(mediaError(code, MediaWork::encode));
    auto packet = makePacket();
    int code = avcodec_send_frame(context.get(), frame.get());
    if (code >= 0)
        code = avcodec_receive_packet(context.get(), packet.get());
    if (code < 0)
        return std::unexpected(mediaError(code, MediaWork::encode));
    std::string jpeg(reinterpret_cast<const char*>(packet->data), static_cast<std::size_t>(packet->size));
    auto said = facts;
    said.model = shortened(facts.model);
    said.width = picture.width();
    said.height = picture.height();
    return jpeg.insert(2, exifSegment(said)); // after the mark of the picture's beginning
}

} // namespace platform

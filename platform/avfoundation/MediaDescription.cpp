// SPDX-License-Identifier: MIT
#include "platform/avfoundation/MediaDescription_p.h"

#include "platform/avfoundation/CMFormatDescription_p.h"
#include "platform/foundation/UTF8.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <set>

extern "C" {
#include <libavutil/display.h>
#include <libavutil/intreadwrite.h>
}

namespace platform {

namespace {

constexpr std::size_t greatestItemCount = 256;
constexpr std::size_t greatestItemLength = 1 << 16;

std::optional<AVMediaType> typeOf(const AVStream& stream)
{
    if (isCover(stream))
        return std::nullopt;
    switch (stream.codecpar->codec_type) {
    case AVMEDIA_TYPE_VIDEO:
        return AVMediaType::video;
    case AVMEDIA_TYPE_AUDIO:
        return AVMediaType::audio;
    case AVMEDIA_TYPE_SUBTITLE:
        return AVMediaType::subtitle;
    case AVMEDIA_TYPE_DATA:
        return stream.codecpar->codec_tag == MKTAG('t', 'm', 'c', 'd') ? AVMediaType::timecode
                                                                       : AVMediaType::metadata;
    default:
        return std::nullopt;
    }
}

std::string textOf(const AVDictionary* dictionary, const char* key)
{
    auto* entry = av_dict_get(dictionary, key, nullptr, 0);
    return entry ? entry->value : "";
}

// "00:01:02.500000000", as Matroska's writers leave it with each track.
CMTime taggedDuration(const AVStream& stream)
{
    auto text = textOf(stream.metadata, "DURATION");
    int hours = 0, minutes = 0;
    double seconds = 0;
    if (std::sscanf(text.c_str(), "%d:%d:%lf", &hours, &minutes, &seconds) != 3 || hours < 0 || minutes < 0
        || !(seconds >= 0 && seconds < 60))
        return CMTime::invalid();
    return CMTime(hours * 3600LL + minutes * 60LL, 1) + CMTime::makeWithSeconds(seconds, 1'000'000);
}

CMTimeRange timeRange(const MediaDemuxer& demuxer, int index)
{
    auto& stream = demuxer.stream(index);
    auto& format = demuxer.format();
    const auto first = stream.start_time == AV_NOPTS_VALUE ? 0 : stream.start_time - demuxer.origin(index);
    const auto start = mediaTime(std::max<std::int64_t>(first, 0), stream.time_base);
    CMTime duration;
    if (stream.duration > 0) {
        auto length = stream.duration;
        if (std::string_view(format.iformat->name) == "mp3") // counts from what the encoder added
            length = std::max<std::int64_t>(length - std::max<std::int64_t>(stream.start_time, 0), 0);
        duration = mediaTime(length, stream.time_base);
    } else if (auto tagged = taggedDuration(stream); tagged.isNumeric()) {
        // The tag says when the track ends.
        duration = tagged - mediaTime(demuxer.origin(index), stream.time_base) - start;
    } else if (format.duration > 0) {
        // From the earliest packet of all streams.
        auto origin = av_rescale_q(demuxer.origin(index), stream.time_base, {1, AV_TIME_BASE});
        auto begin = format.start_time == AV_NOPTS_VALUE ? origin : std::max(format.start_time, origin);
        duration = mediaTime(begin - origin + format.duration, {1, AV_TIME_BASE}) - start;
    }
    return {start, duration.isNumeric() ? CMTimeMaximum(duration, CMTime::zero()) : CMTime::zero()};
}

CGAffineTransform displayTransform(const AVStream& stream, CGSize size)
{
    std::size_t bytes = 0;
    auto* data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &bytes);
    if (!data || bytes < 9 * sizeof(std::int32_t))
        return {};
    std::array<std::int32_t, 9> matrix{};
    std::memcpy(matrix.data(), data, sizeof matrix);
    constexpr double one = 1 << 16;
    CGAffineTransform transform{
        .a = matrix[0] / one, .b = matrix[1] / one, .c = matrix[3] / one, .d = matrix[4] / one};
    if (std::abs(transform.determinant()) < 1e-3)
        return {};
    // Files say all sorts of things about where the turned picture lies.
    auto place = transform.apply(CGRect{{}, size});
    transform.tx = -place.minX();
    transform.ty = -place.minY();
    return transform;
}

bool isEncrypted(const AVStream& stream)
{
    static const std::set<std::uint32_t> tags{MKTAG('e', 'n', 'c', 'v'), MKTAG('e', 'n', 'c', 'a'),
                                              MKTAG('d', 'r', 'm', 's'), MKTAG('d', 'r', 'm', 'i'),
                                              MKTAG('e', 'n', 'c', 't')};
    return tags.contains(stream.codecpar->codec_tag)
        || av_stream_get_side_data(&stream, AV_PKT_DATA_ENCRYPTION_INIT_INFO, nullptr)
        || av_stream_get_side_data(&stream, AV_PKT_DATA_ENCRYPTION_INFO, nullptr);
}

bool hasDecoder(const AVCodecParameters& codec)
{
    if (!avcodec_find_decoder(codec.codec_id))
        return false;
    if (codec.codec_type == AVMEDIA_TYPE_VIDEO)
        return codec.width > 0 && codec.height > 0;
    return codec.codec_type == AVMEDIA_TYPE_AUDIO && codec.ch_layout.nb_channels > 0 && codec.sample_rate > 0;
}

MediaStream describe(const MediaDemuxer& demuxer, int index, AVMediaType type)
{
    auto& stream = demuxer.stream(index);
    auto& codec = *stream.codecpar;
    auto* mutableStream = const_cast<AVStream*>(&stream); // the library asks for it and changes nothing
    auto aspect =
        av_guess_sample_aspect_ratio(const_cast<AVFormatContext*>(&demuxer.format()), mutableStream, nullptr);
    auto rate = stream.avg_frame_rate.num > 0 ? stream.avg_frame_rate : stream.r_frame_rate;
    MediaStream result{.index = index, .mediaType = type, .timeRange = timeRange(demuxer, index)};
    // A movie's edits cut off what its last sample has too much.
    result.isTimeRangeBinding = stream.duration > 0 && demuxer.isMovie();
    result.format = makeFormatDescription(codec, stream.time_base, rate, aspect);
    if (type == AVMediaType::video) {
        auto ratio = result.format->video()->pixelAspectRatio;
        result.naturalSize = {std::max(std::round(codec.width * ratio), 1.0),
                              static_cast<double>(codec.height)};
        result.preferredTransform = displayTransform(stream, result.naturalSize);
        result.frameRate = rate.num > 0 && rate.den > 0 ? av_q2d(rate) : 0;
    }
    result.dataRate = static_cast<double>(std::max<std::int64_t>(codec.bit_rate, 0));
    if (auto language = textOf(stream.metadata, "language"); !language.empty())
        result.languageCode = language;
    result.isProtected = demuxer.isEncrypted(index) || isEncrypted(stream);
    result.isDecodable = !result.isProtected && hasDecoder(codec);
    return result;
}

struct CommonKey {
    std::string_view name;
    AVMetadataKey key;
};
constexpr CommonKey commonKeys[] = {
    {"title", AVMetadataKey::title},
    {"creation_time", AVMetadataKey::creationDate},
    {"date", AVMetadataKey::creationDate},
    {"com.apple.quicktime.creationdate", AVMetadataKey::creationDate},
    {"artist", AVMetadataKey::artist},
    {"album", AVMetadataKey::albumName},
    {"author", AVMetadataKey::author},
    {"composer", AVMetadataKey::author},
    {"copyright", AVMetadataKey::copyrights},
    {"description", AVMetadataKey::description},
    {"location", AVMetadataKey::location},
    {"com.apple.quicktime.location.ISO6709", AVMetadataKey::location},
    {"make", AVMetadataKey::make},
    {"com.apple.quicktime.make", AVMetadataKey::make},
    {"model", AVMetadataKey::model},
    {"com.apple.quicktime.model", AVMetadataKey::model},
    {"encoder", AVMetadataKey::software},
    {"com.apple.quicktime.software", AVMetadataKey::software},
    {"genre", AVMetadataKey::type},
};

} // namespace

std::vector<MediaStream> describeStreams(const MediaDemuxer& demuxer)
{
    std::vector<MediaStream> streams;
    std::set<CMPersistentTrackID> taken;
    for (int index = 0; index < demuxer.streamCount(); ++index) {
        auto type = typeOf(demuxer.stream(index));
        if (!type)
            continue;
        auto stream = describe(demuxer, index, *type);
        stream.trackID = demuxer.stream(index).id;
        if (stream.trackID <= 0 || taken.contains(stream.trackID))
            for (stream.trackID = index + 1; taken.contains(stream.trackID);)
                ++stream.trackID;
        taken.insert(stream.trackID);
        streams.push_back(std::move(stream));
    }
    return streams;
}

std::vector<AVMetadataItem> describeMetadata(const AVFormatContext& format)
{
    std::vector<AVMetadataItem> items;
    const AVDictionaryEntry* entry = nullptr;
    while (items.size() < greatestItemCount
           && (entry = av_dict_get(format.metadata, "", entry, AV_DICT_IGNORE_SUFFIX))) {
        std::string_view value(entry->value);
        AVMetadataItem item{.key = repairedUTF8(std::string_view(entry->key).substr(0, greatestItemLength)),
                            .value = repairedUTF8(value.substr(0, greatestItemLength))};
        auto common = std::ranges::find(commonKeys, std::string_view(entry->key), &CommonKey::name);
        if (common != std::end(commonKeys))
            item.commonKey = common->key;
        items.push_back(std::move(item));
    }
    return items;
}

namespace {

std::int64_t discarded(const AVPacket& packet, const AVStream& stream, std::size_t place)
{
    std::size_t size = 0;
    auto* data = av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
    if (!data || size < 8 || stream.codecpar->sample_rate <= 0)
        return 0;
    return av_rescale_q(AV_RL32(data + place), {1, stream.codecpar->sample_rate}, stream.time_base);
}

} // namespace

std::int64_t discardedAtStart(const AVPacket& packet, const AVStream& stream)
{
    return discarded(packet, stream, 0);
}

std::int64_t discardedAtEnd(const AVPacket& packet, const AVStream& stream)
{
    return discarded(packet, stream, 4);
}

} // namespace platform

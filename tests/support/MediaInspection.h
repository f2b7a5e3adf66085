// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/MediaFixtures.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
}

// A file as the codec library sees it, read without any of the code under test.
namespace tests {

struct InspectedPicture {
    double time = 0;    // seconds
    std::string planes; // of 8 bits and 4:2:0 Y, then U, then V, without padding; otherwise Y only

    int mean(std::size_t begin, std::size_t size) const
    {
        std::int64_t sum = 0;
        for (auto byte : planes.substr(begin, size))
            sum += static_cast<std::uint8_t>(byte);
        return static_cast<int>(sum / static_cast<std::int64_t>(size));
    }
    // Mean brightness and colour of the whole picture.
    int y() const { return mean(0, planes.size() * 2 / 3); }
    int u() const { return mean(planes.size() * 2 / 3, planes.size() / 6); }
    int v() const { return mean(planes.size() * 5 / 6, planes.size() / 6); }
    double distance(const InspectedPicture& other) const
    {
        double sum = 0;
        for (std::size_t i = 0; i < planes.size() && i < other.planes.size(); ++i)
            sum +=
                std::abs(static_cast<std::uint8_t>(planes[i]) - static_cast<std::uint8_t>(other.planes[i]));
        return planes.size() == other.planes.size() ? sum / static_cast<double>(planes.size()) : 255;
    }
};

struct InspectedPacket {
    std::int64_t pts, dts, duration;
    bool isKey;
};

struct InspectedStream {
    AVMediaType type = AVMEDIA_TYPE_UNKNOWN;
    AVCodecParameters parameters{}; // without extradata
    AVRational timeBase{}, aspect{};
    double rotation = 0; // degrees counterclockwise
    std::map<std::string, std::string> tags;
    std::vector<InspectedPacket> packets;
    std::vector<InspectedPicture> pictures;
    double soundStart = 0;                 // seconds
    std::vector<std::vector<float>> sound; // a channel each

    // The first sample louder than that at or after `from` seconds; negative when there is none.
    double onset(double from = 0, float loudness = 0.1F) const
    {
        const auto rate = parameters.sample_rate;
        for (std::size_t i = static_cast<std::size_t>(std::max((from - soundStart) * rate, 0.0));
             !sound.empty() && i < sound[0].size(); ++i)
            if (std::abs(sound[0][i]) > loudness)
                return soundStart + static_cast<double>(i) / rate;
        return -1;
    }
};

struct Inspection {
    std::vector<InspectedStream> streams;
    std::map<std::string, std::string> tags;
    double duration = 0;

    std::vector<const InspectedStream*> ofType(AVMediaType type) const
    {
        std::vector<const InspectedStream*> result;
        for (auto& stream : streams)
            if (stream.type == type)
                result.push_back(&stream);
        return result;
    }
    const InspectedStream& video() const { return *ofType(AVMEDIA_TYPE_VIDEO).at(0); }
    const InspectedStream& audio() const { return *ofType(AVMEDIA_TYPE_AUDIO).at(0); }
};

namespace inspection {

inline std::map<std::string, std::string> tagsOf(const AVDictionary* dictionary)
{
    std::map<std::string, std::string> tags;
    const AVDictionaryEntry* entry = nullptr;
    while ((entry = av_dict_get(dictionary, "", entry, AV_DICT_IGNORE_SUFFIX)))
        tags[entry->key] = entry->value;
    return tags;
}

inline float sampleAt(const AVFrame& frame, int channel, int index)
{
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const bool isPlanar = av_sample_fmt_is_planar(format);
    auto* plane = frame.extended_data[isPlanar ? channel : 0];
    const auto place = isPlanar ? index : index * frame.ch_layout.nb_channels + channel;
    switch (av_get_packed_sample_fmt(format)) {
    case AV_SAMPLE_FMT_FLT:
        return reinterpret_cast<const float*>(plane)[place];
    case AV_SAMPLE_FMT_S16:
        return static_cast<float>(reinterpret_cast<const std::int16_t*>(plane)[place]) / 32768.0F;
    case AV_SAMPLE_FMT_S32:
        return static_cast<float>(reinterpret_cast<const std::int32_t*>(plane)[place] / 2147483648.0);
    case AV_SAMPLE_FMT_U8:
        return static_cast<float>(plane[place] - 128) / 128.0F;
    default:
        ADD_FAILURE() << "samples of a form that nobody thought of";
        return 0;
    }
}

inline void take(InspectedStream& stream, const AVFrame& frame)
{
    const auto time = static_cast<double>(frame.best_effort_timestamp) * av_q2d(stream.timeBase);
    if (stream.type == AVMEDIA_TYPE_AUDIO) {
        if (stream.sound.empty())
            stream.soundStart = time;
        stream.sound.resize(static_cast<std::size_t>(frame.ch_layout.nb_channels));
        for (int channel = 0; channel < frame.ch_layout.nb_channels; ++channel)
            for (int i = 0; i < frame.nb_samples; ++i)
                stream.sound[static_cast<std::size_t>(channel)].push_back(sampleAt(frame, channel, i));
        return;
    }
    InspectedPicture picture{.time = time, .planes = {}};
    const bool is420 = frame.format == AV_PIX_FMT_YUV420P || frame.format == AV_PIX_FMT_YUVJ420P;
    for (int plane = 0; plane < (is420 ? 3 : 1); ++plane)
        for (int row = 0; row < (plane ? (frame.height + 1) / 2 : frame.height); ++row)
            picture.planes.append(reinterpret_cast<const char*>(frame.data[plane])
                                      + row * frame.linesize[plane],
                                  static_cast<std::size_t>(plane ? (frame.width + 1) / 2 : frame.width));
    stream.pictures.push_back(std::move(picture));
}

inline InspectedStream describe(const AVStream& source)
{
    InspectedStream stream{.type = source.codecpar->codec_type, .parameters = *source.codecpar};
    stream.parameters.extradata = nullptr; // the file's
    stream.timeBase = source.time_base;
    stream.aspect = source.sample_aspect_ratio;
    stream.tags = tagsOf(source.metadata);
    if (auto* matrix = av_stream_get_side_data(&source, AV_PKT_DATA_DISPLAYMATRIX, nullptr))
        stream.rotation = av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix));
    return stream;
}

} // namespace inspection

// All packets and pictures and sound. A file that the library cannot open fails the test and is empty.
inline Inspection inspect(const std::string& path)
{
    Inspection result;
    AVFormatContext* format = nullptr;
    if (avformat_open_input(&format, path.c_str(), nullptr, nullptr) < 0
        || avformat_find_stream_info(format, nullptr) < 0) {
        ADD_FAILURE() << "not media: " << path;
        avformat_close_input(&format);
        return result;
    }
    result.tags = inspection::tagsOf(format->metadata);
    result.duration = static_cast<double>(format->duration) / AV_TIME_BASE;
    std::vector<AVCodecContext*> decoders;
    for (unsigned i = 0; i < format->nb_streams; ++i) {
        result.streams.push_back(inspection::describe(*format->streams[i]));
        auto* decoder = avcodec_alloc_context3(nullptr);
        avcodec_parameters_to_context(decoder, format->streams[i]->codecpar);
        decoder->pkt_timebase = format->streams[i]->time_base;
        if (avcodec_open2(decoder, avcodec_find_decoder(format->streams[i]->codecpar->codec_id), nullptr) < 0)
            avcodec_free_context(&decoder);
        decoders.push_back(decoder);
    }
    auto* frame = av_frame_alloc();
    auto decode = [&](std::size_t index, const AVPacket* packet) {
        if (!decoders[index] || avcodec_send_packet(decoders[index], packet) < 0)
            return;
        while (avcodec_receive_frame(decoders[index], frame) >= 0)
            inspection::take(result.streams[index], *frame);
    };
    auto* packet = av_packet_alloc();
    while (av_read_frame(format, packet) >= 0) {
        auto index = static_cast<std::size_t>(packet->stream_index);
        result.streams[index].packets.push_back(
            {packet->pts, packet->dts, packet->duration, (packet->flags & AV_PKT_FLAG_KEY) != 0});
        decode(index, packet);
        av_packet_unref(packet);
    }
    for (std::size_t i = 0; i < decoders.size(); ++i) {
        decode(i, nullptr);
        avcodec_free_context(&decoders[i]);
    }
    av_packet_free(&packet);
    av_frame_free(&frame);
    avformat_close_input(&format);
    return result;
}

// What the command-line prober complains of when it reads and decodes all; empty when nothing.
inline std::string proberWarnings(const std::string& path)
{
    return outputOf("ffprobe -v warning -count_frames -show_entries stream=nb_read_frames " + path
                    + " 2>&1 >/dev/null");
}

// Whether a movie's index lies before its media.
inline bool hasIndexAtFront(const std::string& path)
{
    auto bytes = outputOf("cat " + path);
    auto index = bytes.find("moov"), media = bytes.find("mdat");
    return index != std::string::npos && index < media;
}

} // namespace tests

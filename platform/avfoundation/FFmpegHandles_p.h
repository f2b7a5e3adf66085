// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/buffer.h>
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

namespace platform {

// Owners of the codec library's objects. Each kind is freed by the function that the library has for it.
template <auto free>
struct FFmpegFree {
    template <class Object>
    void operator()(Object* object) const
    {
        free(&object);
    }
};
struct FFmpegFreeSws {
    void operator()(SwsContext* context) const { sws_freeContext(context); }
};

// An input that was opened. An output's context is closed by avformat_free_context.
using FormatInput = std::unique_ptr<AVFormatContext, FFmpegFree<avformat_close_input>>;
struct FFmpegFreeFormat {
    void operator()(AVFormatContext* context) const { avformat_free_context(context); }
};
using FormatOutput = std::unique_ptr<AVFormatContext, FFmpegFreeFormat>;
using CodecContext = std::unique_ptr<AVCodecContext, FFmpegFree<avcodec_free_context>>;
using CodecParameters = std::unique_ptr<AVCodecParameters, FFmpegFree<avcodec_parameters_free>>;
using Packet = std::unique_ptr<AVPacket, FFmpegFree<av_packet_free>>;
using Frame = std::unique_ptr<AVFrame, FFmpegFree<av_frame_free>>;
using BufferReference = std::unique_ptr<AVBufferRef, FFmpegFree<av_buffer_unref>>;
using Resampler = std::unique_ptr<SwrContext, FFmpegFree<swr_free>>;
using Scaler = std::unique_ptr<SwsContext, FFmpegFreeSws>;

// Never null: a process without the memory for a packet's header stops.
Packet makePacket();
Frame makeFrame();

} // namespace platform

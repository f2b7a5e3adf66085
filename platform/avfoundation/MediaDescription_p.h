// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/MediaSource_p.h"

namespace platform {

// The tracks of a file that was just opened, covers and attachments left out.
std::vector<MediaStream> describeStreams(const MediaDemuxer& demuxer);
std::vector<AVMetadataItem> describeMetadata(const AVFormatContext& format);

// What a decoder gives for the packet and nobody is to hear, in ticks of the stream.
std::int64_t discardedAtStart(const AVPacket& packet, const AVStream& stream);
std::int64_t discardedAtEnd(const AVPacket& packet, const AVStream& stream);

} // namespace platform

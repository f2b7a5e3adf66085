// SPDX-License-Identifier: MIT
#include "platform/avfoundation/FFmpegHandles_p.h"

#include "platform/foundation/Precondition.h"

namespace platform {

Packet makePacket()
{
    Packet packet(av_packet_alloc());
    precondition(packet != nullptr, "no memory for a packet's header");
    return packet;
}

Frame makeFrame()
{
    Frame frame(av_frame_alloc());
    precondition(frame != nullptr, "no memory for a frame's header");
    return frame;
}

} // namespace platform

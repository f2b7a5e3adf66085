// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/MediaDemuxer_p.h"
#include "platform/avfoundation/StillMoment_p.h"

#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace platform {

// A piece of a group of pictures: packets to decode one after the other. Great groups come in several pieces.
struct PacketGroup {
    std::vector<Packet> packets;
    // Whether a packet's picture may be one that is wanted: where others refer to it, it is decoded all the same.
    std::vector<bool> isWanted;
    // Wanted of this piece or of a later one of the group, by time.
    std::vector<StillMoment> moments;
    // Presentation time of the first picture to be decoded.
    std::int64_t keyTime = 0;
    // Whether there is nothing before it that could be decoded.
    bool isFirstOfStream = false;
    bool isKeyAlone = false;
    bool begins = false;
    bool ends = false;
    // Why there is no more of the group.
    std::optional<Error> error;
};

// Reads the packets that a list of moments needs, and as few others as the container allows, each group of pictures
// once. One thread at a time.
class GroupReader {
public:
    static Result<std::unique_ptr<GroupReader>> open(const StillSession& session, std::stop_token stop);

    // The next piece, or nothing when no moments are left.
    std::optional<PacketGroup> next();
    // Looks for the moment once more, as its seekTime and mayUseKeyAlone say.
    void retry(StillMoment moment);

private:
    GroupReader() = default;

    // the packet ahead
    Result<void> fetch();
    Result<void> locate(std::int64_t time);
    Result<void> locate(const StillMoment& moment);
    std::optional<std::int64_t> probeAfter(const StillMoment& moment) const;
    bool isKeyAccepted(const StillMoment& moment) const;
    std::int64_t timeAhead() const;
    std::int64_t decodeTimeAhead() const;
    bool isKeyAhead() const;

    // groups
    PacketGroup makeGroup() const;
    PacketGroup readKeyAlone();
    void openGroup();
    std::optional<PacketGroup> readOn();
    Result<bool> goesOn(PacketGroup& group);
    Result<bool> reachesNext();
    Result<bool> returnsTo(const StillMoment& moment);
    void settle(PacketGroup& group, std::int64_t end);
    PacketGroup finish(PacketGroup group);
    PacketGroup fail(PacketGroup group, Error error);
    void mark(PacketGroup& group) const;

    // fixed after opening
    std::unique_ptr<MediaDemuxer> demuxer_;
    int streamIndex_ = 0;
    std::int64_t second_ = 0; // in ticks
    std::int64_t firstTime_ = 0;
    bool isInterlaced_ = false;

    std::vector<StillMoment> pending_; // by time, the next one last
    std::vector<StillMoment> retries_; // join them when no group is open
    Packet ahead_ = makePacket();      // read and not given
    bool hasAhead_ = false;
    bool isLocated_ = false; // ahead_ is where to begin decoding for the next moment

    // the open group
    std::optional<PacketGroup> begun_; // its first piece, empty
    bool isOpen_ = false;
    bool lacksTimes_ = false;  // nobody knows which packet is when: all to the end belong to it
    bool leadsToNext_ = false; // reading on is the way to the next moment
    std::int64_t lastDecodeTime_ = 0;
    std::vector<std::int64_t> settledTimes_; // of moments that belong to it
};

} // namespace platform

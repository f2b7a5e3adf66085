// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/FFmpegHandles_p.h"
#include "platform/avfoundation/FFmpegTime_p.h"
#include "platform/avfoundation/MediaFile_p.h"
#include "platform/foundation/Result.h"

#include <deque>
#include <initializer_list>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

namespace platform {

// More are not looked at.
inline constexpr int greatestStreamCount = 256;

// A picture that belongs to the file and not to its timeline.
bool isCover(const AVStream& stream);

// Splits a media file into the packets of its streams. Times of packets are asset times in the stream's time base:
// zero is where the asset's timeline begins, which is the movie's own zero where the container has one (QuickTime,
// MP4) and else the earliest packet, when that lies after zero. One thread at a time.
class MediaDemuxer {
public:
    // Reads the headers and as much of the data as it takes to know the streams, at most some megabytes.
    static Result<std::unique_ptr<MediaDemuxer>> open(const std::string& path, std::stop_token stop);

    const AVFormatContext& format() const { return *format_; }
    const AVStream& stream(int index) const { return *format_->streams[index]; }
    int streamCount() const { return static_cast<int>(format_->nb_streams); }
    const FileIdentity& identity() const { return file_->identity(); }
    // Asset time zero, in ticks of the stream's time base.
    std::int64_t origin(int stream) const;

    // QuickTime, MP4 and their kin, which have an index and a timeline of their own.
    bool isMovie() const;
    // Whether the first packets of the stream are encrypted.
    bool isEncrypted(int stream) const { return states_[static_cast<std::size_t>(stream)].isEncrypted; }

    void setStopToken(std::stop_token stop) { file_->setStopToken(std::move(stop)); }
    bool isStopped() const { return file_->isStopped(); }
    // The other streams are skipped, which spares reading them where the container allows.
    void select(std::initializer_list<int> streams);

    // Goes to a packet where decoding can begin, at or before `time` (asset time, ticks of the stream) in the order of
    // decoding: a picture with that time is decoded from there. At the start of the file when there is no such place. Packets of other streams before it are
    // passed over.
    Result<void> seek(int stream, std::int64_t time);

    // The next packet of the selected streams. False at the end. Presentation and decode times are there unless the
    // container has none; times that wrapped around go on growing. Damage is stepped over; fails when the file itself
    // cannot be read, was cut off within data that its index lists, or reading was stopped.
    Result<bool> read(AVPacket& packet);

private:
    MediaDemuxer(std::unique_ptr<MediaFile> file, FormatInput format);
    void findOrigin();
    void findOriginOfPictures();
    void lookForEncryption();
    Result<bool> readOn(AVPacket& packet);
    void repairTimes(AVPacket& packet);
    bool isCutOff() const;
    void forgetTimes();
    Result<void> goToStart(int stream);
    Result<bool> findKey(int stream, std::int64_t time);
    Error failureOf(int code) const;

    struct StreamState {
        std::int64_t origin = 0;
        std::int64_t lastDts = AV_NOPTS_VALUE;
        std::int64_t nextDts = AV_NOPTS_VALUE; // as the container counts
        std::int64_t wrapOffset = 0;
        bool wasSeen = false;
        bool isEncrypted = false;
    };

    std::unique_ptr<MediaFile> file_; // outlives format_
    FormatInput format_;
    std::vector<StreamState> states_;
    // read ahead; next to be given
    std::deque<Packet> pending_;
    bool isAtStart_ = true;
};

} // namespace platform

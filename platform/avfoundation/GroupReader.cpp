// SPDX-License-Identifier: MIT
#include "platform/avfoundation/GroupReader_p.h"

#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/CMFormatDescription_p.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace platform {

namespace {

// Of a piece: what a worker may hold in memory.
constexpr std::int64_t greatestPieceBytes = 32 << 20;
constexpr std::size_t greatestPieceCount = 1000;

constexpr auto endOfTime = std::numeric_limits<std::int64_t>::max();

} // namespace

Result<std::unique_ptr<GroupReader>> GroupReader::open(const StillSession& session, std::stop_token stop)
{
    auto& stream = session.source->streams()[static_cast<std::size_t>(session.stream)];
    if (stream.isProtected)
        return failure(AVError::contentIsProtected);
    std::unique_ptr<GroupReader> reader(new GroupReader);
    reader->demuxer_ = TRY(session.source->openDemuxer(std::move(stop)));
    reader->demuxer_->select({stream.index});
    reader->streamIndex_ = stream.index;
    const auto& parameters = stream.format->parameters();
    reader->second_ = std::max<std::int64_t>(av_rescale_q(1, {1, 1}, parameters.timeBase), 1);
    reader->firstTime_ = ticks(stream.timeRange.start, parameters.timeBase);
    reader->isInterlaced_ = parameters.codec->field_order > AV_FIELD_PROGRESSIVE;
    reader->retries_ = session.moments;
    return reader;
}

void GroupReader::retry(StillMoment moment)
{
    retries_.push_back(std::move(moment));
}

std::optional<PacketGroup> GroupReader::next()
{
    if (isOpen_)
        return readOn();
    if (!retries_.empty()) {
        pending_.insert(pending_.end(), retries_.begin(), retries_.end());
        retries_.clear();
        std::ranges::stable_sort(pending_, std::greater(), &StillMoment::time);
        isLocated_ = false;
    }
    while (!pending_.empty()) {
        const auto moment = pending_.back();
        if (!isLocated_)
            if (auto located = locate(moment); !located)
                return fail(makeGroup(), located.error());
        if (isKeyAccepted(moment))
            return readKeyAlone();
        openGroup();
        if (auto piece = readOn())
            return piece;
    }
    return std::nullopt;
}

Result<void> GroupReader::fetch()
{
    av_packet_unref(ahead_.get());
    hasAhead_ = false;
    hasAhead_ = TRY(demuxer_->read(*ahead_));
    return {};
}

Result<void> GroupReader::locate(std::int64_t time)
{
    isLocated_ = hasAhead_ = false;
    TRY(demuxer_->seek(streamIndex_, time));
    TRY(fetch());
    isLocated_ = true;
    return {};
}

bool GroupReader::isKeyAccepted(const StillMoment& moment) const
{
    return moment.mayUseKeyAlone && isKeyAhead() && moment.accepts(timeAhead());
}

// Where to look for a key picture within the moment's tolerance after it, as far as the index tells.
std::optional<std::int64_t> GroupReader::probeAfter(const StillMoment& moment) const
{
    if (!moment.mayUseKeyAlone || moment.latest <= moment.time)
        return std::nullopt;
    auto* stream = demuxer_->format().streams[streamIndex_];
    if (avformat_index_get_entries_count(stream) == 0)
        return std::min(moment.time + 2 * second_, moment.latest);
    const auto origin = demuxer_->origin(streamIndex_);
    auto* entry = avformat_index_get_entry_from_timestamp(stream, moment.time + origin, 0);
    if (!entry || entry->timestamp - origin > moment.latest)
        return std::nullopt;
    // The index counts by times of decoding; the picture is shown a little later.
    return std::min(entry->timestamp - origin + second_, moment.latest);
}

// Goes to where decoding for the moment can begin: to a picture that will do alone, if there is one.
Result<void> GroupReader::locate(const StillMoment& moment)
{
    TRY(locate(moment.seekTime));
    const auto before = timeAhead();
    auto probe = isKeyAccepted(moment) ? std::nullopt : probeAfter(moment);
    if (!probe)
        return {};
    TRY(locate(*probe));
    if (timeAhead() != before && !isKeyAccepted(moment))
        TRY(locate(moment.seekTime));
    return {};
}

std::int64_t GroupReader::timeAhead() const
{
    return ahead_->pts != AV_NOPTS_VALUE ? ahead_->pts : decodeTimeAhead();
}

std::int64_t GroupReader::decodeTimeAhead() const
{
    if (ahead_->dts != AV_NOPTS_VALUE)
        return ahead_->dts;
    return ahead_->pts != AV_NOPTS_VALUE ? ahead_->pts : lastDecodeTime_;
}

bool GroupReader::isKeyAhead() const
{
    return hasAhead_ && (ahead_->flags & AV_PKT_FLAG_KEY) && ahead_->pts != AV_NOPTS_VALUE;
}

PacketGroup GroupReader::makeGroup() const
{
    PacketGroup group{.keyTime = timeAhead(), .begins = true};
    group.isFirstOfStream =
        group.keyTime <= firstTime_ || (!pending_.empty() && group.keyTime > pending_.back().seekTime);
    return group;
}

// The key picture ahead, for all moments for which it is the one to take.
PacketGroup GroupReader::readKeyAlone()
{
    auto group = makeGroup();
    group.isKeyAlone = group.ends = true;
    auto take = [&] {
        group.packets.push_back(std::exchange(ahead_, makePacket()));
        hasAhead_ = isLocated_ = false;
    };
    take();
    // The second field may be a packet of its own.
    if (isInterlaced_ && fetch() && hasAhead_)
        take();
    group.isWanted.assign(group.packets.size(), true);
    auto isSameAhead = [&] { return isLocated_ && hasAhead_ && timeAhead() == group.keyTime; };
    do {
        group.moments.push_back(std::move(pending_.back()));
        pending_.pop_back();
        isLocated_ = false;
        // What fails is met again by the next call.
        if (pending_.empty() || !locate(pending_.back()))
            return group;
    } while (isKeyAccepted(pending_.back()) && isSameAhead());

    // The rest of the group is needed, too: it is decoded once.
    if (isSameAhead()) {
        openGroup();
        begun_->isFirstOfStream = group.isFirstOfStream;
        for (auto& moment : group.moments)
            settledTimes_.push_back(moment.time);
        begun_->moments = std::move(group.moments);
        leadsToNext_ = true;
        if (auto piece = readOn())
            return *std::move(piece);
    }
    return group;
}

void GroupReader::openGroup()
{
    begun_ = makeGroup();
    isOpen_ = true;
    isLocated_ = leadsToNext_ = false;
    lacksTimes_ = hasAhead_ && ahead_->dts == AV_NOPTS_VALUE && ahead_->pts == AV_NOPTS_VALUE;
    lastDecodeTime_ = INT64_MIN;
    settledTimes_.clear();
}

// Nothing when the group turns out to be of no use.
std::optional<PacketGroup> GroupReader::readOn()
{
    auto group = std::exchange(begun_, std::nullopt).value_or(PacketGroup{});
    std::int64_t bytes = 0;
    while (bytes < greatestPieceBytes && group.packets.size() < greatestPieceCount) {
        auto more = goesOn(group);
        if (!more)
            return fail(std::move(group), more.error());
        if (!*more) {
            isOpen_ = false;
            group.ends = true;
            if (group.begins && settledTimes_.empty())
                return std::nullopt;
            return finish(std::move(group));
        }
        lastDecodeTime_ = std::max(lastDecodeTime_, decodeTimeAhead());
        bytes += ahead_->size;
        group.packets.push_back(std::exchange(ahead_, makePacket()));
        if (auto fetched = fetch(); !fetched)
            return fail(std::move(group), fetched.error());
    }
    return finish(std::move(group));
}

// Whether the packet ahead belongs to the group.
Result<bool> GroupReader::goesOn(PacketGroup& group)
{
    if (hasAhead_ && lacksTimes_) {
        settle(group, endOfTime);
        return true;
    }
    settle(group, hasAhead_ ? decodeTimeAhead() : endOfTime);
    if (!hasAhead_ || pending_.empty())
        return false;
    const bool isFirst = group.begins && group.packets.empty();
    if (!isFirst && isKeyAhead() && ahead_->pts <= pending_.back().seekTime) {
        isLocated_ = true;
        return false;
    }
    if (settledTimes_.empty() || leadsToNext_)
        return true;
    leadsToNext_ = TRY(reachesNext());
    if (!leadsToNext_)
        return false;
    return goesOn(group); // ahead may be another packet
}

// The moments up to here are served. Whether to read on to the next one, for it may belong to the group, or to go where
// decoding for it can begin.
Result<bool> GroupReader::reachesNext()
{
    const auto& moment = pending_.back();
    if (auto probe = probeAfter(moment)) {
        TRY(locate(*probe));
        if (isKeyAccepted(moment) && decodeTimeAhead() > lastDecodeTime_)
            return false;
        return returnsTo(moment);
    }
    if (moment.seekTime - decodeTimeAhead() <= second_)
        return true;
    auto* stream = demuxer_->format().streams[streamIndex_];
    const auto origin = demuxer_->origin(streamIndex_);
    const int count = avformat_index_get_entries_count(stream);
    auto* key =
        avformat_index_get_entry_from_timestamp(stream, moment.seekTime + origin, AVSEEK_FLAG_BACKWARD);
    auto* last = count > 0 ? avformat_index_get_entry(stream, count - 1) : nullptr;
    if (key && last->timestamp - origin > moment.seekTime && key->timestamp - origin <= lastDecodeTime_)
        return true;
    return returnsTo(moment);
}

// Goes to where decoding for the moment can begin. Whether that is this group; then on to what was not read yet.
Result<bool> GroupReader::returnsTo(const StillMoment& moment)
{
    TRY(locate(moment.seekTime));
    if (!hasAhead_ || decodeTimeAhead() > lastDecodeTime_)
        return false;
    while (hasAhead_ && decodeTimeAhead() <= lastDecodeTime_)
        TRY(fetch());
    isLocated_ = false;
    return true;
}

// The moments before `end` belong to the group.
void GroupReader::settle(PacketGroup& group, std::int64_t end)
{
    while (!pending_.empty() && (pending_.back().time < end || end == endOfTime)) {
        settledTimes_.push_back(pending_.back().time);
        group.moments.push_back(std::move(pending_.back()));
        pending_.pop_back();
        leadsToNext_ = false;
    }
}

PacketGroup GroupReader::finish(PacketGroup group)
{
    if (!group.ends) {
        // The pictures of some moments may be here although more packets must be read to be sure.
        std::int64_t latest = INT64_MIN;
        for (auto& packet : group.packets)
            latest = std::max(latest, packet->pts);
        const bool led = leadsToNext_;
        if (latest < endOfTime)
            settle(group, latest + 1);
        leadsToNext_ = leadsToNext_ && led;
    }
    mark(group);
    return group;
}

PacketGroup GroupReader::fail(PacketGroup group, Error error)
{
    for (auto& moment : pending_)
        moment.isCutOff = true;
    settle(group, endOfTime);
    isOpen_ = isLocated_ = false;
    group.ends = true;
    group.error = std::move(error);
    mark(group);
    return group;
}

// Finds for each moment the last picture that begins at or before it, and leaves out what comes after all of these.
void GroupReader::mark(PacketGroup& group) const
{
    auto isUnknown = [](auto& packet) { return packet->pts == AV_NOPTS_VALUE; };
    group.isWanted.assign(group.packets.size(), true);
    if (group.packets.empty() || std::ranges::any_of(group.packets, isUnknown))
        return;
    std::vector<std::pair<std::int64_t, std::size_t>> shown;
    for (std::size_t place = 0; place < group.packets.size(); ++place)
        shown.emplace_back(group.packets[place]->pts, place);
    std::ranges::sort(shown);
    group.isWanted.assign(group.packets.size(), false);
    std::size_t end = 0;
    for (auto time : settledTimes_) {
        auto after = std::ranges::upper_bound(shown, time, {}, [](auto& entry) { return entry.first; });
        auto place = (after == shown.begin() ? after : std::prev(after))->second;
        group.isWanted[place] = true;
        end = std::max(end, place + 1);
    }
    if (!group.ends) {
        group.isWanted[shown.back().second] = true; // for what comes later
        return;
    }
    group.packets.resize(end);
    group.isWanted.resize(end);
}

} // namespace platform

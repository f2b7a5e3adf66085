// SPDX-License-Identifier: MIT
#include "platform/avfoundation/MediaMuxer_p.h"

#include "platform/avfoundation/FFmpegError_p.h"
#include "platform/foundation/Precondition.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

extern "C" {
#include <libavutil/display.h>
#include <libavutil/opt.h>
}

namespace platform {

namespace {

constexpr int bufferSize = 256 * 1024;

const char* metadataName(AVMetadataKey key)
{
    switch (key) {
    case AVMetadataKey::title:
        return "title";
    case AVMetadataKey::creationDate:
        return "date";
    case AVMetadataKey::artist:
        return "artist";
    case AVMetadataKey::albumName:
        return "album";
    case AVMetadataKey::author:
        return "author";
    case AVMetadataKey::copyrights:
        return "copyright";
    case AVMetadataKey::description:
        return "description";
    case AVMetadataKey::location:
        return "location";
    case AVMetadataKey::make:
        return "make";
    case AVMetadataKey::model:
        return "model";
    case AVMetadataKey::software:
    case AVMetadataKey::type:
        return nullptr; // of the source's making, no longer true
    }
    return nullptr;
}

// The display matrix of the container: rows of 16.16 fixed point, the last column of 2.30.
void setTransform(AVStream& stream, const CGAffineTransform& t)
{
    if (t.isIdentity())
        return;
    auto* bytes = av_stream_new_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, 9 * sizeof(std::int32_t));
    precondition(bytes != nullptr, "no memory for nine numbers");
    auto* matrix = reinterpret_cast<std::int32_t*>(bytes);
    auto fixed = [](double value) { return static_cast<std::int32_t>(value * 65536.0); };
    const std::int32_t values[9] = {fixed(t.a), fixed(t.b),  0,           fixed(t.c), fixed(t.d),
                                    0,          fixed(t.tx), fixed(t.ty), 1 << 30};
    std::copy(std::begin(values), std::end(values), matrix);
}

} // namespace

// The file, written through descriptors of our own: it is never one that was there before, and an error of the system
// is known by its number.
struct MediaMuxer::OutputFile {
    explicit OutputFile(std::string filePath)
        : path(std::move(filePath))
    {
    }
    OutputFile(const OutputFile&) = delete; // owns a descriptor, and the library has its address
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile()
    {
        if (io) {
            av_freep(&io->buffer);
            avio_context_free(&io);
        }
        if (descriptor >= 0)
            ::close(descriptor);
    }

    // Makes the file and keeps it closed until there is something to write: those who wait for their turn hold no
    // descriptor and no buffer.
    Result<void> create()
    {
        int made = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (made < 0) {
            if (errno == EEXIST)
                return failure(AVError::fileAlreadyExists);
            return std::unexpected(mediaError(AVERROR(errno), MediaWork::write, name()));
        }
        static_cast<void>(::fstat(made, &identity)); // of an open file; open compares
        ::close(made);
        return {};
    }

    Result<void> open()
    {
        struct stat found{};
        descriptor = ::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC);
        if (descriptor < 0)
            return std::unexpected(mediaError(AVERROR(errno), MediaWork::write, name()));
        if (::fstat(descriptor, &found) != 0 || found.st_dev != identity.st_dev
            || found.st_ino != identity.st_ino)
            return failure(AVError::fileAlreadyExists); // somebody put another into its place
        auto* buffer = static_cast<unsigned char*>(av_malloc(bufferSize));
        io = buffer ? avio_alloc_context(buffer, bufferSize, 1, this, nullptr, writeBytes, seekTo) : nullptr;
        if (!io) {
            av_free(buffer);
            return failure(AVError::outOfMemory);
        }
        return {};
    }

    std::string name() const { return path.substr(path.rfind('/') + 1); }

    static int writeBytes(void* opaque, std::uint8_t* bytes, int count)
    {
        auto& file = *static_cast<OutputFile*>(opaque);
        int rest = count;
        while (rest > 0) {
            auto written = ::write(file.descriptor, bytes, static_cast<std::size_t>(rest));
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0) {
                file.errorNumber = written < 0 ? errno : EIO;
                return AVERROR(file.errorNumber);
            }
            bytes += written;
            rest -= static_cast<int>(written);
        }
        return count;
    }

    static std::int64_t seekTo(void* opaque, std::int64_t offset, int whence)
    {
        auto& file = *static_cast<OutputFile*>(opaque);
        if (whence & AVSEEK_SIZE) {
            struct stat status{};
            return ::fstat(file.descriptor, &status) == 0 ? status.st_size : AVERROR(errno);
        }
        auto place = ::lseek(file.descriptor, offset, whence & ~AVSEEK_FORCE);
        return place >= 0 ? place : AVERROR(errno);
    }

    const std::string path;
    struct stat identity{};
    int descriptor = -1;
    int errorNumber = 0; // of the first write that failed
    AVIOContext* io = nullptr;
};

const AVOutputFormat* MediaMuxer::outputFormat(AVFileType type)
{
    switch (type) {
    case AVFileType::quickTimeMovie:
        return av_guess_format("mov", nullptr, nullptr);
    case AVFileType::mpeg4:
        return av_guess_format("mp4", nullptr, nullptr);
    case AVFileType::appleM4A:
        return av_guess_format("ipod", nullptr, nullptr);
    case AVFileType::wave:
        return av_guess_format("wav", nullptr, nullptr);
    }
    return nullptr;
}

MediaMuxer::MediaMuxer(std::unique_ptr<OutputFile> file, FormatOutput format, AVFileType type,
                       std::size_t trackCount, MuxerOptions options)
    : file_(std::move(file))
    , format_(std::move(format))
    , type_(type)
    , options_(std::move(options))
    , tracks_(trackCount)
{
}

MediaMuxer::~MediaMuxer() = default;

Result<std::unique_ptr<MediaMuxer>> MediaMuxer::create(const std::string& path, AVFileType type,
                                                       std::size_t trackCount, MuxerOptions options)
{
    silenceMediaLibrary();
    auto file = std::make_unique<OutputFile>(path);
    TRY(file->create());
    AVFormatContext* context = nullptr;
    int code = avformat_alloc_output_context2(&context, outputFormat(type), nullptr, path.c_str());
    if (code < 0)
        return std::unexpected(mediaError(code, MediaWork::write, file->name()));
    FormatOutput format(context);
    format->flags |= AVFMT_FLAG_CUSTOM_IO | AVFMT_FLAG_BITEXACT;
    return std::unique_ptr<MediaMuxer>(
        new MediaMuxer(std::move(file), std::move(format), type, trackCount, std::move(options)));
}

Error MediaMuxer::failureOf(int code) const
{
    return mediaError(file_->errorNumber != 0 ? AVERROR(file_->errorNumber) : code, MediaWork::write,
                      file_->name());
}

Result<void> MediaMuxer::describe(std::size_t track, MuxerTrack description)
{
    std::lock_guard lock(mutex_);
    tracks_[track].description = std::move(description);
    return writeHeaderIfKnown();
}

Result<void> MediaMuxer::drop(std::size_t track)
{
    std::lock_guard lock(mutex_);
    precondition(!tracks_[track].description, "a track that was described has its place in the file");
    tracks_[track].isDropped = true;
    return writeHeaderIfKnown();
}

Result<void> MediaMuxer::writeHeaderIfKnown()
{
    bool isKnown =
        std::ranges::all_of(tracks_, [](const Track& track) { return track.description || track.isDropped; });
    bool isEmpty = std::ranges::all_of(tracks_, [](const Track& track) { return track.isDropped; });
    if (!isKnown || isEmpty || hasHeader_)
        return {};

    TRY(file_->open());
    format_->pb = file_->io;
    for (auto& track : tracks_) {
        if (track.isDropped)
            continue;
        auto* stream = avformat_new_stream(format_.get(), nullptr);
        if (!stream || avcodec_parameters_copy(stream->codecpar, track.description->codec.get()) < 0)
            return failure(AVError::outOfMemory);
        // Each container has its own tags; a tag of the source's would be wrong in it, or hinder it.
        stream->codecpar->codec_tag =
            av_codec_get_tag(format_->oformat->codec_tag, stream->codecpar->codec_id);
        stream->time_base = track.description->timeBase;
        stream->avg_frame_rate = track.description->averageFrameRate;
        stream->sample_aspect_ratio = stream->codecpar->sample_aspect_ratio;
        setTransform(*stream, track.description->transform);
        if (track.description->languageCode != "und")
            av_dict_set(&stream->metadata, "language", track.description->languageCode.c_str(), 0);
        track.stream = stream->index;
    }
    for (auto& item : options_.metadata) {
        auto* name = item.commonKey ? metadataName(*item.commonKey) : nullptr;
        if (item.key == "creation_time") // of the file, beside the date of what it shows
            name = "creation_time";
        if (name)
            av_dict_set(&format_->metadata, name, item.value.c_str(), AV_DICT_DONT_OVERWRITE);
    }
    AVDictionary* options = nullptr;
    if (type_ == AVFileType::wave)
        av_dict_set(&options, "rf64", "auto", 0); // sizes beyond 4 GiB
    else if (options_.indexAtFront)
        av_dict_set(&options, "movflags", "+faststart", 0);
    int code = avformat_write_header(format_.get(), &options);
    av_dict_free(&options);
    if (code < 0)
        return std::unexpected(failureOf(code));
    hasHeader_ = true;
    for (auto& track : tracks_) {
        for (auto& packet : std::exchange(track.waiting, {}))
            TRY(writeNow(track, *packet));
    }
    return {};
}

Result<void> MediaMuxer::write(std::size_t track, AVPacket& packet)
{
    std::lock_guard lock(mutex_);
    auto& state = tracks_[track];
    precondition(state.description.has_value(), "packets belong to a track that was described");
    if (hasHeader_)
        return writeNow(state, packet);
    auto waiting = makePacket();
    av_packet_move_ref(waiting.get(), &packet);
    state.waiting.push_back(std::move(waiting));
    return {};
}

Result<void> MediaMuxer::writeNow(const Track& track, AVPacket& packet)
{
    packet.stream_index = track.stream;
    av_packet_rescale_ts(&packet, track.description->timeBase, format_->streams[track.stream]->time_base);
    int code = av_interleaved_write_frame(format_.get(), &packet);
    if (code >= 0 && file_->errorNumber != 0)
        code = AVERROR(file_->errorNumber);
    if (code < 0)
        return std::unexpected(failureOf(code));
    return {};
}

Result<void> MediaMuxer::finish()
{
    std::lock_guard lock(mutex_);
    if (!hasHeader_)
        return failure(AVError::invalidSourceMedia);
    int code = av_write_trailer(format_.get());
    avio_flush(file_->io);
    if (code >= 0 && file_->errorNumber != 0)
        code = AVERROR(file_->errorNumber);
    if (code >= 0 && ::close(std::exchange(file_->descriptor, -1)) != 0)
        code = AVERROR(errno);
    if (code < 0)
        return std::unexpected(failureOf(code));
    return {};
}

void MediaMuxer::remove()
{
    std::lock_guard lock(mutex_);
    ::unlink(file_->path.c_str());
}

} // namespace platform

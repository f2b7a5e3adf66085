// SPDX-License-Identifier: MIT
#include "platform/avfoundation/FFmpegError_p.h"

#include "platform/foundation/Logger.h"

#include <array>
#include <cerrno>
#include <cstdarg>
#include <string>

extern "C" {
#include <libavutil/error.h>
#include <libavutil/log.h>
}

namespace platform {

namespace {

bool isOfOperatingSystem(int code)
{
    // The library's own numbers are four letters, far beyond any errno.
    return code < 0 && code > -4096;
}

NSError operatingSystemError(int number, MediaWork work, NSError::UserInfo info)
{
    const bool writes = work == MediaWork::write;
    switch (number) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG: // no room for more of it, where files have a limit
        return nsError(AVError::diskFull, std::move(info));
    case ENOMEM:
        return nsError(AVError::outOfMemory, std::move(info));
    case ENOENT:
    case ENOTDIR:
        return {writes ? NSCocoaError::fileNoSuchFile : NSCocoaError::fileReadNoSuchFile, std::move(info)};
    case EACCES:
    case EPERM:
        return {writes ? NSCocoaError::fileWriteNoPermission : NSCocoaError::fileReadNoPermission,
                std::move(info)};
    case EROFS:
        return {NSCocoaError::fileWriteVolumeReadOnly, std::move(info)};
    case EEXIST:
        return nsError(AVError::fileAlreadyExists, std::move(info));
    default:
        return {NSPOSIXErrorDomain, number, std::move(info)};
    }
}

AVError codeOf(int code, MediaWork work)
{
    switch (code) {
    case AVERROR_EXIT:
        return AVError::operationCancelled;
    case AVERROR_DEMUXER_NOT_FOUND:
        return AVError::fileFormatNotRecognized;
    case AVERROR_DECODER_NOT_FOUND:
        return AVError::decoderNotFound;
    case AVERROR_ENCODER_NOT_FOUND:
        return AVError::encoderNotFound;
    default:
        break;
    }
    switch (work) {
    case MediaWork::open:
        return AVError::fileFormatNotRecognized;
    case MediaWork::read:
        return AVError::fileFailedToParse;
    case MediaWork::decode:
        return code == AVERROR_PATCHWELCOME ? AVError::decoderNotFound : AVError::decodeFailed;
    case MediaWork::encode:
    case MediaWork::write:
        return AVError::exportFailed;
    }
    return AVError::unknown;
}

void log(void*, int level, const char* format, std::va_list arguments)
{
    if (level > AV_LOG_ERROR)
        return;
    std::array<char, 512> line{};
    std::vsnprintf(line.data(), line.size(), format, arguments);
    std::string_view message(line.data());
    while (!message.empty() && message.back() == '\n')
        message.remove_suffix(1);
    // Never destroyed: threads may still run while the process exits.
    static const auto& logger = *new Logger("zelk.avfoundation", "codec library");
    logger.debug(message);
}

} // namespace

Error mediaError(int code, MediaWork work, std::string_view fileName)
{
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    NSError::UserInfo info{{std::string(NSLocalizedFailureReasonErrorKey), text.data()}};
    if (!fileName.empty())
        info.emplace(NSFilePathErrorKey, fileName);
    // An argument that the library refuses is no fault of the operating system's.
    if (isOfOperatingSystem(code) && code != AVERROR(EINVAL) && code != AVERROR(ENOSYS)
        && code != AVERROR(ERANGE))
        return operatingSystemError(AVUNERROR(code), work, std::move(info));
    return nsError(codeOf(code, work), std::move(info));
}

void silenceMediaLibrary()
{
    static const bool silenced = [] {
        av_log_set_callback(log);
        return true;
    }();
    static_cast<void>(silenced);
}

} // namespace platform

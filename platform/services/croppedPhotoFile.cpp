// SPDX-License-Identifier: MIT
#include "platform/services/croppedPhotoFile_p.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/FileWriting.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/UUID.h"
#include "platform/graphics/UIImage_p.h"
#include "platform/services/JPEGMetadata_p.h"

#include <QBuffer>
#include <QColorSpace>

#include <utility>

namespace platform {

namespace {

constexpr int quality = 92;
constexpr std::size_t largestHead = 8UL * 1024 * 1024; // of a file, before the picture itself

std::string headOf(PhotoOrigin original)
{
    if (original.path.empty())
        return std::move(original.jpeg);
    return readFileHead(URL::fileURL(original.path), largestHead).value_or(std::string());
}

Result<std::string> encoded(QImage part, const std::string& head)
{
    auto isJPEG = head.starts_with("\xff\xd8\xff");
    auto metadata = metadataOfCut(isJPEG ? head : std::string(), part.width(), part.height());
    if (!metadata.profile.empty())
        part.setColorSpace({}); // which would come as a second profile
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly)
        || !part.save(&buffer, isJPEG ? "JPEG" : "PNG", isJPEG ? quality : -1))
        return failure(NSCocoaError::fileWriteUnknown);
    return withMetadata(bytes.toStdString(), metadata);
}

Result<URL> write(const UIImage& part, PhotoOrigin original)
{
    auto bytes = TRY(encoded(qImage(part), headOf(std::move(original))));
    auto path = FileManager::defaultManager().temporaryDirectory().path();
    path.append("/").append(UUID().string()).append(bytes.starts_with("\xff\xd8") ? ".jpg" : ".png");
    auto file = URL::fileURL(path);
    TRY(writeFileAtomically(file, bytes));
    return file;
}

} // namespace

void writeCroppedPhoto(const UIImage& part, PhotoOrigin original,
                       std::function<void(const Result<URL>&)> told)
{
    DispatchQueue::make("org.zelk.platform.cropped-photo")
        ->async([part, original = std::move(original), told = std::move(told)]() mutable {
            auto file = write(part, std::move(original));
            DispatchQueue::main()->async([told = std::move(told), file] { told(file); });
        });
}

} // namespace platform

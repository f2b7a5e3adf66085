// SPDX-License-Identifier: MIT
#include "platform/services/croppedPhotoFile_p.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/FileWriting.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/UUID.h"
#include "platform/graphics/UIImage_p.h"

#include <QBuffer>

#include <string_view>
#include <utility>

namespace platform {

namespace {

constexpr int quality = 92;

bool isJPEG(const URL& file)
{
    constexpr std::string_view mark = "\xff\xd8\xff";
    auto head = readFileHead(file, mark.size());
    return head && *head == mark;
}

Result<URL> write(const UIImage& part, bool asJPEG)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly)
        || !qImage(part).save(&buffer, asJPEG ? "JPEG" : "PNG", asJPEG ? quality : -1))
        return failure(NSCocoaError::fileWriteUnknown);
    auto path = FileManager::defaultManager().temporaryDirectory().path();
    path.append("/").append(UUID().string()).append(asJPEG ? ".jpg" : ".png");
    auto file = URL::fileURL(path);
    TRY(writeFileAtomically(file, {bytes.constData(), static_cast<std::size_t>(bytes.size())}));
    return file;
}

} // namespace

void writeCroppedPhoto(const UIImage& part, const std::string& original,
                       std::function<void(const Result<URL>&)> told)
{
    DispatchQueue::make("org.zelk.platform.cropped-photo")->async([part, original, told = std::move(told)] {
        auto file = write(part, original.empty() || isJPEG(URL::fileURL(original)));
        DispatchQueue::main()->async([told, file] { told(file); });
    });
}

} // namespace platform

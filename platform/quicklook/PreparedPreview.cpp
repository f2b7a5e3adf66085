// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreparedPreview.h"

#include "platform/foundation/Precondition.h"
#include "platform/quicklook/PrincipalClass.h"
#include "platform/quicklook/QLPreviewingController.h"

#include <string>

namespace platform {

Result<PreparedPreview> preparePreview(const ExtensionManifest& manifest, const URL& file,
                                       std::optional<TextEncoding> encoding)
{
    auto controller = makePrincipalClass(manifest.principalClass);
    auto* previewing = dynamic_cast<QLPreviewingController*>(controller.get());
    if (!previewing) {
        auto reason = "the principal class " + manifest.principalClass
            + (controller ? " is no preview controller" : " is not registered");
        return failure(
            NSCocoaError::propertyListReadCorrupt,
            {{std::string(NSLocalizedDescriptionKey), "The extension can’t be used: " + reason + "."},
             {std::string(NSLocalizedFailureReasonErrorKey), reason}});
    }
    PreparedPreview preview{controller, std::nullopt, std::nullopt};
    controller->loadViewIfNeeded();
    TextReadingScope scope(file, encoding);
    int calls = 0;
    previewing->preparePreviewOfFile(file, [&](std::optional<NSError> error) {
        ++calls;
        preview.error = std::move(error);
    });
    precondition(calls == 1, "a preview controller calls its completion handler once, before it returns");
    preview.reading = scope.report();
    return preview;
}

} // namespace platform

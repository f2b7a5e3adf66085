// SPDX-License-Identifier: MIT
#include "platform/quicklook/NSExtensionMain.h"

#include "platform/foundation/Bundle.h"
#include "platform/quicklook/Confinement.h"
#include "platform/quicklook/ExtensionManifest.h"
#include "platform/quicklook/PreviewArguments.h"
#include "platform/quicklook/PreviewHost.h"
#include "platform/quicklook/PreviewSession.h"
#include "platform/quicklook/messageLine.h"
#include "platform/quicklook/printText.h"

#include <cstdio>
#include <vector>

namespace platform {

namespace {

constexpr int shown = 0, notShown = 1, wrongUsage = 2;

// A path, or a file: URL. An URL that cannot be read is given back as the error it leads to.
Result<URL> fileNamed(const std::string& file)
{
    if (!file.starts_with("file:"))
        return URL::fileURL(file);
    if (auto url = URL::parse(file))
        return *url;
    return failure(
        NSCocoaError::fileReadInvalidFileName,
        {{std::string(NSLocalizedFailureReasonErrorKey), "This is not the URL of a file on this machine."}});
}

int reportFailure(std::string_view program, std::string_view file, const NSError& error)
{
    printMessageLine(previewFailureLine(program, file, error));
    return notShown;
}

std::string_view programName(int argumentCount, char** arguments)
{
    std::string_view name = argumentCount > 0 ? arguments[0] : "preview";
    return name.substr(name.rfind('/') + 1); // npos + 1 is 0: the whole name
}

} // namespace

int NSExtensionMain(int argumentCount, char** arguments)
{
    auto program = programName(argumentCount, arguments);
    auto complain = [&](const std::string& text, int status) {
        printMessageLine(std::string(program) + ": " + text);
        return status;
    };

    std::vector<std::string_view> words(arguments + (argumentCount > 0), arguments + argumentCount);
    if (auto socket = previewSocketIn(words)) {
        auto manifest = ExtensionManifest::read(*Bundle::main());
        return manifest ? runPreviewSession(program, *manifest, *socket)
                        : complain(manifest.error().localizedDescription(), notShown);
    }
    auto request = parsePreviewArguments(words);
    if (!request)
        return complain(request.error() + "; try --help", wrongUsage);
    if (request->action == PreviewAction::help) {
        std::fputs(previewUsage(program).c_str(), stdout);
        return std::fflush(stdout) == 0 ? shown : complain("standard output cannot be written", notShown);
    }
    if (request->action == PreviewAction::text) {
        auto url = fileNamed(request->file);
        return url ? printText(program, *url, request->pane)
                   : reportFailure(program, request->file, url.error().bridged());
    }

    auto manifest = ExtensionManifest::read(*Bundle::main());
    if (!manifest)
        return complain(manifest.error().localizedDescription(), notShown);
    if (request->action == PreviewAction::version) {
        std::printf("%s %s (confinement: %s)\n", manifest->name.c_str(), manifest->version.c_str(),
                    describe(availableConfinement()).c_str());
        return std::fflush(stdout) == 0 ? shown : complain("standard output cannot be written", notShown);
    }
    auto url = fileNamed(request->file);
    if (!url)
        return reportFailure(program, request->file, url.error().bridged());
    return runPreview(program, *manifest, *request, *url);
}

} // namespace platform

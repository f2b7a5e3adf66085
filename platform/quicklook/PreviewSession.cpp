// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewSession.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/NSError.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/previewer/PreviewMessage.h"
#include "platform/quicklook/Confinement.h"
#include "platform/quicklook/PreviewBroker.h"
#include "platform/quicklook/PreviewHost.h"
#include "platform/quicklook/PrincipalClass.h"
#include "platform/quicklook/QLPreviewingController.h"
#include "platform/quicklook/messageLine.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIWindow.h"
#include "platform/uikit/WindowGuide.h"
#include "platform/uikit/snapshot.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr int shown = 0, notShown = 1;
constexpr auto failedPreview = "org.zelk.quicklook.FailedPreview";

// Takes the place of the extension's class where that has brought its process down: the host shows the error.
class FailedPreview : public UIViewController, public QLPreviewingController {
public:
    void preparePreviewOfFile(const URL& url, CompletionHandler completionHandler) override
    {
        std::string reason = "The preview ended unexpectedly.";
        completionHandler(NSError(NSCocoaError::fileReadUnknown,
                                  {{std::string(NSLocalizedDescriptionKey),
                                    "“" + url.lastPathComponent() + "” can’t be shown: " + reason},
                                   {std::string(NSLocalizedFailureReasonErrorKey), reason}}));
    }
};

// The direction that the file manager is told; tab and shift tab, which are 0 and 1, are the window's own.
std::optional<unsigned> directionOf(UIKeyCode key)
{
    switch (key) {
    case UIKeyCode::up:
        return 2;
    case UIKeyCode::down:
        return 3;
    case UIKeyCode::left:
        return 4;
    case UIKeyCode::right:
        return 5;
    default:
        return std::nullopt;
    }
}

// What is read and looked up at the first text of a process is read now.
void warmUp(const ExtensionManifest& manifest)
{
    if (auto controller = makePrincipalClass(manifest.principalClass))
        (void)snapshot(controller, {.size = {64, 64}, .scale = 1, .traits = {}});
}

class PreviewSession {
public:
    explicit PreviewSession(int socket)
        : socket_(socket)
    {
        reader_ = std::thread([this] { readMessages(); });
    }
    PreviewSession(const PreviewSession&) = delete; // its address is with the reader
    PreviewSession& operator=(const PreviewSession&) = delete;
    ~PreviewSession()
    {
        ::shutdown(socket_, SHUT_RDWR);
        reader_.join();
        ::close(socket_);
    }

    // Nothing when there is none any more.
    std::optional<PreviewOrder> awaitOrder()
    {
        UIApplication::shared().run();
        return std::exchange(order_, std::nullopt);
    }

    void guide(const PreviewOrder& order)
    {
        WindowGuide::Wishes wishes{.frame = std::nullopt,
                                   .takesKeyboard = !order.place || order.place->hasKeyboard,
                                   .parentHandle = order.parentHandle,
                                   .activationToken = order.activationToken};
        if (auto& place = order.place)
            wishes.frame = CGRect::make(place->x, place->y, place->width, place->height);
        guide_.emplace(
            wishes,
            WindowGuide::Handlers{
                .onShown = [this] { tell({previewShown}); },
                .onPlace = [this](CGRect frame, bool hasKeyboard) { tellPlace(frame, hasKeyboard); },
                .onPress = [this](const UIPress& press) { return select(press); }});
    }

private:
    // A thread that waits in the kernel: while nothing is asked, nothing wakes up.
    void readMessages()
    {
        std::optional<PreviewMessage> message;
        while ((message = receivePreviewMessage(socket_))) {
            if (!message->empty())
                RunLoop::main().perform([this, given = std::move(*message)] { take(given); });
        }
        RunLoop::main().perform([this] { end(); });
    }

    void take(const PreviewMessage& message)
    {
        if (message[0] == previewClose)
            return end();
        if (auto order = previewOrderFrom(message); order && !hasOrder_) {
            hasOrder_ = true;
            order_ = std::move(order);
            UIApplication::shared().terminate(shown); // the waiting is over
        }
    }

    // Closes the window as its close button does, which ends the program.
    void end()
    {
        bool hasWindow = false;
        for (auto& weak : std::vector(UIApplication::shared().windows())) {
            if (auto window = weak.lock()) {
                hasWindow = true;
                window->close();
            }
        }
        if (!hasWindow)
            UIApplication::shared().terminate(shown);
    }

    void tell(const PreviewMessage& message) { sendPreviewMessage(socket_, message); }

    void tellPlace(CGRect frame, bool hasKeyboard)
    {
        PreviewPlace place{int(std::lround(frame.origin.x)), int(std::lround(frame.origin.y)),
                           int(std::lround(frame.size.width)), int(std::lround(frame.size.height)),
                           hasKeyboard};
        if (std::exchange(toldPlace_, place) != place)
            tell(messageFrom(place));
    }

    // Arrows choose another file, unless somebody writes or has a menu open.
    bool select(const UIPress& press)
    {
        auto direction = directionOf(press.key);
        if (!direction || press.modifiers != UIKeyModifierFlags())
            return false;
        auto& windows = UIApplication::shared().windows();
        bool isWanted = std::ranges::any_of(windows, [](auto& weak) {
            auto window = weak.lock();
            return window && (window->activeTextInput() || window->modalView());
        });
        if (isWanted)
            return false;
        tell({previewSelect, std::to_string(*direction)});
        return true;
    }

    const int socket_;
    std::thread reader_;
    // main thread only
    std::optional<PreviewOrder> order_;
    bool hasOrder_ = false;
    std::optional<PreviewPlace> toldPlace_;
    std::optional<WindowGuide> guide_;
};

} // namespace

std::optional<int> previewSocketIn(std::span<const std::string_view> arguments)
{
    if (arguments.size() != 2 || arguments[0] != "--preview-socket")
        return std::nullopt;
    auto text = arguments[1];
    int number = -1;
    auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    bool isSocket = fault == std::errc() && end == text.data() + text.size() && number > 2;
    return isSocket ? number : -1;
}

int runPreviewSession(std::string_view program, const ExtensionManifest& manifest, int socket)
{
    if (socket < 0 || ::fcntl(socket, F_GETFD) < 0) {
        printMessageLine(std::string(program) + ": --preview-socket names no open descriptor");
        return notShown;
    }
    if (!displayIsAvailable()) {
        printMessageLine(std::string(program) + ": no display");
        return notShown;
    }
    registerPrincipalClass<FailedPreview>(failedPreview);
    // The host does the same before it starts what is started here already.
    ::fcntl(socket, F_SETFD, FD_CLOEXEC);
    PreviewBroker broker;
    confineFiles("");
    UIApplication::shared().setIdentifier(manifest.identifier);
    UIApplication::shared().start();
    warmUp(manifest);

    std::optional<PreviewSession> session(std::in_place, socket);
    auto order = session->awaitOrder();
    auto url = order ? URL::parse(order->url) : std::nullopt;
    int status = shown;
    if (url) {
        session->guide(*order);
        auto shownManifest = manifest;
        if (order->tellsFailure)
            shownManifest.principalClass = failedPreview;
        broker.setFile(*url);
        status = runPreview(program, shownManifest, {}, *url, &broker);
    }
    session.reset();
    return status;
}

} // namespace platform

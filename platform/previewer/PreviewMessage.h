// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace platform {

// What the previewer service and the process of one preview say to each other, over a pair of sockets that keeps packets
// apart (SOCK_SEQPACKET). A packet is a few words, the first of which says what it is. Either side may be gone, and the
// preview may have been taken over by the file it shows: what cannot be read is no message.
using PreviewMessage = std::vector<std::string>;

// From the service: "show" and an order, once; "close". From the preview: "shown" once, "place" and a place whenever that
// changes, "select" and a direction.
inline constexpr auto previewShow = "show", previewClose = "close", previewShown = "shown",
                      previewPlaceIs = "place", previewSelect = "select";

// Where a preview's window is on the screen, without the window manager's frame, and whether it has the keyboard.
struct PreviewPlace {
    int x = 0, y = 0, width = 0, height = 0; // points
    bool hasKeyboard = true;
    bool operator==(const PreviewPlace&) const = default;
};

struct PreviewOrder {
    std::string url;
    std::string parentHandle;            // "x11:HEX", "wayland:..." or anything else, which is ignored
    std::string activationToken;         // empty: none
    std::optional<PreviewPlace> place{}; // of the preview whose place it takes; none: its own choice
    bool tellsFailure = false;           // only that the preview of the file ended by a fault
};

PreviewMessage messageFrom(const PreviewOrder& order);
PreviewMessage messageFrom(const PreviewPlace& place);
std::optional<PreviewOrder> previewOrderFrom(const PreviewMessage& message);
// Of a window that some screen could have.
std::optional<PreviewPlace> previewPlaceFrom(const PreviewMessage& message);

// Never waits. False when the other side is gone or takes no more.
bool sendPreviewMessage(int socket, const PreviewMessage& message);
// Waits for the next one unless the socket does not. Nothing when the other side is gone; an empty message when what came
// is none, or nothing has come.
std::optional<PreviewMessage> receivePreviewMessage(int socket);

} // namespace platform

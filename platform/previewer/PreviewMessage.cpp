// SPDX-License-Identifier: MIT
#include "platform/previewer/PreviewMessage.h"

#include <cerrno>
#include <charconv>

#include <sys/socket.h>

namespace platform {

namespace {

constexpr int farthest = 1 << 20, largestSide = 32767;
constexpr std::size_t longestPacket = 160 * 1024; // below what a socket's buffer holds

std::optional<int> numberIn(const std::string& text)
{
    int value = 0;
    auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace

PreviewMessage messageFrom(const PreviewPlace& place)
{
    return {previewPlaceIs,
            std::to_string(place.x),
            std::to_string(place.y),
            std::to_string(place.width),
            std::to_string(place.height),
            place.hasKeyboard ? "1" : "0"};
}

std::optional<PreviewPlace> previewPlaceFrom(const PreviewMessage& message)
{
    if (message.size() != 6 || message[0] != previewPlaceIs)
        return std::nullopt;
    auto x = numberIn(message[1]), y = numberIn(message[2]);
    auto width = numberIn(message[3]), height = numberIn(message[4]);
    auto isCoordinate = [](auto value) { return value && *value >= -farthest && *value <= farthest; };
    auto isSide = [](auto value) { return value && *value >= 1 && *value <= largestSide; };
    if (!isCoordinate(x) || !isCoordinate(y) || !isSide(width) || !isSide(height))
        return std::nullopt;
    return PreviewPlace{*x, *y, *width, *height, message[5] == "1"};
}

PreviewMessage messageFrom(const PreviewOrder& order)
{
    PreviewMessage message{previewShow, order.url, order.parentHandle, order.activationToken,
                           order.tellsFailure ? "1" : "0"};
    if (order.place) {
        auto place = messageFrom(*order.place);
        message.insert(message.end(), place.begin(), place.end());
    }
    return message;
}

std::optional<PreviewOrder> previewOrderFrom(const PreviewMessage& message)
{
    if (message.size() < 5 || message[0] != previewShow)
        return std::nullopt;
    PreviewOrder order{.url = message[1],
                       .parentHandle = message[2],
                       .activationToken = message[3],
                       .tellsFailure = message[4] == "1"};
    order.place = previewPlaceFrom({message.begin() + 5, message.end()});
    return order;
}

bool sendPreviewMessage(int socket, const PreviewMessage& message)
{
    std::string packet;
    for (auto& word : message)
        packet.append(word).push_back('\0');
    if (packet.size() > longestPacket)
        return false;
    auto sent = ::send(socket, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    return sent == static_cast<ssize_t>(packet.size());
}

std::optional<PreviewMessage> receivePreviewMessage(int socket)
{
    std::string packet(longestPacket, '\0');
    ssize_t count = 0;
    do
        count = ::recv(socket, packet.data(), packet.size(), 0);
    while (count < 0 && errno == EINTR);
    if (count < 0 && errno == EAGAIN)
        return PreviewMessage{};
    if (count <= 0)
        return std::nullopt;
    packet.resize(static_cast<std::size_t>(count));
    PreviewMessage message;
    for (std::size_t from = 0; from < packet.size();) {
        auto end = packet.find('\0', from);
        if (end == std::string::npos)
            return PreviewMessage{}; // cut off
        message.push_back(packet.substr(from, end - from));
        from = end + 1;
    }
    return message;
}

} // namespace platform

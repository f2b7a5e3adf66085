// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPasteboard.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/currentDate.h"
#include "platform/graphics/GraphicsRuntime.h"
#include "platform/uikit/UIPasteboardContents_p.h"

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

#include <algorithm>
#include <chrono>
#include <utility>

namespace platform {

namespace {

using Contents = std::shared_ptr<const UIPasteboardContents>;

// What the window system asks, each time that somebody pastes: large contents are nowhere a second time until then.
class LazyData : public QMimeData {
public:
    explicit LazyData(Contents contents)
        : contents_(std::move(contents))
    {
    }

    const Contents& contents() const { return contents_; }

    QStringList formats() const override
    {
        QStringList formats;
        for (const auto& format : contents_->formats())
            formats << QString::fromStdString(format);
        return formats;
    }
    bool hasFormat(const QString& format) const override { return formats().contains(format); }

protected:
    QVariant retrieveData(const QString& format, QMetaType type) const override
    {
        auto bytes = contents_->bytes<QByteArray>(format.toStdString());
        if (!bytes)
            return {};
        if (type.id() == QMetaType::QString)
            return QString::fromUtf8(*bytes);
        return std::move(*bytes);
    }

private:
    const Contents contents_;
};

// The window system's pasteboard, where there is a window system.
QClipboard* desktopClipboard()
{
    if (!graphicsIsStarted() || QGuiApplication::platformName() == QLatin1String("offscreen"))
        return nullptr;
    return QGuiApplication::clipboard();
}

struct Place {
    QClipboard* clipboard; // null: this process
    QClipboard::Mode mode;
};

Place placeOf(bool isSelection)
{
    auto* clipboard = desktopClipboard();
    if (clipboard && isSelection && !clipboard->supportsSelection())
        clipboard = nullptr;
    return {clipboard, isSelection ? QClipboard::Selection : QClipboard::Clipboard};
}

std::string stringOf(const QString& text)
{
    return text.toUtf8().toStdString();
}

} // namespace

UIPasteboard& UIPasteboard::general()
{
    static auto& pasteboard = *new UIPasteboard(Kind::general);
    return pasteboard;
}

UIPasteboard& UIPasteboard::primarySelection()
{
    static auto& pasteboard = *new UIPasteboard(Kind::primarySelection);
    return pasteboard;
}

void UIPasteboard::setString(String text)
{
    setItems({{{"text/plain", std::move(text)}}});
}

void UIPasteboard::setProvider(Provider provider)
{
    setItems({{{"text/plain", std::move(provider)}}});
}

void UIPasteboard::setItems(std::vector<UIPasteboardItem> items, const UIPasteboardOptions& options)
{
    assertOnMainThread();
    auto contents = std::make_shared<const UIPasteboardContents>(std::move(items), options);
    if (contents->hasExpired() || contents->formats().empty())
        return clear();
    expiration_.reset();
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    if (clipboard)
        clipboard->setMimeData(new LazyData(contents), mode); // the clipboard owns it
    else
        contents_ = contents;
    if (const auto& end = options.UIPasteboardOptionExpirationDate)
        withdrawWhenOver(contents, *end);
    if (clipboard && contents->isFleeting())
        withdrawAtEnd();
}

// Before the window system hands over to a clipboard manager what the program leaves behind.
void UIPasteboard::withdrawAtEnd()
{
    static const auto connection = QObject::connect(qGuiApp, &QCoreApplication::aboutToQuit, [] {
        for (auto* pasteboard : {&general(), &primarySelection()}) {
            if (auto contents = pasteboard->own(); contents && contents->isFleeting())
                pasteboard->clear();
        }
    });
}

void UIPasteboard::withdrawWhenOver(const std::weak_ptr<const UIPasteboardContents>& contents, Date end)
{
    // The machine may sleep, and its clock be set, meanwhile: whoever wakes looks at the date again. Longer than a day
    // is waited for a day at a time.
    constexpr double longest = 24 * 60 * 60;
    auto left = std::clamp(end.timeIntervalSince1970 - currentDate().timeIntervalSince1970, 0.001, longest);
    auto delay = std::chrono::ceil<Duration>(std::chrono::duration<double>(left));
    expiration_ = RunLoop::main().schedule(RunLoop::main().clock().now() + delay, [this, contents, end] {
        auto present = contents.lock();
        if (!present || own() != present)
            return;
        if (present->hasExpired())
            clear();
        else
            withdrawWhenOver(contents, end);
    });
}

// What this process offers; null when another one does, or nobody.
Contents UIPasteboard::own() const
{
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    if (!clipboard)
        return contents_;
    // Our own contents never go through the window system and back.
    const auto* data = dynamic_cast<const LazyData*>(clipboard->mimeData(mode));
    return data ? data->contents() : nullptr;
}

std::optional<String> UIPasteboard::string() const
{
    assertOnMainThread();
    if (auto contents = own())
        return contents->text();
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    const auto* data = clipboard ? clipboard->mimeData(mode) : nullptr;
    if (!data || !data->hasText())
        return std::nullopt;
    return String(stringOf(data->text()));
}

bool UIPasteboard::hasStrings() const
{
    assertOnMainThread();
    if (auto contents = own())
        return contents->hasText();
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    const auto* data = clipboard ? clipboard->mimeData(mode) : nullptr;
    return data && data->hasText();
}

std::vector<std::string> UIPasteboard::types() const
{
    assertOnMainThread();
    if (auto contents = own())
        return contents->formats();
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    std::vector<std::string> types;
    if (const auto* data = clipboard ? clipboard->mimeData(mode) : nullptr) {
        for (const auto& format : data->formats())
            types.push_back(stringOf(format));
    }
    return types;
}

std::shared_ptr<const NSData> UIPasteboard::dataForPasteboardType(std::string_view type) const
{
    assertOnMainThread();
    if (auto contents = own()) {
        auto bytes = contents->bytes<std::string>(type);
        return bytes ? NSData::dataWithBytes(std::move(*bytes)) : nullptr;
    }
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    const auto* data = clipboard ? clipboard->mimeData(mode) : nullptr;
    auto format = QString::fromStdString(mimeTypeOfPasteboardType(type));
    if (!data || !data->hasFormat(format))
        return nullptr;
    return NSData::dataWithBytes(data->data(format).toStdString());
}

void UIPasteboard::clear()
{
    assertOnMainThread();
    expiration_.reset();
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    if (clipboard)
        clipboard->clear(mode);
    contents_ = nullptr;
}

bool UIPasteboard::isOwn() const
{
    assertOnMainThread();
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    if (!clipboard)
        return contents_ && !contents_->hasExpired();
    return mode == QClipboard::Selection ? clipboard->ownsSelection() : clipboard->ownsClipboard();
}

} // namespace platform

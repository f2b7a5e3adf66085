// SPDX-License-Identifier: MIT
#include "platform/uikit/UIPasteboard.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/GraphicsRuntime.h"

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

namespace platform {

namespace {

const auto plainText = QStringLiteral("text/plain");

// The contents are made when they are asked for, each time: a large text is nowhere a second time until then.
class LazyText : public QMimeData {
public:
    explicit LazyText(UIPasteboard::Provider provider)
        : provider_(std::move(provider))
    {
    }

    QStringList formats() const override { return {plainText, QStringLiteral("text/plain;charset=utf-8")}; }
    bool hasFormat(const QString& format) const override { return formats().contains(format); }

    String text() const { return provider_(); }

protected:
    QVariant retrieveData(const QString& format, QMetaType type) const override
    {
        if (!hasFormat(format))
            return {};
        auto text = provider_();
        auto bytes = text.utf8();
        auto size = static_cast<qsizetype>(bytes.size());
        if (type.id() == QMetaType::QString)
            return QString::fromUtf8(bytes.data(), size);
        return QByteArray(bytes.data(), size);
    }

private:
    UIPasteboard::Provider provider_;
};

// The window system's pasteboard, where there is a window system.
QClipboard* desktopClipboard()
{
    if (!graphicsIsStarted() || QGuiApplication::platformName() == QLatin1String("offscreen"))
        return nullptr;
    return QGuiApplication::clipboard();
}

} // namespace

UIPasteboard& UIPasteboard::general()
{
    static UIPasteboard pasteboard(Kind::general);
    return pasteboard;
}

UIPasteboard& UIPasteboard::primarySelection()
{
    static UIPasteboard pasteboard(Kind::primarySelection);
    return pasteboard;
}

namespace {

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

} // namespace

void UIPasteboard::setString(String text)
{
    setProvider([text = std::move(text)] { return text; });
}

void UIPasteboard::setProvider(Provider provider)
{
    assertOnMainThread();
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    if (clipboard)
        clipboard->setMimeData(new LazyText(std::move(provider)), mode); // the clipboard owns it
    else
        provider_ = std::move(provider);
}

std::optional<String> UIPasteboard::string() const
{
    assertOnMainThread();
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    if (!clipboard) {
        if (!provider_)
            return std::nullopt;
        auto provider = provider_; // it may put something else in its place
        return provider();
    }
    const auto* data = clipboard->mimeData(mode);
    // Our own text never goes through the window system and back.
    if (const auto* own = dynamic_cast<const LazyText*>(data))
        return own->text();
    if (!data || !data->hasText())
        return std::nullopt;
    auto text = data->text().toUtf8();
    return String(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
}

bool UIPasteboard::hasStrings() const
{
    assertOnMainThread();
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    if (!clipboard)
        return static_cast<bool>(provider_);
    const auto* data = clipboard->mimeData(mode);
    return data && data->hasText();
}

void UIPasteboard::clear()
{
    assertOnMainThread();
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    if (clipboard)
        clipboard->clear(mode);
    provider_ = nullptr;
}

bool UIPasteboard::isOwn() const
{
    assertOnMainThread();
    auto [clipboard, mode] = placeOf(kind_ == Kind::primarySelection);
    if (!clipboard)
        return static_cast<bool>(provider_);
    return mode == QClipboard::Selection ? clipboard->ownsSelection() : clipboard->ownsClipboard();
}

} // namespace platform

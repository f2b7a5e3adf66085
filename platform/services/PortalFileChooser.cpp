// SPDX-License-Identifier: MIT
#include "platform/services/PortalFileChooser_p.h"

#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/URL.h"
#include "platform/services/PHPhotosContent_p.h"
#include "platform/services/mediaPickerText_p.h"
#include "platform/uikit/PortalRequest_p.h"
#include "platform/uikit/SettingsPortal_p.h"
#include "platform/uikit/UIWindow.h"

#include <QtCore/QList>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMetaType>
#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>

#include <array>
#include <filesystem>
#include <utility>

// As the bus carries a filter: a name, and what passes. Outside of the namespace, as their operators must be found.
struct PortalPattern {
    uint kind = 1; // a MIME type
    QString text;
};
struct PortalFilter {
    QString name;
    QList<PortalPattern> patterns;
};
Q_DECLARE_METATYPE(PortalPattern)
Q_DECLARE_METATYPE(PortalFilter)

static QDBusArgument& operator<<(QDBusArgument& argument, const PortalPattern& pattern)
{
    argument.beginStructure();
    argument << pattern.kind << pattern.text;
    argument.endStructure();
    return argument;
}
static const QDBusArgument& operator>>(const QDBusArgument& argument, PortalPattern&)
{
    return argument; // nobody sends one
}
static QDBusArgument& operator<<(QDBusArgument& argument, const PortalFilter& filter)
{
    argument.beginStructure();
    argument << filter.name << filter.patterns;
    argument.endStructure();
    return argument;
}
static const QDBusArgument& operator>>(const QDBusArgument& argument, PortalFilter&)
{
    return argument;
}

namespace platform {

namespace {

constexpr std::array photoTypes{"image/jpeg", "image/png",  "image/gif",  "image/webp", "image/tiff",
                                "image/bmp",  "image/heic", "image/heif", "image/avif"};
constexpr std::array videoTypes{"video/*"};

PortalFilter filter(MediaPickerText name, MediaKinds kinds)
{
    PortalFilter made{QString::fromStdString(mediaPickerText(name)), {}};
    auto add = [&made](auto types) {
        for (const auto* type : types)
            made.patterns.append({1, QString::fromLatin1(type)});
    };
    if (kinds.photos)
        add(photoTypes);
    if (kinds.videos)
        add(videoTypes);
    return made;
}

QList<PortalFilter> filters(MediaKinds kinds)
{
    QList<PortalFilter> made;
    if (kinds.photos && kinds.videos)
        made.append(filter(MediaPickerText::all, kinds));
    if (kinds.photos)
        made.append(filter(MediaPickerText::photos, {.photos = true}));
    if (kinds.videos)
        made.append(filter(MediaPickerText::videos, {.videos = true}));
    return made;
}

// As the portal knows windows. Wayland's would have to be exported first, which the window library does not offer.
QString handleOf(const std::shared_ptr<UIWindow>& window)
{
    auto* focused = QGuiApplication::focusWindow();
    if (!window || !window->isKeyWindow() || !focused
        || QGuiApplication::platformName() != QLatin1String("xcb"))
        return {};
    return QStringLiteral("x11:%1").arg(focused->winId(), 0, 16);
}

QVariantMap options(MediaKinds kinds)
{
    auto offered = filters(kinds);
    QVariantMap made{{QStringLiteral("modal"), true}, {QStringLiteral("multiple"), false}};
    made.insert(QStringLiteral("filters"), QVariant::fromValue(offered));
    made.insert(QStringLiteral("current_filter"), QVariant::fromValue(offered.front()));
    // A path with its ending zero.
    if (auto folders = mediaFolders(); !folders.empty()) {
        auto folder = kinds.photos ? folders.front() : folders.back();
        made.insert(QStringLiteral("current_folder"),
                    QByteArray(folder.c_str(), static_cast<qsizetype>(folder.size() + 1)));
    }
    return made;
}

} // namespace

std::optional<LibraryFile> mediumAtURI(const std::string& uri, MediaKinds kinds)
{
    auto url = URL::parse(uri);
    if (!url || !url->isFileURL() || (!url->host().empty() && url->host() != "localhost"))
        return std::nullopt;
    auto path = url->path();
    std::error_code unknown;
    if (path.find('\0') != path.npos || !std::filesystem::is_regular_file(path, unknown))
        return std::nullopt;
    auto content = photosContentOf(path);
    auto isVideo = content && content->type == PHAssetMediaType::video;
    if (!content || !(isVideo ? kinds.videos : kinds.photos))
        return std::nullopt;
    return LibraryFile{path, isVideo, 0};
}

PortalFileChooser::PortalFileChooser(const QDBusConnection& bus)
    : bus_(bus)
{
    qDBusRegisterMetaType<PortalPattern>();
    qDBusRegisterMetaType<QList<PortalPattern>>();
    qDBusRegisterMetaType<PortalFilter>();
    qDBusRegisterMetaType<QList<PortalFilter>>();
}

std::shared_ptr<PortalFileChooser> PortalFileChooser::ofDesktop()
{
    auto name = QGuiApplication::platformName();
    auto isOnDesktop = name == QLatin1String("xcb") || name.startsWith(QLatin1String("wayland"));
    if (!isOnDesktop || !SettingsPortal::busIsThere() || !QDBusConnection::sessionBus().isConnected())
        return nullptr;
    return std::make_shared<PortalFileChooser>(QDBusConnection::sessionBus());
}

Token PortalFileChooser::ask(const Question& question, Handler handler)
{
    struct Asking {
        std::unique_ptr<PortalRequest> request;
        Handler handler;
        void tell(Outcome outcome, std::optional<LibraryFile> file)
        {
            if (auto told = std::exchange(handler, nullptr))
                told(outcome, std::move(file));
        }
    };
    auto asking = std::make_shared<Asking>();
    asking->handler = std::move(handler);
    asking->request = std::make_unique<PortalRequest>(
        bus_, QStringLiteral("org.freedesktop.portal.FileChooser"), QStringLiteral("OpenFile"),
        QVariantList{handleOf(question.window), QString::fromStdString(question.title)},
        options(question.kinds),
        [weak = std::weak_ptr(asking), kinds = question.kinds](PortalRequest::Outcome outcome,
                                                               const QVariantMap& results) {
            auto asked = weak.lock();
            if (!asked)
                return;
            if (outcome != PortalRequest::Outcome::answered)
                return asked->tell(outcome == PortalRequest::Outcome::cancelled ? Outcome::cancelled
                                                                                : Outcome::unavailable,
                                   std::nullopt);
            auto uri = results.value(QStringLiteral("uris")).toStringList().value(0).toStdString();
            // Whoever answered may have chosen anything; looking at a file takes time.
            DispatchQueue::make("org.zelk.platform.file-chooser")->async([weak, uri, kinds] {
                DispatchQueue::main()->async([weak, file = mediumAtURI(uri, kinds)] {
                    if (auto present = weak.lock())
                        present->tell(file ? Outcome::picked : Outcome::unusable, file);
                });
            });
        });
    return Token([asking]() mutable { asking.reset(); });
}

} // namespace platform

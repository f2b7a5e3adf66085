// SPDX-License-Identifier: MIT
#include "platform/services/PortalFileChooser_p.h"

#include "platform/dispatch/VirtualClock.h"
#include "platform/graphics/GraphicsRuntime_p.h"
#include "tests/support/PhotoLibraryFolders.h"
#include "tests/support/PrivateBus.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusPendingCall>
#include <QtDBus/QDBusVirtualObject>

#include <gtest/gtest.h>

namespace {

using namespace platform;
using Outcome = MediaFileChooser::Outcome;

// A desktop whose user does what the test says, after the reply or, as fast ones do, before it.
class Portal : public QDBusVirtualObject {
public:
    enum class Manner { answersAfterwards, answersFirst, ownPlace, refuses, leaves, staysSilent };
    Manner manner = Manner::answersAfterwards;
    uint response = 0;
    QString uri;
    // what it was asked
    std::string title, filters, folder;
    int closed = 0;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        auto bus = connection;
        if (message.member() == u"Close") {
            closed += message.path() == place_;
            return bus.send(message.createReply());
        }
        if (message.interface() != u"org.freedesktop.portal.FileChooser" || message.member() != u"OpenFile"
            || message.signature() != u"ssa{sv}")
            return false;
        auto options = qdbus_cast<QVariantMap>(message.arguments()[2]);
        title = message.arguments()[1].toString().toStdString();
        filters = names(options[QStringLiteral("filters")].value<QDBusArgument>());
        folder = options[QStringLiteral("current_folder")].toByteArray().toStdString();
        if (manner == Manner::refuses)
            return bus.send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no")));
        auto sender = message.service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
        auto token = manner == Manner::ownPlace ? QStringLiteral("chosen_here")
                                                : options[QStringLiteral("handle_token")].toString();
        place_ = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
        auto answer = QDBusMessage::createSignal(place_, QStringLiteral("org.freedesktop.portal.Request"),
                                                 QStringLiteral("Response"));
        answer << response << QVariantMap{{QStringLiteral("uris"), QStringList{uri}}};
        if (manner == Manner::answersFirst)
            bus.send(answer);
        bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(place_))));
        if (manner == Manner::answersAfterwards)
            bus.send(answer);
        if (manner == Manner::ownPlace) // once the program can have heard of it
            QTimer::singleShot(200, this, [bus, answer] { bus.send(answer); });
        if (manner == Manner::leaves)
            bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        return true;
    }

private:
    QString place_; // of the request

    // "Photos image/jpeg image/png | Videos video/*"
    static std::string names(const QDBusArgument& argument)
    {
        std::string all;
        argument.beginArray();
        while (!argument.atEnd()) {
            QString name;
            argument.beginStructure();
            argument >> name;
            all.append(all.empty() ? "" : "| ").append(name.toStdString()).append(" ");
            argument.beginArray();
            while (!argument.atEnd()) {
                uint kind = 0;
                argument.beginStructure();
                argument >> kind >> name;
                argument.endStructure();
                all.append(kind == 1 ? name.toStdString() : "?").append(" ");
            }
            argument.endArray();
            argument.endStructure();
        }
        argument.endArray();
        return all;
    }
};

struct Desktop {
    VirtualClock clock;
    tests::PhotoLibraryFolders folders;
    tests::PrivateBus bus;
    Portal portal;
    QDBusConnection program = bus.connect(QStringLiteral("choosing-program"));
    QDBusConnection own = bus.connect(QStringLiteral("choosing-portal"));

    void offer()
    {
        own.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal,
                                  QDBusConnection::SubPath);
        ASSERT_TRUE(own.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
    }
    void turn()
    {
        QCoreApplication::processEvents();
        clock.settleWithBackgroundQueues();
    }
    // Until the portal has heard what is on its way, and what its replies led to.
    void settle()
    {
        for (int round = 0; round < 2; ++round) {
            auto fence = program.asyncCall(QDBusMessage::createMethodCall(
                QStringLiteral("org.freedesktop.portal.Desktop"),
                QStringLiteral("/org/freedesktop/portal/desktop"), QString(), QStringLiteral("Fence")));
            while (!fence.isFinished())
                turn();
            turn();
        }
    }
    struct Answer {
        Outcome outcome;
        std::optional<LibraryFile> file;
    };
    Answer ask(MediaKinds kinds)
    {
        std::vector<Answer> answers;
        PortalFileChooser chooser(program);
        auto token = chooser.ask({"Library", kinds, nullptr},
                                 [&](Outcome outcome, auto file) { answers.push_back({outcome, file}); });
        EXPECT_TRUE(answers.empty()) << "the answer comes later";
        while (answers.empty())
            turn();
        turn();
        EXPECT_EQ(answers.size(), 1u);
        return answers.front();
    }
};

TEST(PortalFileChooser, takes_what_the_user_chose_and_nothing_else)
{
    startGraphics(DisplayMode::offscreen);
    Desktop desktop;
    if (!desktop.bus.isThere())
        GTEST_SKIP() << "no dbus-daemon is installed";
    EXPECT_EQ(desktop.ask({.photos = true}).outcome, Outcome::unavailable) << "nobody is there";
    desktop.offer();
    using Manner = Portal::Manner;
    auto& folder = desktop.folders.folder;
    auto png = tests::contentsOf(tests::smallPicture().path());
    auto photo = folder.write("pictures/a b.png", png).absoluteString();
    auto video = tests::smallVideo().absoluteString();
    const MediaKinds photos{.photos = true}, both{.photos = true, .videos = true};
    struct Case {
        const char* name;
        std::string uri;
        MediaKinds kinds;
        Outcome outcome;
        Manner manner = Manner::answersAfterwards;
        uint response = 0;
    };
    const Case cases[] = {
        {"a photo", photo, photos, Outcome::picked},
        {"a video", video, both, Outcome::picked},
        {"an answer before the reply", photo, photos, Outcome::picked, Manner::answersFirst},
        {"an old portal", photo, photos, Outcome::picked, Manner::ownPlace},
        {"cancelled", photo, photos, Outcome::cancelled, Manner::answersAfterwards, 1},
        {"ended by the portal", photo, photos, Outcome::unavailable, Manner::answersAfterwards, 2},
        {"refused", photo, photos, Outcome::unavailable, Manner::refuses},
        {"a video for a photo", video, photos, Outcome::unusable},
        {"a text that says it is one", folder.write("text.png", "text").absoluteString(), photos,
         Outcome::unusable},
        {"half a picture", folder.write("half.png", png.substr(0, png.size() / 2)).absoluteString(), photos,
         Outcome::unusable},
        {"another machine's", "https://example.org/a.png", photos, Outcome::unusable},
        {"another machine's file", "file://example.org" + folder.path("pictures/a%20b.png"), photos,
         Outcome::unusable},
        {"no file", "file:///nowhere/a.png", photos, Outcome::unusable},
        {"a folder", "file:///tmp", photos, Outcome::unusable},
        {"a device", "file:///dev/zero", photos, Outcome::unusable},
        {"a zero in the name", photo + "%00.png", photos, Outcome::unusable},
        {"nothing", "", photos, Outcome::unusable},
        {"gone with the question", photo, photos, Outcome::unavailable, Manner::leaves},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        desktop.portal.uri = QString::fromStdString(test.uri);
        desktop.portal.manner = test.manner;
        desktop.portal.response = test.response;
        auto answer = desktop.ask(test.kinds);
        EXPECT_EQ(answer.outcome, test.outcome);
        EXPECT_EQ(answer.file.has_value(), test.outcome == Outcome::picked);
        if (answer.file) {
            EXPECT_EQ(URL::fileURL(answer.file->path).absoluteString(), test.uri);
            EXPECT_EQ(answer.file->isVideo, test.uri == video);
        }
        EXPECT_EQ(desktop.portal.closed, 0) << "it was over";
    }
}

TEST(PortalFileChooser, says_what_is_wanted_and_takes_the_question_back)
{
    startGraphics(DisplayMode::offscreen);
    Desktop desktop;
    if (!desktop.bus.isThere())
        GTEST_SKIP() << "no dbus-daemon is installed";
    desktop.offer();
    desktop.portal.manner = Portal::Manner::staysSilent;
    PortalFileChooser chooser(desktop.program);
    auto isTold = false;
    auto token = chooser.ask({"Bibliothek", {.photos = true, .videos = true}, nullptr},
                             [&](Outcome, const auto&) { isTold = true; });
    while (desktop.portal.title.empty())
        desktop.turn();
    EXPECT_EQ(desktop.portal.title, "Bibliothek");
    const std::string photos = "image/jpeg image/png image/gif image/webp image/tiff image/bmp image/heic "
                               "image/heif image/avif ";
    EXPECT_EQ(desktop.portal.filters, "All " + photos + "video/* | Photos " + photos + "| Videos video/* ");
    EXPECT_EQ(desktop.portal.folder,
              std::filesystem::canonical(desktop.folders.folder.path("pictures")).string() + '\0');
    token.cancel();
    desktop.settle();
    EXPECT_EQ(desktop.portal.closed, 1);
    // Also where the request has no place yet when it is taken back.
    for (auto manner : {Portal::Manner::staysSilent, Portal::Manner::ownPlace}) {
        desktop.portal.manner = manner;
        chooser.ask({"", {.photos = true}, nullptr}, [&](Outcome, const auto&) { isTold = true; }).cancel();
        desktop.settle();
    }
    EXPECT_EQ(desktop.portal.closed, 3);
    EXPECT_FALSE(isTold);
}

} // namespace

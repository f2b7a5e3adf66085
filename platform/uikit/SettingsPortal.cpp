// SPDX-License-Identifier: MIT
#include "platform/uikit/SettingsPortal_p.h"

#include "platform/dispatch/RunLoop.h"

#include <QtCore/QFile>
#include <QtCore/QObject>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCall>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>

#include <algorithm>
#include <cmath>
#include <thread>
#include <vector>

namespace platform {

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const auto interfaceGroup = QStringLiteral("org.gnome.desktop.interface");

struct Setting {
    QString group, key;
};

std::vector<Setting> settings()
{
    return {{appearanceGroup, QStringLiteral("color-scheme")},
            {appearanceGroup, QStringLiteral("contrast")},
            {appearanceGroup, QStringLiteral("reduced-motion")},
            {appearanceGroup, QStringLiteral("accent-color")},
            {interfaceGroup, QStringLiteral("text-scaling-factor")},
            {interfaceGroup, QStringLiteral("enable-animations")}};
}

QVariant unwrapped(QVariant value)
{
    while (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

// Red, green and blue from 0 to 1. Anything outside means that the desktop has no accent colour; so says the portal's
// documentation of "accent-color".
std::optional<ColorComponents> color(const QVariant& value)
{
    const auto isBusValue = value.userType() == qMetaTypeId<QDBusArgument>();
    if (!isBusValue || value.value<QDBusArgument>().currentSignature() != QLatin1String("(ddd)"))
        return std::nullopt;
    ColorComponents color;
    const auto argument = value.value<QDBusArgument>(); // const: to be read
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    auto isPart = [](double part) { return part >= 0 && part <= 1; }; // not for what is no number
    return isPart(color.red) && isPart(color.green) && isPart(color.blue) ? std::optional(color)
                                                                          : std::nullopt;
}

template <class Value>
bool assign(Value& stored, Value value)
{
    return std::exchange(stored, value) != value;
}

} // namespace

bool SettingsPortal::apply(UITraitCollection& traits, const QString& group, const QString& key,
                           const QVariant& wrapped)
{
    auto value = unwrapped(wrapped);
    auto isNumber = value.userType() == QMetaType::UInt;
    if (group == appearanceGroup && key == QLatin1String("color-scheme") && isNumber)
        return assign(traits.userInterfaceStyle,
                      value.toUInt() == 1 ? UIUserInterfaceStyle::dark : UIUserInterfaceStyle::light);
    if (group == appearanceGroup && key == QLatin1String("contrast") && isNumber)
        return assign(traits.accessibilityContrast,
                      value.toUInt() == 1 ? UIAccessibilityContrast::high : UIAccessibilityContrast::normal);
    if (group == appearanceGroup && key == QLatin1String("reduced-motion") && isNumber)
        return assign(traits.prefersReducedMotion, value.toUInt() == 1);
    if (group == appearanceGroup && key == QLatin1String("accent-color"))
        return assign(traits.accentColor, color(value));
    if (group == interfaceGroup && key == QLatin1String("enable-animations")
        && value.userType() == QMetaType::Bool)
        return assign(traits.prefersReducedMotion, !value.toBool());
    if (group == interfaceGroup && key == QLatin1String("text-scaling-factor")
        && value.userType() == QMetaType::Double && std::isfinite(value.toDouble()))
        return assign(traits.textScale, std::clamp(value.toDouble(), 0.5, 5.0));
    return false;
}

bool SettingsPortal::busIsThere()
{
    auto address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty())
        return !address.startsWith("disabled:") && !address.startsWith("autolaunch:");
    // The bus library would start a bus of its own; only one that is there already is asked.
    auto directory = qgetenv("XDG_RUNTIME_DIR");
    return !directory.isEmpty() && QFile::exists(QFile::decodeName(directory) + QLatin1String("/bus"));
}

class SettingsPortal::Connection : public QObject {
    Q_OBJECT
public:
    Connection(SettingsPortal& portal, const QDBusConnection& bus)
        : portal_(portal)
        , bus_(bus)
    {
        if (!bus_.isConnected())
            return;
        bus_.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                     SLOT(settingChanged(QString, QString, QDBusVariant)));
        for (const auto& setting : settings())
            ask(setting);
    }

    bool takeFinished()
    {
        auto didChange = false;
        std::erase_if(questions_, [&](const Question& question) {
            if (!question.call.isFinished())
                return false;
            didChange |= take(question);
            return true;
        });
        return didChange;
    }
    bool isWaiting() const { return !questions_.empty(); }

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value)
    {
        if (apply(portal_.traits_, group, key, QVariant::fromValue(value)))
            portal_.onChange_();
    }

private:
    struct Question {
        Setting setting;
        QDBusPendingCall call;
    };

    void ask(const Setting& setting)
    {
        // The later, single-wrapped method is missing from portals that people run.
        auto message = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
        message << setting.group << setting.key;
        auto call = bus_.asyncCall(message);
        questions_.push_back({setting, call});
        auto* watcher = new QDBusPendingCallWatcher(call, this);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](auto* finished) {
            finished->deleteLater();
            if (takeFinished())
                portal_.onChange_();
        });
    }

    bool take(const Question& question)
    {
        auto reply = question.call.reply();
        return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()
            && apply(portal_.traits_, question.setting.group, question.setting.key,
                     reply.arguments().first());
    }

    SettingsPortal& portal_;
    QDBusConnection bus_;
    std::vector<Question> questions_; // unanswered
};

SettingsPortal::SettingsPortal(UITraitCollection defaults, std::function<void()> onChange)
    : traits_(std::move(defaults))
    , onChange_(std::move(onChange))
{
    if (busIsThere())
        connection_ = std::make_unique<Connection>(*this, QDBusConnection::sessionBus());
}

SettingsPortal::SettingsPortal(UITraitCollection defaults, std::function<void()> onChange,
                               const QDBusConnection& bus)
    : traits_(std::move(defaults))
    , onChange_(std::move(onChange))
    , connection_(std::make_unique<Connection>(*this, bus))
{
}

SettingsPortal::~SettingsPortal() = default;

void SettingsPortal::waitForAnswers(Duration limit)
{
    if (!connection_)
        return;
    // The bus's own thread receives; there is nothing to wait on but the calls themselves, so they are looked at a few
    // times. This time is the machine's whatever clock the run loop has.
    constexpr auto nap = std::chrono::microseconds(200);
    for (auto slept = Duration::zero(); slept < limit; slept += nap) {
        connection_->takeFinished();
        if (!connection_->isWaiting())
            return;
        std::this_thread::sleep_for(nap);
    }
    connection_->takeFinished();
}

} // namespace platform

#include "platform/uikit/SettingsPortal.moc" // generated

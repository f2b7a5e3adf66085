// SPDX-License-Identifier: MIT
// Settings that outlive the program. Try:
//     saved-settings                     shows them
//     saved-settings volume 0.3          changes one; "saved-settings volume" alone removes it
//     saved-settings -name Ada watch     lets an argument go before it, and shows changes until it is interrupted,
//                                        whichever process makes them
#include "kit/data/UserDefaultsBacked.h"
#include "platform/dispatch/RunLoop.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace {

using namespace platform;

enum class Appearance { automatic, light, dark };

constexpr std::array<Appearance, 3> allCases(Appearance)
{
    return {Appearance::automatic, Appearance::light, Appearance::dark};
}

constexpr const char* rawValue(Appearance appearance)
{
    return std::array{"automatic", "light", "dark"}[static_cast<std::size_t>(appearance)];
}

struct Settings {
    zelk::UserDefaultsBacked<double> volume{0.8, "volume"};
    zelk::UserDefaultsBacked<Appearance> appearance{Appearance::automatic, "appearance"};
    zelk::UserDefaultsBacked<std::optional<std::string>> name{std::nullopt, "name"};
    zelk::UserDefaultsBacked<std::vector<std::string>> history{{}, "history"};
};

void show(const Settings& settings)
{
    std::printf("volume %g, appearance %s, name %s, %zu changes so far\n", settings.volume.wrappedValue(),
                rawValue(settings.appearance.wrappedValue()),
                settings.name.wrappedValue().value_or("(none)").c_str(),
                settings.history.wrappedValue().size());
}

// Says whether the setting exists and takes the text; an empty text removes it.
bool change(const Settings& settings, std::string_view key, std::string_view text)
{
    auto& store = *settings.volume.storage;
    double number = 0;
    if (text.empty() && (key == "volume" || key == "appearance" || key == "name"))
        store.removeObjectForKey(key);
    else if (key == "name")
        settings.name.setWrappedValue(std::string(text));
    else if (key == "appearance")
        store.setObject(std::string(text), key); // any text: what is no appearance reads as the default
    else if (key == "volume"
             && std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc())
        settings.volume.setWrappedValue(number);
    else
        return false;
    auto history = settings.history.wrappedValue();
    history.emplace_back(key);
    settings.history.setWrappedValue(history);
    return true;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    Settings settings;
    int first = 1;
    while (first + 1 < argumentCount && arguments[first][0] == '-')
        first += 2; // the settings took these pairs already
    if (first < argumentCount && std::strcmp(arguments[first], "watch") == 0) {
        show(settings);
        auto observation = settings.volume.storage->observe([&](auto&) { show(settings); });
        RunLoop::main().run();
    }
    if (first < argumentCount) {
        if (!change(settings, arguments[first], first + 1 < argumentCount ? arguments[first + 1] : "")) {
            std::fprintf(stderr,
                         "usage: saved-settings [-KEY VALUE]... [watch | volume NUMBER | appearance WORD | "
                         "name TEXT]\n");
            return 2;
        }
        if (auto saved = settings.volume.storage->synchronize(); !saved) {
            std::fprintf(stderr, "saved-settings: %s\n", saved.error().localizedDescription().c_str());
            return 1;
        }
    }
    show(settings);
}

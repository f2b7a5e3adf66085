// SPDX-License-Identifier: MIT
// Named colours: the text of one, and where a bundle keeps it. The text may be a stranger's.
#include "platform/graphics/ColorSet.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/FileReading_p.h"
#include "platform/foundation/Logger.h"
#include "platform/graphics/CGColor.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

namespace platform {

namespace {

constexpr std::size_t maximumFileSize = 64 * 1024;

std::unexpected<Error> damaged(std::string reason)
{
    return failure(NSCocoaError::fileReadCorruptFile,
                   {{std::string(NSLocalizedFailureReasonErrorKey), std::move(reason)}});
}

template <class Number, class... Form>
std::optional<Number> wholeNumber(std::string_view text, Form... form)
{
    Number number{};
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, form...);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

QJsonValue valueOf(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key));
}

std::string textOf(const QJsonObject& object, const char* key, std::string otherwise = {})
{
    auto value = valueOf(object, key);
    return value.isString() ? value.toString().toStdString() : otherwise;
}

enum class Part { color, alpha };
enum class Range { unit, extended };

std::optional<double> component(std::string_view text, Part part, Range range)
{
    std::optional<unsigned> byte;
    if (text.starts_with("0x") || text.starts_with("0X"))
        byte = wholeNumber<unsigned>(text.substr(2), 16);
    else if (text.find_first_not_of("0123456789") == text.npos)
        byte = wholeNumber<unsigned>(text, 10);
    else {
        auto fraction = wholeNumber<double>(text, std::chars_format::general);
        if (!fraction || !std::isfinite(*fraction))
            return std::nullopt;
        auto isLegal = range == Range::extended || (*fraction >= 0 && *fraction <= 1);
        return isLegal ? fraction : std::nullopt;
    }
    if (!byte || *byte > 255)
        return std::nullopt;
    // An alpha without its decimals is opaque, not nearly clear.
    return part == Part::alpha && text == "1" ? 1 : *byte / 255.0;
}

Result<UIColor> colorOf(const QJsonObject& color)
{
    auto space = textOf(color, "color-space");
    auto components = valueOf(color, "components").toObject();
    auto range = space == "extended-srgb" ? Range::extended : Range::unit;
    std::string missing;
    auto read = [&](const char* name) {
        auto part = std::string_view(name) == "alpha" ? Part::alpha : Part::color;
        auto value = component(textOf(components, name), part, part == Part::alpha ? Range::unit : range);
        if (!value && missing.empty())
            missing = name;
        return value.value_or(0);
    };
    auto alpha = read("alpha");
    std::optional<CGColor> result;
    if (space == "srgb" || space == "extended-srgb") {
        auto red = read("red"), green = read("green"), blue = read("blue");
        result = CGColor::sRGB(red, green, blue, alpha);
    } else if (space == "display-p3") {
        auto red = read("red"), green = read("green"), blue = read("blue");
        result = CGColor::displayP3(red, green, blue, alpha);
    } else if (space == "gray-gamma-22") {
        result =
            CGColor::gray(read("white"), alpha); // its curve and ours differ by less than one part of 255
    } else {
        return damaged("It has a colour of no colour space that is known.");
    }
    if (!missing.empty())
        return damaged("It has a colour whose " + missing + " is missing or is no component.");
    return UIColor(*result);
}

struct Place {
    std::size_t luminosity = 0; // any, light, dark
    bool highContrast = false;
};

// Where an entry belongs; nothing when it asks for something that no surroundings here have.
std::optional<Place> placeOf(const QJsonObject& entry)
{
    if (textOf(entry, "idiom", "universal") != "universal")
        return std::nullopt;
    if (textOf(entry, "display-gamut", "sRGB") != "sRGB")
        return std::nullopt;
    Place place;
    for (auto each : valueOf(entry, "appearances").toArray()) {
        auto appearance = textOf(each.toObject(), "appearance");
        auto value = textOf(each.toObject(), "value");
        if (appearance == "luminosity" && (value == "light" || value == "dark"))
            place.luminosity = value == "light" ? 1 : 2;
        else if (appearance == "contrast" && value == "high")
            place.highContrast = true;
        else
            return std::nullopt;
    }
    return place;
}

struct Table {
    std::optional<UIColor> entries[3][2]; // by luminosity and contrast

    const UIColor* nearest(std::size_t luminosity, bool highContrast) const
    {
        const std::optional<UIColor>* order[]{&entries[luminosity][highContrast], &entries[luminosity][0],
                                              &entries[0][highContrast], &entries[0][0]};
        for (auto* entry : order) {
            if (*entry)
                return &**entry;
        }
        return nullptr;
    }
};

Result<UIColor> colorFrom(const Table& table)
{
    auto* light = table.nearest(1, false);
    auto* dark = table.nearest(2, false);
    auto* lightHigh = table.nearest(1, true);
    auto* darkHigh = table.nearest(2, true);
    if (!light || !dark || !lightHigh || !darkHigh)
        return damaged("It has no colour for one of the appearances light and dark.");
    if (*light == *dark && *light == *lightHigh && *light == *darkHigh)
        return *light;
    return UIColor::dynamic(*light, *dark, *lightHigh, *darkHigh);
}

} // namespace

Result<UIColor> parseColorSet(std::string_view json)
{
    QJsonParseError error;
    auto document = QJsonDocument::fromJson(
        QByteArray::fromRawData(json.data(), static_cast<qsizetype>(json.size())), &error);
    if (error.error != QJsonParseError::NoError)
        return damaged("It is no JSON: " + error.errorString().toStdString() + ".");
    Table table;
    for (auto each : valueOf(document.object(), "colors").toArray()) {
        auto entry = each.toObject();
        auto place = placeOf(entry);
        if (!place)
            continue;
        auto color = TRY(colorOf(valueOf(entry, "color").toObject()));
        auto& there = table.entries[place->luminosity][place->highContrast];
        if (!there)
            there = color;
    }
    return colorFrom(table);
}

std::optional<UIColor> UIColor::named(std::string_view name, const Bundle& bundle,
                                      std::optional<ColorAppearance> compatibleWith)
{
    std::optional<URL> file;
    for (std::string_view catalogue : {"Colors.xcassets/", "Assets.xcassets/"}) {
        if (!file)
            file =
                bundle.urlForResource(std::string(catalogue) + std::string(name) + ".colorset/Contents.json");
    }
    if (!file)
        return std::nullopt;
    auto read = [&]() -> Result<UIColor> {
        auto text = TRY(readFileHead(*file, maximumFileSize + 1));
        if (text.size() > maximumFileSize)
            return damaged("It is too large for a colour.");
        return parseColorSet(text);
    };
    auto color = read();
    if (!color) {
        Logger("org.zelk.platform", "assets")
            .error("the colour " + file->deletingLastPathComponent().lastPathComponent()
                   + " cannot be used: " + color.error().bridged().localizedFailureReason());
        return std::nullopt;
    }
    return compatibleWith ? color->resolved(*compatibleWith) : *color;
}

} // namespace platform

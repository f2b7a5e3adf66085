// SPDX-License-Identifier: MIT
#include "kit/foundation/appIcon.h"

#include "platform/graphics/IconFile.h"

namespace zelk {

namespace {

constexpr std::string_view iconName = "AppIcon";

// The picture NAME of the resources: NAME@2x.png, as sharp as most screens are, NAME.png, NAME@3x.png, or the file NAME.
std::optional<platform::UIImage> imageNamed(const platform::Bundle& bundle, std::string_view name)
{
    struct Form {
        std::string_view suffix;
        platform::CGFloat scale;
    };
    for (auto [suffix, scale] : {Form{"@2x.png", 2}, Form{".png", 1}, Form{"@3x.png", 3}, Form{"", 1}}) {
        auto url = bundle.urlForResource(std::string(name) + std::string(suffix));
        if (!url)
            continue;
        // One that is damaged leaves the others.
        if (auto image = platform::UIImage::fromFile(url->path(), scale))
            return *image;
    }
    return std::nullopt;
}

// Nothing when there is no list, or it has no last name.
std::optional<std::string> lastListedFile(const platform::Bundle& bundle)
{
    auto* icons = bundle.objectForInfoDictionaryKey("CFBundleIcons");
    auto* primary = icons ? icons->find("CFBundlePrimaryIcon") : nullptr;
    auto* files = primary ? primary->find("CFBundleIconFiles") : nullptr;
    auto* list = files ? files->as<platform::PropertyListArray>() : nullptr;
    auto* last = list && !list->empty() ? list->back().as<std::string>() : nullptr;
    return last ? std::optional(*last) : std::nullopt;
}

} // namespace

std::optional<platform::UIImage> appIcon(const platform::Bundle& bundle)
{
    if (auto name = lastListedFile(bundle))
        return imageNamed(bundle, *name);
    if (auto image = imageNamed(bundle, iconName))
        return image;
    auto url = bundle.urlForResource(iconName, "icns");
    auto icon =
        url ? platform::iconFromFile(*url) : platform::failure(platform::NSCocoaError::fileReadNoSuchFile);
    return icon ? std::optional(*icon) : std::nullopt;
}

} // namespace zelk

// SPDX-License-Identifier: MIT
#include "platform/graphics/SymbolPictures_p.h"

#include "platform/foundation/Precondition.h"
#include "platform/graphics/DesktopIcon_p.h"
#include "platform/graphics/SymbolFiles_p.h"
#include "platform/graphics/UIImage_p.h"

#include <QtCore/QByteArray>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <algorithm>
#include <cmath>
#include <list>
#include <map>
#include <string>
#include <tuple>

namespace platform {

namespace {

constexpr std::string_view lineWidthAttribute = "stroke-width=\"1.8\"";
constexpr std::size_t keptBytes = 16 * 1024 * 1024; // of pictures

// Of a line, in units of the drawing, from the lightest weight to the heaviest.
double lineWidth(FontWeight weight)
{
    constexpr double widths[]{0.8, 1.1, 1.4, 1.8, 2.05, 2.3, 2.65, 3, 3.3};
    return widths[static_cast<int>(weight)];
}

const SymbolFile* fileNamed(std::string_view name)
{
    auto files = symbolFiles();
    auto found = std::ranges::lower_bound(files, name, {}, &SymbolFile::name);
    return found != files.end() && found->name == name ? &*found : nullptr;
}

// From the viewBox, which begins with the origin 0 0 and is 24 high.
double widthOf(const SymbolFile& file)
{
    constexpr std::string_view start = "viewBox=\"0 0 ";
    auto at = file.document.find(start);
    precondition(at != file.document.npos, "a symbol's drawing has no viewBox at 0 0");
    return std::strtod(file.document.data() + at + start.size(), nullptr);
}

bool isDirectional(const SymbolFile& file)
{
    return file.document.substr(0, file.document.find('>')).contains("class=\"directional\"");
}

// The drawing in black, with lines of the weight.
QImage rendered(const SymbolFile& file, const SymbolWish& wish, QImage canvas)
{
    std::string document(file.document);
    if (auto at = document.find(lineWidthAttribute); at != document.npos)
        document.replace(at, lineWidthAttribute.size(),
                         "stroke-width=\"" + std::to_string(lineWidth(wish.weight)) + '"');
    QSvgRenderer renderer(QByteArray::fromRawData(document.data(), static_cast<qsizetype>(document.size())));
    precondition(renderer.isValid(), "a symbol's drawing is no SVG");
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    if (wish.direction == SymbolDirection::rightToLeft && isDirectional(file)) {
        painter.translate(wish.width, 0);
        painter.scale(-1, 1);
    }
    renderer.render(&painter, QRectF(0, 0, wish.width, wish.height));
    return canvas;
}

void colour(QImage& image, const ColorComponents& color)
{
    auto legal = [](double value) { return static_cast<float>(value > 0 ? std::min(value, 1.0) : 0.0); };
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(
        image.rect(),
        QColor::fromRgbF(legal(color.red), legal(color.green), legal(color.blue), legal(color.alpha)));
}

QImage drawn(std::string_view name, const SymbolWish& wish)
{
    QImage canvas(static_cast<int>(std::ceil(wish.width - 1e-6)),
                  static_cast<int>(std::ceil(wish.height - 1e-6)), QImage::Format_ARGB32_Premultiplied);
    if (canvas.isNull())
        return canvas;
    canvas.fill(Qt::transparent);
    if (auto* file = fileNamed(name)) {
        canvas = rendered(*file, wish, std::move(canvas));
        colour(canvas, wish.color);
        return canvas;
    }
    auto icon = desktopIcon(name, std::max(canvas.width(), canvas.height()));
    if (icon.image.isNull())
        return {};
    {
        QPainter painter(&canvas);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRectF(0, 0, wish.width, wish.height), icon.image);
    }
    if (icon.isSymbolic)
        colour(canvas, wish.color);
    return canvas;
}

// What was drawn lately, the latest first.
class PictureStore {
public:
    UIImage picture(std::string_view name, const SymbolWish& wish)
    {
        auto key = Key(name, wish.width, wish.height, wish.weight, wish.direction, wish.color.red,
                       wish.color.green, wish.color.blue, wish.color.alpha);
        if (auto found = byKey_.find(key); found != byKey_.end()) {
            entries_.splice(entries_.begin(), entries_, found->second);
            return found->second->picture;
        }
        // An unknown name is remembered as well: asking the theme costs a walk through its folders.
        auto picture = imageFrom(drawn(name, wish), 1);
        bytes_ += sizeOf(picture);
        entries_.push_front({key, picture});
        byKey_.emplace(std::move(key), entries_.begin());
        while (entries_.size() > 1 && (bytes_ > keptBytes || entries_.size() > mostEntries)) {
            bytes_ -= sizeOf(entries_.back().picture);
            byKey_.erase(entries_.back().key);
            entries_.pop_back();
        }
        return picture;
    }

private:
    using Key =
        std::tuple<std::string, double, double, FontWeight, SymbolDirection, double, double, double, double>;
    struct Entry {
        Key key;
        UIImage picture;
    };
    static constexpr std::size_t mostEntries = 2000;
    static std::size_t sizeOf(const UIImage& picture)
    {
        return 4 * static_cast<std::size_t>(picture.pixelWidth())
            * static_cast<std::size_t>(picture.pixelHeight());
    }

    std::list<Entry> entries_;
    std::map<Key, std::list<Entry>::iterator> byKey_;
    std::size_t bytes_ = 0;
};

} // namespace

CGFloat symbolAspect(std::string_view name)
{
    constexpr double height = 24;
    if (auto* file = fileNamed(name))
        return widthOf(*file) / height;
    static auto& icons = *new std::map<std::string, bool, std::less<>>;
    auto known = icons.find(name);
    if (known == icons.end()) {
        if (icons.size() > 1000)
            icons.clear();
        known = icons.emplace(std::string(name), desktopIconExists(name)).first;
    }
    return known->second ? 1 : 0;
}

UIImage symbolPicture(std::string_view name, const SymbolWish& wish)
{
    // Never destroyed: at exit the painting library may be gone before it.
    static auto& store = *new PictureStore;
    return store.picture(name, wish);
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Samples.h"

#include "platform/avfoundation/AVAssetWriter.h"
#include "platform/avfoundation/AVAssetWriterInput.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/UUID.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIBezierPath.h"

#include <cmath>
#include <future>
#include <numbers>
#include <string>
#include <utility>

namespace gallery {

using namespace platform;

namespace {

constexpr int pictureCount = 18, filmWidth = 480, filmHeight = 270, filmPictures = 90, filmRate = 15;

// Gone with the program.
class Folder {
public:
    Folder()
        : url_(FileManager::defaultManager().temporaryDirectory().appendingPathComponent(
              std::string("zelk-gallery-").append(UUID().string())))
    {
        isThere_ =
            FileManager::defaultManager().createDirectory(url_, IntermediateDirectories::created).has_value();
    }
    ~Folder()
    {
        if (isThere_)
            std::ignore = FileManager::defaultManager().removeItem(url_);
    }
    Folder(const Folder&) = delete; // it is removed once
    Folder& operator=(const Folder&) = delete;

    std::optional<URL> file(std::string_view name) const
    {
        return isThere_ ? std::optional(url_.appendingPathComponent(name)) : std::nullopt;
    }

private:
    const URL url_;
    bool isThere_ = false;
};

const Folder& folder()
{
    static const Folder folder;
    return folder;
}

// A sun that crosses the sky.
std::shared_ptr<CVPixelBuffer> filmPicture(int number)
{
    auto buffer = CVPixelBuffer::make(filmWidth, filmHeight, CVPixelFormatType::BGRA32);
    if (!buffer)
        return nullptr;
    auto part = static_cast<double>(number) / filmPictures;
    auto sunX = part * filmWidth, sunY = filmHeight * (0.75 - 0.55 * std::sin(part * std::numbers::pi));
    for (int y = 0; y < filmHeight; ++y) {
        auto* row = buffer->mutableBaseAddress(0) + static_cast<std::size_t>(y) * buffer->bytesPerRow(0);
        for (int x = 0; x < filmWidth; ++x, row += 4) {
            auto isSun = std::hypot(x - sunX, y - sunY) < 26;
            auto isHill = y > filmHeight * 0.72 + 18 * std::sin(x / 60.0);
            auto height = 255.0 * y / filmHeight;
            row[0] = static_cast<std::byte>(isHill ? 70 : isSun ? 60 : 255 - height * 0.4);
            row[1] = static_cast<std::byte>(isHill ? 120 : isSun ? 200 : 120 + height * 0.4);
            row[2] = static_cast<std::byte>(isHill ? 60 : isSun ? 255 : 40 + height * 0.7);
            row[3] = std::byte{255};
        }
    }
    return buffer;
}

bool writeFilm(const URL& file)
{
    auto writer = AVAssetWriter::make(file, AVFileTypeMPEG4);
    if (!writer)
        return false;
    auto input = std::make_shared<AVAssetWriterInput>(
        AVMediaType::video, VideoSettings{.AVVideoMaxKeyFrameIntervalKey = filmRate});
    if (!(*writer)->canAdd(*input))
        return false;
    (*writer)->add(input);
    if (!(*writer)->startWriting())
        return false;
    (*writer)->startSession(CMTime::zero());
    for (int i = 0; i < filmPictures; ++i) {
        CMSampleBuffer sample;
        sample.presentationTimeStamp = CMTime(i, filmRate);
        sample.duration = CMTime(1, filmRate);
        sample.imageBuffer = filmPicture(i);
        if (!sample.imageBuffer || !input->append(sample))
            return false;
    }
    std::promise<void> done;
    (*writer)->finishWriting([&done] { done.set_value(); });
    done.get_future().wait();
    return (*writer)->status() == AVAssetWriterStatus::completed;
}

} // namespace

UIImage samplePicture(int number, CGSize size)
{
    const std::pair<UIColor, UIColor> skies[] = {
        {UIColor::systemBlue(), UIColor::systemTeal()},
        {UIColor::systemIndigo(), UIColor::systemPink()},
        {UIColor::systemOrange(), UIColor::systemYellow()},
        {UIColor::systemPurple(), UIColor::systemOrange()},
        {UIColor::systemTeal(), UIColor::systemGreen()},
    };
    const auto& [above, below] = skies[static_cast<std::size_t>(number) % std::size(skies)];
    auto hill = [&](double phase, double level) {
        UIBezierPath path;
        path.moveTo({0, size.height});
        for (int i = 0; i <= 40; ++i) {
            auto across = i / 40.0;
            auto wave = 0.10 * std::sin(across * 7 + phase) + 0.04 * std::sin(across * 17 + 2 * phase);
            path.addLine({across * size.width, size.height * (level + wave)});
        }
        path.addLine({size.width, size.height});
        path.close();
        return path;
    };
    auto made = makeImage(size, 1, [&](CGContext& context) {
        const GradientStop stops[] = {{0, above}, {1, below}};
        context.drawLinearGradient(stops, {0, 0}, {0, size.height * 0.8});
        auto sun = size.height * 0.16;
        context.fill(UIBezierPath::oval(CGRect::make(size.width * (0.15 + 0.6 * (number * 7 % 10) / 10),
                                                     size.height * (0.12 + 0.05 * (number % 4)), sun, sun)),
                     UIColor::gray(1, 0.9));
        context.fill(hill(number * 1.3, 0.62), UIColor::gray(0, 0.25));
        context.fill(hill(number * 2.1 + 1, 0.76), UIColor::gray(0, 0.45));
    });
    return made.value_or(UIImage());
}

const std::vector<LibraryFile>& sampleLibrary()
{
    static const auto library = [] {
        std::vector<LibraryFile> files;
        if (auto film = sampleFilm())
            files.push_back({film->path(), true, 0});
        for (int i = 0; i < pictureCount; ++i) {
            auto file = folder().file(std::string("Landscape ").append(std::to_string(i + 1)).append(".png"));
            auto size = i % 3 == 0 ? CGSize{360, 480} : CGSize{480, 360};
            if (file && samplePicture(i, size).writePNG(file->path()))
                files.push_back({file->path(), false, 0});
        }
        return files;
    }();
    return library;
}

const std::optional<URL>& sampleFilm()
{
    static const auto film = [] {
        auto file = folder().file("Sunrise.mp4");
        return file && writeFilm(*file) ? file : std::nullopt;
    }();
    return film;
}

} // namespace gallery

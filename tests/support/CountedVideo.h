// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVURLAsset.h"
#include "platform/graphics/UIImage.h"
#include "tests/support/MediaFixtures.h"

#include <cmath>
#include <memory>
#include <string>

namespace tests {

// The arguments for a video whose pictures say which they are, modulo 256: the left half counts sixteens, the right ones, as
// shades of grey. `encoding` follows; pictures are 25 a second unless it says otherwise.
inline std::string countedVideo(const std::string& seconds, const std::string& encoding,
                                const std::string& filter = "null")
{
    return "-f lavfi -i color=s=64x48:r=25:d=" + seconds
        + " -vf "
          "\"format=yuv420p,geq=lum='if(lt(X,W/2),16+13*mod(floor(N/16),16),16+13*mod(N,16))':cb=128:cr=128,"
        + filter + ",format=yuv420p\" " + encoding;
}

// Which picture of such a video it is; -1 when it is none.
inline int countOf(const platform::UIImage& image)
{
    if (image.isEmpty())
        return -1;
    auto digit = [&image](int quarter) {
        const auto shade =
            image.pixel(image.pixelWidth() * quarter / 4, image.pixelHeight() / 2).components().red;
        return static_cast<int>(std::lround(shade * 219 / 13));
    };
    return digit(1) * 16 + digit(3);
}

inline std::shared_ptr<platform::AVURLAsset> videoAsset(const std::string& extension,
                                                        const std::string& arguments)
{
    return std::make_shared<platform::AVURLAsset>(mediaURL(extension, arguments));
}

} // namespace tests

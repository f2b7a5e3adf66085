// SPDX-License-Identifier: MIT
#include "kit/data/AsyncImageLoadingError.h"

namespace zelk {

platform::NSError nsError(const AsyncImage::LoadingError&)
{
    return platform::NSError("ZelkKit.AsyncImage.LoadingError", 1);
}

} // namespace zelk

// SPDX-License-Identifier: MIT
#include "platform/graphics/FontFiles.h"

#include "platform/graphics/GraphicsRuntime_p.h"

#include <QtCore/QString>
#include <QtGui/QFontDatabase>

namespace platform {

bool addFontFile(std::string_view path)
{
    startGraphics(DisplayMode::offscreen);
    awaitFontConfiguration();
    auto name = QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
    return QFontDatabase::addApplicationFont(name) >= 0;
}

} // namespace platform

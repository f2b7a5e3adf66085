// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/StillPlan_p.h"
#include "platform/avfoundation/StillRenderer_p.h"
#include "platform/graphics/UIImage_p.h"

#include <QtGui/QPainter>
#include <QtGui/QTransform>

#include <algorithm>

namespace platform {

Result<UIImage> composeStill(const StillPlan& plan, const StillRequest& request,
                             const std::vector<std::optional<UIImage>>& pictures)
{
    const auto render = plan.settings.videoComposition->renderSize;
    const auto size = fittedStillSize(render, plan.settings.maximumSize);
    QImage canvas(static_cast<int>(size.width), static_cast<int>(size.height),
                  QImage::Format_ARGB32_Premultiplied);
    if (canvas.isNull())
        return failure(AVError::outOfMemory);
    const auto color = request.backgroundColor.resolved({}).components();
    canvas.fill(QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                                 static_cast<float>(color.blue), static_cast<float>(color.alpha)));
    QPainter painter(&canvas);
    painter.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::Antialiasing);
    for (std::size_t layer = pictures.size(); layer-- > 0;) {
        if (!pictures[layer])
            continue;
        const auto& transform = request.layers[layer].transform;
        painter.resetTransform();
        painter.scale(size.width / render.width, size.height / render.height);
        painter.setTransform(
            QTransform(transform.a, transform.b, transform.c, transform.d, transform.tx, transform.ty), true);
        painter.setOpacity(std::clamp(request.layers[layer].opacity, 0.0, 1.0));
        painter.drawImage(QPointF(0, 0), qImage(*pictures[layer]));
    }
    painter.end();
    return imageFrom(std::move(canvas), 1);
}

} // namespace platform

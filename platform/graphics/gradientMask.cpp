// SPDX-License-Identifier: MIT
#include "platform/graphics/gradientMask.h"

#include "platform/foundation/Precondition.h"
#include "platform/graphics/CGContextBackend_p.h"

#include <QtGui/QLinearGradient>

#include <algorithm>

namespace platform {

void maskLayer(CGContext& context, const LinearGradientLine& gradient)
{
    auto& backend = context.backend();
    precondition(!backend.layers.empty(), "maskLayer needs a layer that was begun");
    auto area = context.clipBounds();
    if (area.isEmpty())
        return;
    auto& [stops, start, end] = gradient;
    QLinearGradient line(start.x, start.y, end.x, end.y);
    for (auto& stop : stops)
        line.setColorAt(std::clamp(stop.location, 0.0, 1.0), qColor(stop.color, backend.appearance));
    QBrush brush(line);
    if (stops.empty())
        brush = QBrush(Qt::transparent);
    else if (start == end)
        brush = QBrush(qColor(stops.back().color, backend.appearance));
    auto& painter = backend.painter();
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    // Pixels at the edge are masked as a whole: the layer has nothing beyond them.
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(QRectF(area.minX() - 1, area.minY() - 1, area.width() + 2, area.height() + 2), brush);
    painter.restore();
}

} // namespace platform

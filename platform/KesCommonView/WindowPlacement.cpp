#include <KesCommonView/WindowPlacement.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kes::WindowPlacement {

namespace {

double getOverlap(const RectangleF& a, const RectangleF& b)
{
    const double width = std::min(double(a.x) + a.width, double(b.x) + b.width) - std::max(a.x, b.x);
    const double height = std::min(double(a.y) + a.height, double(b.y) + b.height) - std::max(a.y, b.y);
    return width > 0 && height > 0 ? width * height : 0;
}

double getDistance(const RectangleF& a, const RectangleF& b)
{
    return std::hypot(a.x + a.width / 2.0 - b.x - b.width / 2.0, a.y + a.height / 2.0 - b.y - b.height / 2.0);
}

RectangleF moveInto(const RectangleF& rectangle, const RectangleF& area)
{
    const float width = std::min(rectangle.width, area.width);
    const float height = std::min(rectangle.height, area.height);
    return {std::clamp(rectangle.x, area.x, area.x + area.width - width),
            std::clamp(rectangle.y, area.y, area.y + area.height - height), width, height};
}

} // namespace

bool isRectangle(const RectangleF& rectangle)
{
    return std::isfinite(rectangle.x) && std::isfinite(rectangle.y) && std::isfinite(rectangle.width) &&
           std::isfinite(rectangle.height) && rectangle.width >= 1 && rectangle.height >= 1;
}

RectangleF bringOnto(const RectangleF& rectangle, const std::vector<RectangleF>& areas)
{
    if (areas.empty())
        return rectangle;
    double covered = 0;
    for (const auto& area : areas)
        covered += getOverlap(rectangle, area);
    if (covered >= double(rectangle.width) * rectangle.height)
        return rectangle;
    const auto best = std::min_element(areas.begin(), areas.end(), [&](const auto& a, const auto& b) {
        return std::pair(-getOverlap(rectangle, a), getDistance(rectangle, a)) <
               std::pair(-getOverlap(rectangle, b), getDistance(rectangle, b));
    });
    return moveInto(rectangle, *best);
}

} // namespace Kes::WindowPlacement

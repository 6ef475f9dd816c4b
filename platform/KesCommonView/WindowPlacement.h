#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/RectangleF.h>

#include <vector>

/// Where a remembered window may stand. Any thread.
namespace Kes::WindowPlacement {

/// Whether the numbers make a rectangle: finite, with a width and a height above zero.
KES_EXPORT bool isRectangle(const RectangleF& rectangle);

/// The rectangle when it lies wholly on the areas, which do not overlap; otherwise the rectangle cut to the
/// size of the area that it covers most (the nearest one when it covers none) and moved into it. Without
/// areas, the rectangle itself.
KES_EXPORT RectangleF bringOnto(const RectangleF& rectangle, const std::vector<RectangleF>& areas);

} // namespace Kes::WindowPlacement

#pragma once

namespace Kes {

/// A rectangle in whatever unit its user chooses; window rectangles are in pixels of the whole desktop.
struct RectangleF {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;

    friend bool operator==(const RectangleF&, const RectangleF&) = default;
};

} // namespace Kes

#pragma once

namespace Kes {

/// A rectangle in any unit; that of a window is in GDK pixels of the whole desktop. A value. Any thread.
struct RectangleF {
    /// The left edge, growing to the right.
    float x = 0;
    /// The upper edge, growing downwards.
    float y = 0;
    float width = 0;
    float height = 0;

    friend bool operator==(const RectangleF&, const RectangleF&) = default;
};

} // namespace Kes

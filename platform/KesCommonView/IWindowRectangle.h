#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/RectangleF.h>

namespace Kes {

/// A window whose place and size can be kept, in GDK pixels: at a scale factor of 2 each is 2 x 2 pixels of
/// the screen. GUI thread.
class KES_EXPORT IWindowRectangle {
public:
    virtual ~IWindowRectangle();

    /// Moves and sizes the window.
    virtual void setRectangle(const RectangleF& rectangle) = 0;
    /// The present place and size, or the last one of a hidden window.
    virtual RectangleF getRectangle() const = 0;
};

} // namespace Kes

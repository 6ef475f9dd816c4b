#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/RectangleF.h>

namespace Kes {

/// A window whose place and size can be kept. In pixels of the screen. GUI thread.
class KES_EXPORT IWindowRectangle {
public:
    virtual ~IWindowRectangle();

    virtual void setRectangle(const RectangleF& rectangle) = 0;
    virtual RectangleF getRectangle() const = 0;
};

} // namespace Kes

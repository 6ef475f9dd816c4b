#pragma once

#include <KesCommon/Export.h>

#include <gdkmm/pixbuf.h>

namespace KesProgram {

/// The picture of a device, within 16 by 16 pixels, read from the themes directory on first use and the
/// same one ever after. A picture that cannot be read writes a warning to the log and is null. GUI thread.
KES_EXPORT Glib::RefPtr<Gdk::Pixbuf> getSharedKestoPixbuf();

/// The same picture as large as the zoom of the screen wants it; the shared one at 100 %. GUI thread.
KES_EXPORT Glib::RefPtr<Gdk::Pixbuf> getZoomedKestoPixbuf();

} // namespace KesProgram

#pragma once

#include <KesCommon/Export.h>

#include <gio/gio.h>

#include <functional>
#include <memory>

namespace KesDriver {

/// Deletes a stream by giving up its reference.
struct StreamUnref {
    void operator()(GIOStream* stream) const { g_object_unref(stream); }
};
using StreamPointer = std::unique_ptr<GIOStream, StreamUnref>;

/// A stream over the descriptor of a connected stream socket, which belongs to it from then on; null for -1,
/// and when there is none to be had. Any thread.
KES_EXPORT StreamPointer makeStream(int descriptor);

/// Makes the stream to a device, on the calling thread; null when there is no device. May block, until the
/// cancellable is cancelled at the latest. Any thread.
using StreamConnector = std::function<StreamPointer(GCancellable*)>;

} // namespace KesDriver

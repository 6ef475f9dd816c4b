#pragma once

#include <KesDriver/net/StreamConnector.h>

#include <string_view>

namespace KesDriver {

/// A byte stream that is being made, open or cancelled. One thread may read while another one writes;
/// `cancel` on any thread.
class ByteStream {
public:
    ByteStream();
    ~ByteStream();
    ByteStream(const ByteStream&) = delete;
    ByteStream& operator=(const ByteStream&) = delete;

    /// Blocks; false when it has not come about. Before everything else but `cancel`.
    bool open(const StreamConnector& connector);

    /// Blocks until there are bytes; none at the end of the stream, after a failure and when cancelled.
    std::size_t read(char* bytes, std::size_t size);
    /// Blocks until all is written; false after a failure and when cancelled.
    bool write(std::string_view bytes);
    /// Whether a short text can be written without blocking.
    bool canWrite();

    /// Ends what blocks, for good.
    void cancel();
    /// After `cancel`, while nobody reads or writes: lets the other end know.
    void close();

private:
    GCancellable* const _cancellable;
    StreamPointer _stream;
};

} // namespace KesDriver

#include <KesDriver/net/detail/ByteStream.h>

namespace KesDriver {

ByteStream::ByteStream() : _cancellable(g_cancellable_new())
{
    // As long as somebody has it, no call that waits makes and closes one of its own.
    g_cancellable_get_fd(_cancellable);
}

ByteStream::~ByteStream()
{
    close();
    g_cancellable_release_fd(_cancellable);
    g_object_unref(_cancellable);
}

bool ByteStream::open(const StreamConnector& connector)
{
    _stream = connector(_cancellable);
    return _stream != nullptr;
}

std::size_t ByteStream::read(char* bytes, std::size_t size)
{
    auto* input = g_io_stream_get_input_stream(_stream.get());
    const auto count = g_input_stream_read(input, bytes, size, _cancellable, nullptr);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool ByteStream::write(std::string_view bytes)
{
    auto* output = g_io_stream_get_output_stream(_stream.get());
    return g_output_stream_write_all(output, bytes.data(), bytes.size(), nullptr, _cancellable, nullptr) !=
           FALSE;
}

bool ByteStream::canWrite()
{
    auto* output = g_io_stream_get_output_stream(_stream.get());
    if (!G_IS_POLLABLE_OUTPUT_STREAM(output))
        return true;
    return g_pollable_output_stream_is_writable(G_POLLABLE_OUTPUT_STREAM(output)) != FALSE;
}

void ByteStream::cancel()
{
    g_cancellable_cancel(_cancellable);
}

void ByteStream::close()
{
    if (_stream)
        g_io_stream_close(_stream.get(), nullptr, nullptr);
}

} // namespace KesDriver

#pragma once

#include <KesCommon/ObjectError.h>
#include <KesCommon/Result.h>

#include <memory>
#include <string>

namespace KesDriver {

/// A call has failed because there is no connection to the device, or none any more: what was asked for may
/// have been done or not. Every other failure is a refusal by a device that answers. Any thread.
class KES_EXPORT ConnectionError : public Kes::TextError {
public:
    using Kes::TextError::TextError;
    ~ConnectionError() override;

    /// The text, in the language of the process, names the device.
    static Kes::Result failure(std::string text);
};

/// Whether the result is a failure because of the connection. Only the error itself counts, not what has
/// led to it; a success is none.
KES_EXPORT bool isConnectionError(const Kes::Result& result);

} // namespace KesDriver

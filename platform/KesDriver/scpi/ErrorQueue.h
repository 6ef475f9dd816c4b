#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/scpi/Error.h>

#include <cstddef>
#include <deque>

namespace KesDriver::Scpi {

/// The errors that have not been asked for yet, oldest first. When it is full, the newest one is replaced by
/// -350, and further ones are lost. Not synchronised.
class KES_EXPORT ErrorQueue {
public:
    /// Errors, the one about the overflow included.
    static constexpr std::size_t capacity = 32;

    /// Puts it behind the others.
    void add(Error error);
    /// The oldest one, which leaves; `ErrorCode::None` with "No error" when there is none, so a controller
    /// asks until it gets that.
    Error take();
    void clear() { _errors.clear(); }
    std::size_t getCount() const { return _errors.size(); }

private:
    std::deque<Error> _errors;
};

} // namespace KesDriver::Scpi

#pragma once

#include <KesCommon/ObjectError.h>

#include <concepts>
#include <memory>
#include <string>
#include <utility>

namespace Kes {

/// Success, or the error that prevented it. A value. Any thread.
class [[nodiscard]] Result {
public:
    /// `Result(true)` is success; `Result(false)` a failure without details.
    /// Only a `bool` will do: a text must not pass for success, see `failure`.
    Result(std::same_as<bool> auto success) : _success(success) {}
    /// A failure. A null error is a failure without details.
    Result(std::shared_ptr<ObjectError> error) : _success(false), _error(std::move(error)) {}

    /// A failure described by one text.
    static Result failure(std::string text) { return Result(TextError::create(std::move(text))); }

    /// Implicit, so that an operation that answers with a `bool` can return a result as it is.
    operator bool() const { return _success; }

    /// Null after success and after a failure without details.
    const std::shared_ptr<ObjectError>& getError() const { return _error; }

private:
    bool _success;
    std::shared_ptr<ObjectError> _error;
};

} // namespace Kes

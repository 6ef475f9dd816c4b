#pragma once

#include <KesCommon/Export.h>

#include <memory>
#include <string>
#include <vector>

namespace Kes {

/// An error as a value: a text for the user, and the errors that led to it. Operations return it in a
/// `Result`, signals carry it; it is not thrown. Who must tell one kind of error from another looks for the
/// derived class.
///
/// Immutable after construction and shared by pointer, so it may be read on any thread.
class KES_EXPORT ObjectError {
public:
    /// Errors in the order in which they happened; null ones are allowed.
    using List = std::vector<std::shared_ptr<ObjectError>>;

    explicit ObjectError(List inner = {});
    virtual ~ObjectError();
    ObjectError(const ObjectError&) = delete;
    ObjectError& operator=(const ObjectError&) = delete;

    /// The text in the language of the process, without the inner errors.
    virtual std::string getMessage() const = 0;

    /// What led to it, null ones included; empty for an error with no other cause.
    const List& getInner() const { return _inner; }

private:
    List _inner;
};

/// An error that is fully described by one text.
class KES_EXPORT TextError : public ObjectError {
public:
    explicit TextError(std::string text, List inner = {});

    std::string getMessage() const override;

    /// The text is UTF-8 in the language of the process, without a newline at its end.
    static std::shared_ptr<ObjectError> create(std::string text, List inner = {});

private:
    std::string _text;
};

} // namespace Kes

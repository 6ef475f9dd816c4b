#pragma once

#include <KesCommon/ObjectError.h>

#include <memory>
#include <string>
#include <vector>

namespace KesProgram {

/// An archive file could not be opened. About its content nothing is known; content that cannot be used gives
/// a `DataFormatError`. Any thread.
class KES_EXPORT FileAccessError : public Kes::ObjectError {
public:
    /// `inner`: why, in more detail; may be empty.
    explicit FileAccessError(std::vector<std::shared_ptr<Kes::ObjectError>> inner);
    ~FileAccessError() override;

    /// For users, in the language of the process, without the inner errors.
    std::string getMessage() const override;

    /// With the errors that led to it, for a program that knows them.
    static std::shared_ptr<Kes::ObjectError>
    create(const std::vector<std::shared_ptr<Kes::ObjectError>>& inner);

    /// The error without inner errors, one for the whole process: what `ArchiveManager` fails with.
    static std::shared_ptr<Kes::ObjectError> get();
};

} // namespace KesProgram

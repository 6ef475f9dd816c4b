#pragma once

#include <KesCommon/ObjectError.h>

#include <memory>
#include <string>
#include <vector>

namespace KesProgram {

/// The content of an archive file is not what the program can use. Repairing it may be offered. A file that
/// could not be opened at all gives a `FileAccessError`. Any thread.
class KES_EXPORT DataFormatError : public Kes::ObjectError {
public:
    /// `inner`: why, in more detail; may be empty.
    explicit DataFormatError(std::vector<std::shared_ptr<Kes::ObjectError>> inner);
    ~DataFormatError() override;

    /// For users, in the language of the process, without the inner errors.
    std::string getMessage() const override;

    /// With the errors that led to it, for a program that knows them.
    static std::shared_ptr<Kes::ObjectError>
    create(const std::vector<std::shared_ptr<Kes::ObjectError>>& inner);

    /// The error without inner errors, one for the whole process: what `ArchiveManager` fails with.
    static std::shared_ptr<Kes::ObjectError> get();
};

} // namespace KesProgram

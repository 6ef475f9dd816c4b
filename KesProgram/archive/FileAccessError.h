#pragma once

#include <KesCommon/ObjectError.h>

#include <memory>
#include <string>
#include <vector>

namespace KesProgram {

/// An archive file could not be opened. Any thread.
class KES_EXPORT FileAccessError : public Kes::ObjectError {
public:
    /// `inner`: why, in more detail; may be empty.
    explicit FileAccessError(std::vector<std::shared_ptr<Kes::ObjectError>> inner);
    ~FileAccessError() override;

    /// For users, in the language of the process, without the inner errors.
    std::string getMessage() const override;

    static std::shared_ptr<Kes::ObjectError>
    create(const std::vector<std::shared_ptr<Kes::ObjectError>>& inner);

    /// The error without inner errors, one for the whole process.
    static std::shared_ptr<Kes::ObjectError> get();
};

} // namespace KesProgram

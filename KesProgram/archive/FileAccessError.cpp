#include <KesProgram/archive/FileAccessError.h>

#include <KesProgram/text/Program.h>

#include <utility>

namespace KesProgram {

FileAccessError::FileAccessError(std::vector<std::shared_ptr<Kes::ObjectError>> inner)
    : ObjectError(std::move(inner))
{}

FileAccessError::~FileAccessError() = default;

std::string FileAccessError::getMessage() const
{
    return lng::Program::get("Error.fileAccess");
}

std::shared_ptr<Kes::ObjectError>
FileAccessError::create(const std::vector<std::shared_ptr<Kes::ObjectError>>& inner)
{
    return std::make_shared<FileAccessError>(inner);
}

std::shared_ptr<Kes::ObjectError> FileAccessError::get()
{
    static const std::shared_ptr<Kes::ObjectError> error = create({});
    return error;
}

} // namespace KesProgram

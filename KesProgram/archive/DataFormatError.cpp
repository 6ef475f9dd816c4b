#include <KesProgram/archive/DataFormatError.h>

#include <KesProgram/text/Program.h>

#include <utility>

namespace KesProgram {

DataFormatError::DataFormatError(std::vector<std::shared_ptr<Kes::ObjectError>> inner)
    : ObjectError(std::move(inner))
{}

DataFormatError::~DataFormatError() = default;

std::string DataFormatError::getMessage() const
{
    return lng::Program::get("Error.dataFormat");
}

std::shared_ptr<Kes::ObjectError>
DataFormatError::create(const std::vector<std::shared_ptr<Kes::ObjectError>>& inner)
{
    return std::make_shared<DataFormatError>(inner);
}

std::shared_ptr<Kes::ObjectError> DataFormatError::get()
{
    static const std::shared_ptr<Kes::ObjectError> error = create({});
    return error;
}

} // namespace KesProgram

#include <KesCommon/ObjectError.h>

#include <utility>

namespace Kes {

ObjectError::ObjectError(List inner) : _inner(std::move(inner)) {}

ObjectError::~ObjectError() = default;

TextError::TextError(std::string text, List inner) : ObjectError(std::move(inner)), _text(std::move(text)) {}

std::string TextError::getMessage() const
{
    return _text;
}

std::shared_ptr<ObjectError> TextError::create(std::string text, List inner)
{
    return std::make_shared<TextError>(std::move(text), std::move(inner));
}

} // namespace Kes

#include <KesDriver/net/detail/Answer.h>

#include <KesDriver/net/FieldText.h>

#include <charconv>

namespace KesDriver {

namespace {

bool readError(std::string_view field, Answer& answer)
{
    const auto parts = FieldText::split(field, ',', 2);
    if (!parts || parts->size() != 2)
        return false;
    const auto code = parts->front();
    const auto* last = code.data() + code.size();
    const auto [end, error] = std::from_chars(code.data(), last, answer.code);
    auto text = FieldText::unquote(parts->back());
    if (error != std::errc() || end != last || !text)
        return false;
    answer.text = *std::move(text);
    return true;
}

} // namespace

std::string writeQuestion(const std::string& commands, QuestionNumber number)
{
    // What an earlier question has left in the error queue is not the answer to this one.
    return "*CLS;" + commands + ";:SYST:ERR?;:SYST:ECHO? " + std::to_string(number) + '\n';
}

std::optional<Answer> readAnswer(std::string_view line, QuestionNumber number, std::size_t queries)
{
    constexpr std::size_t endFields = 2;
    const auto fields = FieldText::split(line, ';', queries + endFields);
    if (!fields || fields->size() < endFields || fields->back() != std::to_string(number))
        return std::nullopt;
    Answer answer;
    const auto given = fields->size() - endFields;
    if (!readError((*fields)[given], answer) || (answer.code == 0 && given != queries))
        return std::nullopt;
    if (answer.code == 0)
        answer.fields.assign(fields->begin(), fields->end() - endFields);
    return answer;
}

} // namespace KesDriver

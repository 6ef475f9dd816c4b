#pragma once

#include <KesCommon/Export.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KesDriver {

/// Numbers the questions of one connection, from 1.
using QuestionNumber = std::uint64_t;

/// What a device says to a question.
struct Answer {
    /// What the queries have given, when nothing has failed.
    std::vector<std::string> fields;
    /// Why the device has refused; 0 when it has not.
    int code = 0;
    std::string text;
};

/// The line that asks: the commands, the error that they lead to, and the number, so that no answer can be
/// taken for that to another question. With its end.
std::string writeQuestion(const std::string& commands, QuestionNumber number);

/// Nothing when the line is not the answer to this question with so many queries.
KES_EXPORT std::optional<Answer> readAnswer(std::string_view line, QuestionNumber number,
                                            std::size_t queries);

} // namespace KesDriver

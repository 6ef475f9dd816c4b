// Arguments of a program, one per line.

#include "Require.h"

#include <KesProgram/shell/CommandLine.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace {

using KesProgram::CommandLine;

/// Such arguments are answered with the help and the end of the process.
bool isHelp(const std::string& argument)
{
    if (argument.rfind("--", 0) == 0)
        return argument.rfind("--help", 0) == 0;
    return argument.rfind('-', 0) == 0 && argument.find_first_of("h?") != std::string::npos;
}

void checkPath(const std::string& path)
{
    require(path.empty() || path.front() == '/', "paths are absolute");
}

void check(const CommandLine& line)
{
    for (const auto& path : {line.file, line.save, line.report, line.results, line.screenshot})
        checkPath(path);
    require(line.speed > 0.0 && line.speed < 1e6, "the speed is one that can be run with");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    std::istringstream lines(std::string(reinterpret_cast<const char*>(bytes), size));
    std::vector<std::string> arguments{"program"};
    // The system hands over no argument with a zero inside.
    for (std::string line; std::getline(lines, line);)
        arguments.emplace_back(line.c_str());
    std::vector<char*> pointers;
    for (auto& argument : arguments) {
        if (isHelp(argument))
            return 0;
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    const auto result = CommandLine::parse(static_cast<int>(arguments.size()), pointers.data(),
                                           [] { return std::string("Summary"); });
    if (const auto* error = std::get_if<std::string>(&result))
        require(!error->empty(), "a refusal is told");
    else
        check(std::get<CommandLine>(result));
    return 0;
}

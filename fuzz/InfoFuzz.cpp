// The circumstances of a test (info.xml), beside a test and without any. What was read can be written, and
// what was written reads back as the same.

#include "Require.h"

#include <KesTestProgram/ArchiveInfo.h>

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    namespace ArchiveInfo = KesTestProgram::ArchiveInfo;
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    const std::string program = "kes-overcurrent";
    const std::string results = "<results/>";
    const auto form = ArchiveInfo::readForm(text, program);
    if (!form)
        return 0;
    for (const bool hasTest : {true, false}) {
        KesMeasure::MeasuredTest test;
        if (!ArchiveInfo::readTest(text, hasTest ? &test : nullptr, results))
            continue;
        const std::string written = ArchiveInfo::write(program, *form, hasTest ? &test : nullptr, results);
        require(ArchiveInfo::readForm(written, program) == form, "what was written is read");
        KesMeasure::MeasuredTest again;
        require(ArchiveInfo::readTest(written, hasTest ? &again : nullptr, results) && again == test,
                "what was written reads back as the same");
    }
    return 0;
}

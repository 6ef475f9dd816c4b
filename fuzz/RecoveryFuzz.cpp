// The file in which a copy of unsaved work is kept: any bytes are a copy or none, and a copy is written as a
// file that reads back as the same. Behind a checksum that holds, any description and any bytes come up.

#include "Require.h"

#include <KesProgram/recovery/RecoveryCopy.h>

#include <glibmm/checksum.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using KesProgram::RecoveryCopy;

void check(const std::string& content)
{
    const auto copy = RecoveryCopy::fromFile(content);
    if (!copy)
        return;
    const auto again = RecoveryCopy::fromFile(copy->toFile());
    require(again.has_value(), "what was read can be written and read once more");
    require(*again == *copy, "what was written reads back as the same");
}

/// As a file with a good head: the fuzzer does not guess checksums. The description ends with the line "--".
std::string withHead(const std::string& body)
{
    const auto end = body.find("\n--\n");
    const auto size = end == std::string::npos ? body.size() : end + 1;
    return "kes-recovery-copy-1 " + Glib::Checksum::compute_checksum(Glib::Checksum::CHECKSUM_SHA256, body) +
           ' ' + std::to_string(size) + '\n' + body;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    check(text);
    check(withHead(text));
    return 0;
}

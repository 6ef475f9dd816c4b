#pragma once

#include <Overcurrent/data/TestPlan.h>
#include <Overcurrent/data/TestResults.h>

#include <KesTestProgram/ArchiveHead.h>

#include <istream>
#include <memory>
#include <optional>
#include <string>

namespace Overcurrent {

/// What an archive file of the program holds, and its form as bytes; the same content gives the same bytes.
/// Any thread.
///
/// Four streams: "info.xml" (program, version of the form, circumstances of the test with a checksum),
/// "settings.xml" (test object), "plan.xml" and "test-results.xml" (empty before the first test). This is
/// form 4. Form 3 has one stage and the fault of phase A only, form 2 lacks settings as well; defaults stand
/// for them. Form 1 has no "info.xml" and is read in repair mode only, without its results: nothing shows
/// whether they come from a real device.
struct OvercurrentArchive : KesTestProgram::ArchiveHead {
    /// As the files name the program.
    static constexpr const char* program = "kes-overcurrent";

    TestPlan plan;
    std::optional<TestResults> results;
    /// What `repair` could not read.
    bool isPlanLost = false;

    /// Never null. Throws std::runtime_error, for the user, when it is more than could be read again.
    std::unique_ptr<std::istream> pack() const;

    /// Nothing unless it is a complete archive that makes sense. Results unlike their checksum are taken and
    /// say so.
    static std::optional<OvercurrentArchive> read(std::istream& stream);
    /// What can be read of a damaged archive or of form 1; nothing when it is neither. A lost plan becomes
    /// that of the results, or the default one; results without readable circumstances are of unknown origin.
    static std::optional<OvercurrentArchive> repair(std::istream& stream);
};

} // namespace Overcurrent

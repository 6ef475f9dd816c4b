#pragma once

#include <Overcurrent/data/TestPlan.h>
#include <Overcurrent/data/TestResults.h>

#include <KesTestProgram/ArchiveHead.h>

#include <istream>
#include <memory>
#include <optional>
#include <string>

namespace Overcurrent {

/// What an archive file of the program holds, and its form as bytes.
///
/// The file holds four streams: "info.xml" (program, version of the form and, when a test has been made, its
/// circumstances with a checksum), "settings.xml" (the test object's values), "plan.xml" and
/// "test-results.xml" (empty before the first test). The same content gives the same bytes. Any thread.
///
/// This is form 4. Form 3 knows one stage and the fault of phase A only: they are read as the first stage and
/// that fault. Form 2 lacks some settings and decisions as well, and of a ramp the step before the change; it
/// is read with defaults for them. Form 1 had no "info.xml", and called the setting current "pickupCurrent"
/// in "settings.xml". It is read in repair mode only, and without its results: nothing in it shows whether
/// they come from a real device.
struct OvercurrentArchive : KesTestProgram::ArchiveHead {
    /// As the files name the program.
    static constexpr const char* program = "kes-overcurrent";

    TestPlan plan;
    std::optional<TestResults> results;
    /// What `repair` could not read.
    bool isPlanLost = false;

    /// Never null. Positioned at the beginning. Throws std::runtime_error with a text for the user when it is
    /// more than could be read again.
    std::unique_ptr<std::istream> pack() const;

    /// Nothing when the stream holds anything but a complete archive that makes sense. Results that do not
    /// fit their checksum are taken, and say so.
    static std::optional<OvercurrentArchive> read(std::istream& stream);
    /// What can be read of a damaged archive or of one in the older form; nothing when the stream is neither
    /// (a signature with up to three damaged bytes counts as one). A plan that cannot be read becomes that of
    /// the results or else the default one, results that cannot be read are left out, and results whose
    /// circumstances cannot be read are of unknown origin.
    static std::optional<OvercurrentArchive> repair(std::istream& stream);
};

} // namespace Overcurrent

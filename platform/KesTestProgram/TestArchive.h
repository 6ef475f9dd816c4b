#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/TestRecord.h>
#include <KesTestProgram/ArchiveHead.h>
#include <KesTestProgram/TestKind.h>

#include <istream>
#include <memory>
#include <optional>
#include <string>

namespace KesTestProgram {

/// What an archive file of a test program holds, and its form as bytes. GUI thread.
///
/// The file holds three streams: "info.xml" (program, version of the form and, when a test has been made, its
/// circumstances with a checksum), "settings.xml" (the test object's values) and
/// "test-results.xml" (empty before the first test). The same content gives the same bytes.
struct KES_EXPORT TestArchive : ArchiveHead {
    std::optional<KesMeasure::TestRecord> record;

    /// Never null. Positioned at the beginning. Throws std::runtime_error with a text for the user when it is
    /// more than could be read again.
    std::unique_ptr<std::istream> pack(const TestKind& kind) const;

    /// Nothing when the stream holds anything but a complete archive of the program that makes sense. Results
    /// that do not fit their checksum are taken, and say so.
    static std::optional<TestArchive> read(const TestKind& kind, std::istream& stream);
    /// What can be read of a damaged archive; nothing when the stream is none (a signature with up to three
    /// damaged bytes counts as one). Results that cannot be read are left out; results whose circumstances
    /// cannot be read are of unknown origin.
    static std::optional<TestArchive> repair(const TestKind& kind, std::istream& stream);
};

} // namespace KesTestProgram

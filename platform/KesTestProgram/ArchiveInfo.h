#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/MeasuredTest.h>

#include <optional>
#include <string>

/// What a test program's archive file says of itself ("info.xml"): program, version of the form and, when a
/// test has been made, its circumstances with a checksum. Any thread.
///
/// `test` is null when there is none; `results` are its, as for the checksum.
namespace KesTestProgram::ArchiveInfo {

KES_EXPORT std::string write(const std::string& program, const std::string& form,
                             const KesMeasure::MeasuredTest* test, const std::string& results);
/// The version of the form; nothing when the text is not that of a file of the program.
KES_EXPORT std::optional<std::string> readForm(const std::string& text, const std::string& program);
/// Adds the circumstances to the test. False, with nothing changed, when the text has a test but `test` is
/// null, or has none but `test` is not.
KES_EXPORT bool readTest(const std::string& text, KesMeasure::MeasuredTest* test, const std::string& results);

} // namespace KesTestProgram::ArchiveInfo

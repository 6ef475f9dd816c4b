#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesMeasure/ResultTable.h>
#include <KesMeasure/TestCircumstances.h>
#include <KesMeasure/TestState.h>

#include <optional>
#include <string>
#include <vector>

namespace KesMeasure {

/// A test as files of results give it to other programs. A value.
struct TestSummary {
    /// A remark on the relay or the test, such as {"place", "Substation North"}.
    struct Remark {
        /// The same in all languages.
        std::string id;
        std::string text;
    };

    /// As the program's files name it, such as "kes-voltage-frequency".
    std::string program;
    Verdict verdict = Verdict::None;
    /// In one line for people.
    std::string outcome;
    /// Nothing: no test yet.
    std::optional<TestCircumstances> circumstances;
    /// Empty when the results' file has none, or another one than theirs.
    std::string checksum;
    std::vector<Remark> nameplate;
    ResultTable table;
};

/// Files with the results of a test for other programs: a table (CSV), everything (JSON), or a report of test
/// cases that job engines understand (JUnit's XML).
///
/// Names and numbers are the same in all languages: decimal points, no grouping, nothing in the place of what
/// was not measured. Words for people are in the language of the process. All files are UTF-8; what is no
/// valid text in a value is replaced. The same summary gives the same bytes. Any thread.
namespace ResultFile {

enum class Kind { Csv, Json, JUnit };

/// By the ending of the name, ".csv", ".json" or ".xml" in small or capital letters.
KES_EXPORT std::optional<Kind> findKind(const std::string& path);
/// Whether the name has the ending of a kind; the failure names those endings.
KES_EXPORT Kes::Result check(const std::string& path);

KES_EXPORT std::string toText(Kind kind, const TestSummary& summary);

/// Writes the kind of file that the ending of the name says: the whole file or nothing.
KES_EXPORT Kes::Result write(const std::string& path, const TestSummary& summary);

} // namespace ResultFile

} // namespace KesMeasure

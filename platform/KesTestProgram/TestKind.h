#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/ITestDefinition.h>
#include <KesTree/Node.h>

#include <functional>
#include <memory>
#include <string>

namespace KesTestProgram {

/// What makes a test program different from the others: names, its test object and its test. A value; made
/// once the language of the process has been chosen.
struct KES_EXPORT TestKind {
    using Test = std::shared_ptr<const KesMeasure::ITestDefinition>;
    using MakeTestObject = std::function<std::unique_ptr<KesTree::Node>()>;
    using MakeTest = std::function<Test(const KesTree::Node& testObject)>;

    /// As titles and help files name the program.
    std::string name;
    /// As its files name it, such as "kes-voltage-frequency".
    std::string program;
    /// The version of what its files hold.
    std::string form = "1";
    /// Of its files, without dot.
    std::string extension;
    /// Below the title of its reports.
    std::string reportTitle;
    /// The tree of the test object with the values of a new archive; its plan is part of it.
    MakeTestObject makeTestObject;
    /// The test with the tree's present values; never null.
    MakeTest makeTest;

    /// The test with the values of a written tree; null when they are not those of such a tree or make no
    /// test. GUI thread.
    Test makeTestOf(const std::string& settings) const;
};

} // namespace KesTestProgram

#pragma once

namespace KesProgram {

/// The result of the last test run of a program. A value.
enum class RunVerdict {
    /// No run has reached the output yet, or one is still under way.
    None,
    /// Everything was measured and lies within its tolerance.
    Passed,
    /// Something was not measured or lies outside its tolerance.
    Failed,
    /// The user, or the closing of the program, ended the run early.
    Stopped,
    /// A fault of a device or of the program ended the run.
    Fault
};

} // namespace KesProgram

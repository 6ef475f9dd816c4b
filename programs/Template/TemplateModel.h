#pragma once

#include <KesProgram/model/ProgramModel.h>

#include <condition_variable>
#include <mutex>

/// The model of the smallest test program: its test puts out nothing and lasts until it is stopped. Another
/// program begins with a copy of this folder. Threads as the base class says.
class TemplateModel : public KesProgram::ProgramModel {
public:
    /// Nothing has to be made ready for this test: it can be started at once.
    TemplateModel() { _setCanProgramStart(true); }

    std::string getProgramName() override { return "Template"; }
    /// No extension: this program keeps no archive files.
    std::string getExtension() override { return {}; }
    /// Without reports there is no Report button.
    bool hasReport() override { return false; }
    KesProgram::RunVerdict getRunVerdict() override { return _verdict; }

protected:
    /// Start thread, with the hardware ready. The test belongs here; it ends with exactly one `_finish()`.
    void _onStart() override;
    /// Whichever thread stops the test: it wakes the start thread and returns at once.
    void _onStop() override;

private:
    std::mutex _mutex;
    std::condition_variable _stopped;
    /// Written on the start thread, read on the GUI thread.
    std::atomic<KesProgram::RunVerdict> _verdict{KesProgram::RunVerdict::None};
};

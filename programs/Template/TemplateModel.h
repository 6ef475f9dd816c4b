#pragma once

#include <KesProgram/model/ProgramModel.h>

#include <condition_variable>
#include <mutex>

/// The model of the smallest test program: its test puts out nothing and lasts until it is stopped.
class TemplateModel : public KesProgram::ProgramModel {
public:
    TemplateModel() { _setCanProgramStart(true); }

    std::string getProgramName() override { return "Template"; }
    /// No extension: this program keeps no archive files.
    std::string getExtension() override { return {}; }
    bool hasReport() override { return false; }
    KesProgram::RunVerdict getRunVerdict() override { return _verdict; }

protected:
    void _onStart() override;
    void _onStop() override;

private:
    std::mutex _mutex;
    std::condition_variable _stopped;
    std::atomic<KesProgram::RunVerdict> _verdict{KesProgram::RunVerdict::None};
};

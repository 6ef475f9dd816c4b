#pragma once

#include <KesTestProgram/TestModel.h>

namespace VoltageFrequency {

/// The model of the program. Threads as its base class says.
class VoltageFrequencyModel : public KesTestProgram::TestModel {
public:
    VoltageFrequencyModel();

    static KesTestProgram::TestKind kind();
};

} // namespace VoltageFrequency

#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesDriver/simulated/ISimulatedTestObject.h>
#include <KesMeasure/Measurement.h>
#include <KesMeasure/TextLine.h>

#include <memory>
#include <vector>

namespace KesMeasure {

/// A test with the settings that it had at one moment: all that a test program adds to the libraries. Never
/// changes once made. Any thread.
class KES_EXPORT ITestDefinition {
public:
    virtual ~ITestDefinition();

    /// The settings that play a part, as people read them.
    virtual std::vector<TextLine> describe() const = 0;
    /// Whether the settings make a test; the failure says why not.
    virtual Kes::Result check() const = 0;
    /// What is measured, in order; of settings that make no test, something that makes no sense.
    virtual MeasurementPlan createPlan() const = 0;
    /// How many times each is made, 1 to `SinglesXml::mostRepetitions`.
    virtual unsigned getRepetitions() const { return 1; }
    /// The test object for the simulated bench: at rest, set as the settings say.
    virtual std::shared_ptr<KesDriver::ISimulatedTestObject> makeTestObject() const = 0;
};

} // namespace KesMeasure

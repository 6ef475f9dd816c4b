#include <KesDriver/simulated/ISimulatedTestObject.h>

namespace KesDriver {

ISimulatedTestObject::~ISimulatedTestObject() = default;

} // namespace KesDriver

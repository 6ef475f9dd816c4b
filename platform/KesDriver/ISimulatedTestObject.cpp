#include <KesDriver/ISimulatedTestObject.h>

namespace KesDriver {

ISimulatedTestObject::~ISimulatedTestObject() = default;

} // namespace KesDriver

#include <KesMeasure/ITestDefinition.h>

namespace KesMeasure {

ITestDefinition::~ITestDefinition() = default;

} // namespace KesMeasure

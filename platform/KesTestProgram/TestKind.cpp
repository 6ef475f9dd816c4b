#include <KesTestProgram/TestKind.h>

namespace KesTestProgram {

TestKind::Test TestKind::makeTestOf(const std::string& settings) const
{
    const auto tree = makeTestObject();
    if (!tree->deserialize(settings))
        return nullptr;
    auto test = makeTest(*tree);
    return test->check() ? test : nullptr;
}

} // namespace KesTestProgram

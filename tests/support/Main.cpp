#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include <unistd.h>

namespace {

/// Ends a test that waits for ever while its name can still be told, and its threads can be seen in the core.
class TestLimit : public testing::EmptyTestEventListener {
public:
    TestLimit() { std::signal(SIGALRM, &TestLimit::_abort); }

private:
    static constexpr unsigned longestTest = 400; // seconds

    void OnTestStart(const testing::TestInfo& test) override
    {
        _text = std::string("\n") + test.test_suite_name() + '.' + test.name() + " does not end.\n";
        alarm(longestTest);
    }
    void OnTestEnd(const testing::TestInfo&) override { alarm(0); }

    static void _abort(int)
    {
        (void)!write(STDERR_FILENO, _text.data(), _text.size());
        std::abort();
    }

    static inline std::string _text;
};

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<TestLimit>().release());
    return RUN_ALL_TESTS();
}

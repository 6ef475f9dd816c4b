#include <KesDriver/scpi/InstrumentStatus.h>

#include <gtest/gtest.h>

using namespace KesDriver::Scpi;

TEST(ErrorQueueTest, TellsTheOldestFirstAndSaysWhenOthersAreLost)
{
    ErrorQueue queue;
    EXPECT_EQ(queue.take().toAnswer(), "0,\"No error\"");
    for (std::size_t i = 0; i < ErrorQueue::capacity + 5; ++i)
        queue.add(Error(ErrorCode::OutOfRange, std::to_string(i) + " \"A\"\n"));
    EXPECT_EQ(queue.getCount(), 32U);
    EXPECT_EQ(queue.take().toAnswer(), "-222,\"Data out of range;0 \"\"A\"\" \"");
    for (std::size_t i = 0; i < 30; ++i)
        queue.take();
    EXPECT_EQ(queue.take().toAnswer(), "-350,\"Queue overflow\"");
    EXPECT_EQ(queue.getCount(), 0U);
    // A text ends between two characters.
    EXPECT_EQ(std::string(Error(ErrorCode{101}, "x" + std::string(300, 'a') + "\xD0\xB0").what()).size(),
              255U);
    const std::string russian = Error(ErrorCode{101}, std::string(241, 'a') + "\xD0\xB0").what();
    EXPECT_EQ(russian, "Device error;" + std::string(241, 'a'));
}

TEST(StatusRegisterTest, LatchesTransitionsThatItsFiltersLetThrough)
{
    StatusRegister status;
    status.setEnable(0b0110);
    status.setCondition(0b0011);
    EXPECT_TRUE(status.getSummary());
    EXPECT_EQ(status.takeEvents(), 0b0011);
    EXPECT_FALSE(status.getSummary());
    status.setCondition(0b0001);
    EXPECT_EQ(status.takeEvents(), 0);
    status.setPositive(0);
    status.setNegative(0b0001);
    status.setCondition(0b0100);
    EXPECT_EQ(status.takeEvents(), 0b0001);
    EXPECT_EQ(status.getCondition(), 0b0100);
    status.setEnable(0xFFFF);
    EXPECT_EQ(status.getEnable(), 0x7FFF);
    status.preset();
    EXPECT_EQ(status.getEnable(), 0);
    EXPECT_EQ(status.getPositive(), 0x7FFF);
    EXPECT_EQ(status.getNegative(), 0);
}

TEST(InstrumentStatusTest, SumsUpInTheStatusByte)
{
    InstrumentStatus status;
    EXPECT_EQ(status.takeStandardEvents(), InstrumentStatus::PowerOn);
    const std::pair<int, int> classes[] = {{-113, 32}, {-222, 16}, {-350, 8}, {-440, 4}, {101, 8}, {-363, 8}};
    for (const auto& [code, bit] : classes) {
        status.addError(Error(static_cast<ErrorCode>(code)));
        EXPECT_EQ(status.takeStandardEvents(), bit) << code;
    }
    EXPECT_EQ(status.getStatusByte(false), 0x04);
    status.clear();
    EXPECT_EQ(status.getStatusByte(true), 0x10);
    status.setStandardEnable(InstrumentStatus::OperationComplete);
    status.note(InstrumentStatus::OperationComplete);
    EXPECT_EQ(status.getStatusByte(false), 0x20);
    status.setServiceEnable(0xFF);
    EXPECT_EQ(status.getServiceEnable(), 0xBF);
    EXPECT_EQ(status.getStatusByte(false), 0x60);
    status.operation.setEnable(8);
    status.operation.setCondition(8);
    status.questionable.setEnable(1);
    status.questionable.setCondition(1);
    EXPECT_EQ(status.getStatusByte(false), 0xE8);
    status.clear();
    EXPECT_EQ(status.getStatusByte(false), 0);
    EXPECT_EQ(status.operation.getCondition(), 8);
}

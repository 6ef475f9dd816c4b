#pragma once

#include <KesDriver/scpi/Arguments.h>
#include <KesDriver/scpi/CommandTable.h>
#include <KesDriver/simulated/serving/detail/Dialogue.h>

#include <cstddef>
#include <string>
#include <vector>

/// What a device does for each header of the protocol. The parameters of a command are read before it does anything.
namespace KesDriver::Commands {

/// One unit that is carried out.
struct Call {
    Dialogue& dialogue;
    Scpi::Arguments& arguments;
    std::vector<unsigned> suffixes;
    /// Of a query.
    std::string answer;
};

struct Command {
    void (*run)(Call& call);
    std::size_t mostParameters = 0;
};

using Table = Scpi::CommandTable<Command>;

/// All commands. Any thread.
const Table& getTable();

/// The parts of the table.
void addCommon(Table& table);
void addSystem(Table& table);
void addControl(Table& table);
void addOutputs(Table& table);
void addSequences(Table& table);
void addEvents(Table& table);
void addStatus(Table& table);
void addSimulation(Table& table);

/// A whole number up to this one can be a parameter.
inline constexpr long long greatest = 1LL << 53U;

/// "1" and "0".
inline const char* flag(bool value)
{
    return value ? "1" : "0";
}

/// The 15 numbers of an output state, with their units.
OutputState readOutputs(Scpi::Arguments& arguments);

} // namespace KesDriver::Commands

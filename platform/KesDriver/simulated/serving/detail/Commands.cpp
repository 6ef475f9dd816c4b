#include <KesDriver/simulated/serving/detail/Commands.h>

#include <memory>

namespace KesDriver::Commands {

const Table& getTable()
{
    // Never destroyed: the sessions of the embedded devices end with the last static objects of the process.
    static const auto& table = *[] {
        auto made = std::make_unique<Table>();
        for (const auto add : {addCommon, addSystem, addControl, addOutputs, addSequences, addEvents,
                               addStatus, addSimulation})
            add(*made);
        return made.release();
    }();
    return table;
}

} // namespace KesDriver::Commands

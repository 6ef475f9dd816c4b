#include <KesDriver/simulated/serving/detail/Commands.h>

namespace KesDriver::Commands {

const Table& getTable()
{
    static const auto table = [] {
        Table made;
        for (const auto add :
             {addCommon, addSystem, addControl, addOutputs, addSequences, addEvents, addStatus, addSimulation})
            add(made);
        return made;
    }();
    return table;
}

} // namespace KesDriver::Commands

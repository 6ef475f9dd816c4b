#pragma once

#include <KesDriver/scpi/HeaderTree.h>
#include <KesDriver/scpi/Unit.h>

#include <string_view>
#include <utility>
#include <vector>

namespace KesDriver::Scpi {

/// Which handler carries out a header; patterns as in `HeaderTree`. Once filled, any thread.
template <typename Handler>
class CommandTable {
public:
    /// What a header stands for.
    struct Found {
        const Handler& handler;
        /// Of each node with `<n>`, from the left.
        std::vector<unsigned> suffixes;
    };

    /// Throws std::invalid_argument for a pattern that says what another one says already.
    void add(std::string_view pattern, Handler handler)
    {
        _tree.add(pattern, _handlers.size());
        _handlers.push_back(std::move(handler));
    }
    /// Throws `Error`.
    Found find(const Unit& unit) const
    {
        auto match = _tree.find(unit.header, unit.isQuery);
        return {_handlers[match.number], std::move(match.suffixes)};
    }

private:
    HeaderTree _tree;
    std::vector<Handler> _handlers;
};

} // namespace KesDriver::Scpi

#pragma once

#include <KesDriver/scpi/HeaderTree.h>
#include <KesDriver/scpi/Unit.h>

#include <string_view>
#include <utility>
#include <vector>

namespace KesDriver::Scpi {

/// Which handler carries out a header; patterns as in `HeaderTree`. A handler is whatever the user of the
/// table takes for one, such as a pointer to a function: the table only keeps and finds it. Not
/// synchronised; once filled, any thread.
template <typename Handler>
class CommandTable {
public:
    /// What a header stands for. The handler belongs to the table, and is there until the next `add`.
    struct Found {
        const Handler& handler;
        /// Of each node with `<n>`, from the left; 1 where none is given.
        std::vector<unsigned> suffixes;
    };

    /// A pattern with a question mark is a query; a command and its query are two patterns. Throws
    /// std::invalid_argument for a pattern that says what another one says already.
    void add(std::string_view pattern, Handler handler)
    {
        _tree.add(pattern, _handlers.size());
        _handlers.push_back(std::move(handler));
    }
    /// Throws `Error`: -113 for a header that no pattern has, -114 for a numeric suffix where none belongs,
    /// or one that is too large.
    Found find(const Unit& unit) const
    {
        auto match = _tree.find(unit.header, unit.isQuery);
        return {_handlers[match.number], std::move(match.suffixes)};
    }

private:
    HeaderTree _tree;
    /// By the numbers that the tree has for them.
    std::vector<Handler> _handlers;
};

} // namespace KesDriver::Scpi

#pragma once

#include <KesCommon/Export.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace KesDriver::Scpi {

/// Finds the number of a header among patterns such as "SYSTem:ERRor[:NEXT]?",
/// "[SOURce:]CURRent<n>[:LEVel]" and "*IDN?": the capitals are the short form, what stands in brackets may
/// be left out, `<n>` is a numeric suffix, and a question mark makes it a query. Not synchronised; once
/// filled, any thread.
class KES_EXPORT HeaderTree {
public:
    /// Which pattern a header matches.
    struct Match {
        /// As given to `add`.
        std::size_t number = 0;
        /// Of each node with `<n>`, from the left; 1 where none is given.
        std::vector<unsigned> suffixes;
    };

    HeaderTree();
    ~HeaderTree();
    HeaderTree(HeaderTree&&) noexcept;

    /// Throws std::invalid_argument for a pattern that says what another one says already.
    void add(std::string_view pattern, std::size_t number);

    /// The header as in `Unit`. Throws `Error`.
    Match find(std::string_view header, bool isQuery) const;

private:
    struct Node;
    void _addPath(std::string_view path, bool isQuery, std::size_t number);

    std::unique_ptr<Node> _root;
};

} // namespace KesDriver::Scpi

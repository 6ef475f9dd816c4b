#pragma once

#include <cstddef>
#include <string>

namespace KesTest {

/// The table of docs/faults.md. One thread.
class FaultsPage {
public:
    FaultsPage();

    /// Whether it takes what comes out: KES_WRITE_DOCUMENTS is set.
    bool isBeingWritten() const;
    /// What it says, by row and column, counted from 0 without the heads; empty when there is no such cell.
    std::string getCell(std::size_t row, std::size_t column) const;
    /// Compares it with what has come out, or writes it.
    void expect(const std::string& table);

private:
    std::string _getTable() const;

    std::string _text;
    std::size_t _begin = 0;
    std::size_t _end = 0;
};

} // namespace KesTest

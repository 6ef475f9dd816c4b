#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>

#include <string>
#include <vector>

/// An operate-time characteristic that is given as a table. As a text it is "2:10; 5:3.5; 10:1.2": at 2 times
/// Is 10 s, and so on. Any thread.
namespace KesTree::CurveTable {

/// One row of the table. A value.
struct Pair {
    /// Of Is; from 1 to 100.
    double multiple = 0.0;
    /// From 0.001 to 3600.
    double seconds = 0.0;

    bool operator==(const Pair&) const = default;
};

/// Two pairs or more, at most 50. Multiples rise from pair to pair, times fall or stay.
using Pairs = std::vector<Pair>;

/// Reads what the functions below write, and what users type: a decimal point or comma, blanks anywhere
/// around numbers. A refusal names the pair; the pairs stay as they are then.
KES_EXPORT Kes::Result read(const std::string& text, Pairs& pairs);

/// With decimal points, for files.
KES_EXPORT std::string write(const Pairs& pairs);
/// For the user: with decimal commas in Russian.
KES_EXPORT std::string show(const Pairs& pairs);

} // namespace KesTree::CurveTable

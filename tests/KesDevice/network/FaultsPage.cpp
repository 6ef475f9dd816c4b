#include "FaultsPage.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace KesTest {

namespace {

constexpr const char* path = KES_DOCUMENTS "/faults.md";

/// The part with this number, counted from 0; empty when there are not so many.
std::string getPart(const std::string& text, char separator, std::size_t number)
{
    std::istringstream parts(text);
    std::string part;
    for (std::size_t i = 0; i <= number; ++i)
        if (!std::getline(parts, part, separator))
            return {};
    return part;
}

} // namespace

FaultsPage::FaultsPage()
{
    const std::string mark = "<!-- network faults -->\n";
    std::ifstream in(path);
    _text.assign(std::istreambuf_iterator<char>(in), {});
    _begin = _text.find(mark) + mark.size();
    _end = _text.find("<!-- end -->", _begin);
}

bool FaultsPage::isBeingWritten() const
{
    return std::getenv("KES_WRITE_DOCUMENTS") != nullptr;
}

std::string FaultsPage::getCell(std::size_t row, std::size_t column) const
{
    // Below two lines of heads, behind the name.
    const auto cell = getPart(getPart(_getTable(), '\n', row + 2), '|', column + 2);
    return cell.size() < 2 ? std::string() : cell.substr(1, cell.size() - 2);
}

void FaultsPage::expect(const std::string& table)
{
    ASSERT_NE(_end, std::string::npos);
    if (isBeingWritten())
        std::ofstream(path) << _text.replace(_begin, _end - _begin, table);
    else
        EXPECT_EQ(_getTable(), table);
}

std::string FaultsPage::_getTable() const
{
    return _end == std::string::npos ? std::string() : _text.substr(_begin, _end - _begin);
}

} // namespace KesTest

// Tables of text with aligned columns.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace verdanth {

class TextTable {
public:
    /// Column titles. One that begins with '>' names a column of numbers, which is set flush right.
    explicit TextTable(std::vector<std::string> columnTitles);

    /// Cells missing at the end are empty.
    void addRow(std::vector<std::string> cells);
    bool empty() const { return rows.empty(); }
    /// Columns without any content are left out; a table without rows prints nothing.
    void print(std::ostream& out, std::string_view indent = "  ") const;

private:
    std::vector<std::string> titles;
    std::vector<bool> flushRight;
    std::vector<std::vector<std::string>> rows;
};

/// How many columns a UTF-8 text takes: two for each character of the Chinese, Japanese and Korean scripts, else one.
size_t TextWidth(std::string_view text);

/// "1,234,567"
std::string GroupedNumber(uint64_t number);

/// "material 7"
std::string Numbered(std::string_view word, int64_t number);

/// "12.3 MB"
std::string ByteCount(uint64_t bytes);

/// With so many digits behind the point, whatever the locale.
std::string FixedNumber(double number, int digits);

} // namespace verdanth

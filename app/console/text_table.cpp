#include "console/text_table.h"

#include "console/console.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace verdanth {

TextTable::TextTable(std::vector<std::string> columnTitles) : titles(std::move(columnTitles))
{
    for (std::string& title : titles) {
        flushRight.push_back(title.starts_with('>'));
        if (flushRight.back()) title.erase(0, 1);
    }
}

void TextTable::addRow(std::vector<std::string> cells)
{
    cells.resize(titles.size());
    for (std::string& cell : cells) cell = OneLine(cell);
    rows.push_back(std::move(cells));
}

void TextTable::print(std::ostream& out, std::string_view indent) const
{
    if (rows.empty()) return;
    std::vector<size_t> widths(titles.size());
    for (size_t column = 0; column < titles.size(); ++column) {
        for (const auto& row : rows) widths[column] = std::max(widths[column], TextWidth(row[column]));
        if (widths[column] > 0) widths[column] = std::max(widths[column], TextWidth(titles[column]));
    }

    const auto printRow = [&](const std::vector<std::string>& cells) {
        std::string line;
        for (size_t column = 0; column < cells.size(); ++column) {
            if (widths[column] == 0) continue;
            const std::string padding(widths[column] - TextWidth(cells[column]), ' ');
            line += line.empty() ? std::string(indent) : "  ";
            line += flushRight[column] ? padding + cells[column] : cells[column] + padding;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    };
    printRow(titles);
    for (const auto& row : rows) printRow(row);
}

size_t TextWidth(std::string_view text)
{
    const auto beginsCharacter = [](unsigned char c) { return (c & 0xC0) != 0x80; };
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), beginsCharacter));
}

std::string GroupedNumber(uint64_t number)
{
    std::string text = std::to_string(number);
    for (size_t place = text.size(); place > 3; place -= 3) text.insert(place - 3, ",");
    return text;
}

std::string Numbered(std::string_view word, int64_t number)
{
    std::string text(word);
    text += ' ';
    text += std::to_string(number);
    return text;
}

std::string ByteCount(uint64_t bytes)
{
    constexpr const char* kUnits[] = {"kB", "MB", "GB", "TB"};
    if (bytes < 1000) return std::to_string(bytes) + " B";

    double amount = static_cast<double>(bytes) / 1000;
    size_t unit = 0;
    for (; amount >= 999.95 && unit + 1 < std::size(kUnits); ++unit) amount /= 1000;
    return FixedNumber(amount, 1) + " " + kUnits[unit];
}

std::string FixedNumber(double number, int digits)
{
    char text[400]; // the largest double has 309 digits before the point
    const auto end = std::to_chars(std::begin(text), std::end(text), number, std::chars_format::fixed, digits);
    return end.ec == std::errc() ? std::string(std::begin(text), end.ptr) : "?";
}

} // namespace verdanth

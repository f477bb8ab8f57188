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
    size_t width = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = [&](size_t k) -> uint32_t { return k < text.size() ? static_cast<uint8_t>(text[k]) : 0; };
        if ((byte(i) & 0xC0) == 0x80) continue; // inside a character
        // Wide characters have three bytes or more.
        const uint32_t code = (byte(i) & 0x0F) << 12 | (byte(i + 1) & 0x3F) << 6 | (byte(i + 2) & 0x3F);
        const bool wide =
            (byte(i) & 0xF0) == 0xE0 && ((code >= 0x1100 && code <= 0x115F) || (code >= 0x2E80 && code <= 0xA4CF) ||
                                         (code >= 0xAC00 && code <= 0xD7A3) || (code >= 0xF900 && code <= 0xFAFF) ||
                                         (code >= 0xFF00 && code <= 0xFF60));
        width += wide ? 2 : 1;
    }
    return width;
}

std::string GroupedNumber(uint64_t number)
{
    const std::string digits = std::to_string(number);
    std::string text;
    for (size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) text += ',';
        text += digits[i];
    }
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

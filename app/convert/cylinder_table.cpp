#include "convert/cylinder_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <set>
#include <string_view>

namespace verdanth {
namespace {

constexpr double kFarthest = 1e9;   // metres from the origin, more than the earth has
constexpr double kLargestId = 1e15; // below that doubles hold whole numbers exactly

enum Column {
    Radius,
    Length,
    StartX,
    StartY,
    StartZ,
    AxisX,
    AxisY,
    AxisZ,
    EndX,
    EndY,
    EndZ,
    Id,
    Parent,
    Extension,
    Branch,
    ColumnCount
};

struct ColumnName {
    std::string_view name; // letters and digits alone, in lower case
    Column column;
    size_t width = 1; // how many columns in a row the name stands for
};

// Of several that fit one column the first in this list counts.
constexpr ColumnName kColumnNames[] = {
    {"radius", Radius},
    {"radiuscyl", Radius},
    {"cylinderradius", Radius},
    {"length", Length},
    {"lengthcyl", Length},
    {"startx", StartX},
    {"xstart", StartX},
    {"starty", StartY},
    {"ystart", StartY},
    {"startz", StartZ},
    {"zstart", StartZ},
    {"startpoint", StartX, 3},
    {"start", StartX, 3},
    {"endx", EndX},
    {"xend", EndX},
    {"endy", EndY},
    {"yend", EndY},
    {"endz", EndZ},
    {"zend", EndZ},
    {"endpoint", EndX, 3},
    {"axisx", AxisX},
    {"axisy", AxisY},
    {"axisz", AxisZ},
    {"axisdirection", AxisX, 3},
    {"axis", AxisX, 3},
    {"cylid", Id},
    {"cylinderid", Id},
    {"id", Id},
    {"parentid", Parent},
    {"parentcylid", Parent},
    {"parent", Parent},
    {"extensionid", Extension},
    {"extension", Extension},
    {"axisid", Branch},
    {"branchid", Branch},
    {"branch", Branch},
};

// Where each column stands in a row.
struct Layout {
    char separator = ' '; // a blank for any white space
    std::array<size_t, ColumnCount> places;

    Layout() { places.fill(kAbsent); }
    bool has(Column column) const { return places[column] != kAbsent; }
    bool hasAll(Column first) const { return has(first) && has(Column(first + 1)) && has(Column(first + 2)); }

    static constexpr size_t kAbsent = ~size_t{0};
};

// TreeQSM: radius, length, start, axis, parent, extension, added, unmodified radius, branch.
constexpr std::array<size_t, ColumnCount> kTreeQsmPlaces = {
    0, 1, 2, 3, 4, 5, 6, 7, Layout::kAbsent, Layout::kAbsent, Layout::kAbsent, Layout::kAbsent, 8, 9, 12};
constexpr size_t kTreeQsmFewest = 10;

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && (isBlank(text.front()) || text.front() == '"')) text.remove_prefix(1);
    while (!text.empty() && (isBlank(text.back()) || text.back() == '"')) text.remove_suffix(1);
    return text;
}

char separatorOf(std::string_view line)
{
    for (const char separator : {';', ',', '\t'})
        if (line.find(separator) != line.npos) return separator;
    return ' ';
}

void split(std::string_view line, char separator, std::vector<std::string_view>& cells)
{
    cells.clear();
    while (!line.empty()) {
        const auto end = std::find_if(line.begin(), line.end(),
                                      [&](char c) { return separator == ' ' ? isBlank(c) : c == separator; });
        const auto length = static_cast<size_t>(end - line.begin());
        if (separator != ' ' || length > 0) cells.push_back(trimmed(line.substr(0, length)));
        line.remove_prefix(std::min(length + 1, line.size()));
    }
}

// Without what stands in round brackets, which is a unit.
std::string withoutBrackets(std::string_view text)
{
    std::string kept;
    bool inside = false;
    for (const char c : text) {
        inside = (inside || c == '(') && c != ')';
        if (!inside && c != ')') kept += c;
    }
    return kept;
}

std::string foldedName(std::string_view text)
{
    std::string folded;
    for (const char c : text) {
        if (c >= 'A' && c <= 'Z') folded += static_cast<char>(c - 'A' + 'a');
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) folded += c;
    }
    return folded;
}

bool isNumberMissing(std::string_view cell)
{
    const std::string name = foldedName(cell);
    return name.empty() || name == "na" || name == "nan";
}

bool isHeadLine(const std::vector<std::string_view>& cells)
{
    return std::any_of(cells.begin(), cells.end(), [](std::string_view cell) {
        const std::string name = foldedName(cell);
        return !isNumberMissing(cell) && name != "inf" && name[0] >= 'a' && name[0] <= 'z';
    });
}

void findColumns(const std::vector<std::string_view>& names, Layout& layout)
{
    std::array<size_t, ColumnCount> ranks;
    ranks.fill(std::size(kColumnNames));
    size_t place = 0;
    for (const std::string_view name : names) {
        const auto known = std::ranges::find(kColumnNames, foldedName(name), &ColumnName::name);
        if (known == std::end(kColumnNames)) {
            ++place;
            continue;
        }
        const auto rank = static_cast<size_t>(known - std::begin(kColumnNames));
        if (rank < ranks[known->column]) {
            for (size_t i = 0; i < known->width; ++i) layout.places[known->column + i] = place + i;
            ranks[known->column] = rank;
        }
        place += known->width;
    }
}

std::string missingColumns(const Layout& layout)
{
    std::string missing;
    const auto need = [&](bool present, const char* what) {
        if (!present) missing += (missing.empty() ? "" : ", ") + std::string(what);
    };
    need(layout.has(Radius), "radius");
    need(layout.hasAll(StartX), "start");
    need(layout.hasAll(EndX) || (layout.hasAll(AxisX) && layout.has(Length)), "end (or axis and length)");
    need(layout.has(Parent), "parent");
    return missing;
}

// Not a number where the cell holds none.
double numberOf(std::string_view cell, char separator)
{
    std::string text(cell.substr(0, 64));
    if (separator == ';') std::replace(text.begin(), text.end(), ',', '.'); // of countries with decimal commas
    const size_t plus = text.starts_with('+');
    double number = 0;
    const auto parsed = std::from_chars(text.data() + plus, text.data() + text.size(), number);
    if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size() || cell.size() > 64) return std::nan("");
    return number;
}

class RowReader {
public:
    RowReader(const Layout& tableLayout, const std::vector<std::string_view>& rowCells)
        : layout(tableLayout),
          cells(rowCells)
    {
    }

    /// The reason why the row cannot be used; null if it can.
    const char* read(Cylinder& cylinder, int64_t rowNumber) const
    {
        if (!readVector(StartX, cylinder.start)) return "the start is no usable position";
        cylinder.radius = number(Radius);
        if (!(cylinder.radius > 0 && cylinder.radius < kFarthest)) return "the radius is no number above 0";
        if (const char* reason = readEnd(cylinder)) return reason;
        if (!readId(Id, cylinder.id) || !readId(Parent, cylinder.parent)) return "an ID is no whole number";
        if (!layout.has(Id)) cylinder.id = rowNumber;
        if (cylinder.id < 0) return "the ID is missing or negative";
        if (!readId(Extension, cylinder.extension)) cylinder.extension = kNoId;
        if (!readId(Branch, cylinder.branch)) cylinder.branch = kNoId;
        return nullptr;
    }

private:
    std::string_view cell(int column) const
    {
        const size_t place = layout.places[static_cast<size_t>(column)];
        return place < cells.size() ? cells[place] : std::string_view();
    }

    double number(int column) const { return numberOf(cell(column), layout.separator); }

    bool readVector(int first, vdt::Vector3& value) const
    {
        value = {number(first), number(first + 1), number(first + 2)};
        return std::fabs(value.x) < kFarthest && std::fabs(value.y) < kFarthest && std::fabs(value.z) < kFarthest;
    }

    const char* readEnd(Cylinder& cylinder) const
    {
        if (layout.hasAll(EndX)) return readVector(EndX, cylinder.end) ? nullptr : "the end is no usable position";
        vdt::Vector3 axis;
        if (!readVector(AxisX, axis) || !vdt::Normalize(axis)) return "the axis is no usable direction";
        const double length = number(Length);
        if (!(length >= 0 && length < kFarthest)) return "the length is no usable number";
        cylinder.end = cylinder.start + axis * length;
        return nullptr;
    }

    // False for what is neither a whole number nor nothing.
    bool readId(Column column, int64_t& id) const
    {
        id = kNoId;
        if (isNumberMissing(cell(column))) return true;
        const double value = number(column);
        if (!(std::fabs(value) < kLargestId) || value != std::floor(value)) return false;
        id = std::max(static_cast<int64_t>(value), kNoId);
        return true;
    }

    const Layout& layout;
    const std::vector<std::string_view>& cells;
};

// Reads lines, counts them and passes over those without content.
bool nextLine(std::istream& stream, std::string& line, uint64_t& lineNumber)
{
    while (std::getline(stream, line)) {
        ++lineNumber;
        if (lineNumber == 1 && line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3); // a mark of UTF-8
        if (!trimmed(line).empty()) return true;
    }
    return false;
}

// False, with the error told, if the first line shows no table of cylinders.
bool readLayout(const std::string& line, uint64_t lineNumber, Layout& layout, bool& isHead,
                vdt::MessageHandler& messages)
{
    const std::string names = withoutBrackets(line);
    std::vector<std::string_view> cells;
    layout.separator = separatorOf(line);
    split(names, layout.separator, cells);
    isHead = isHeadLine(cells);
    const std::string place = "line " + std::to_string(lineNumber) + ": ";
    if (isHead) {
        findColumns(cells, layout);
        const std::string missing = missingColumns(layout);
        if (!missing.empty()) messages.error(place + "no table of cylinders: no column for " + missing);
        return missing.empty();
    }
    layout.places = kTreeQsmPlaces;
    if (cells.size() >= kTreeQsmFewest) return true;
    messages.error(place + "no table of cylinders: neither names of columns nor at least " +
                   std::to_string(kTreeQsmFewest) + " numbers");
    return false;
}

} // namespace

void LeftOutRows::add(const std::string& reason, uint64_t line)
{
    const auto known = std::ranges::find(entries, reason, &Entry::reason);
    if (known == entries.end())
        entries.push_back({reason, line, 1});
    else
        ++known->count;
}

void LeftOutRows::tell(vdt::MessageHandler& messages) const
{
    for (const Entry& entry : entries) {
        const std::string more =
            entry.count > 1 ? " (and " + std::to_string(entry.count - 1) + " more like it)" : std::string();
        messages.warning("line " + std::to_string(entry.line) + ": left out: " + entry.reason + more);
    }
}

std::optional<std::vector<Cylinder>> ReadCylinderTable(std::istream& stream, LeftOutRows& leftOut,
                                                       vdt::MessageHandler& messages)
{
    std::string line;
    uint64_t lineNumber = 0;
    Layout layout;
    bool isHead = false;
    if (!nextLine(stream, line, lineNumber)) {
        messages.error("holds no rows");
        return std::nullopt;
    }
    if (!readLayout(line, lineNumber, layout, isHead, messages)) return std::nullopt;

    std::vector<Cylinder> cylinders;
    std::vector<std::string_view> cells;
    std::set<int64_t> ids;
    int64_t rowNumber = 0;
    for (bool more = !isHead || nextLine(stream, line, lineNumber); more; more = nextLine(stream, line, lineNumber)) {
        if (messages.isCancelled()) return std::nullopt;
        // Heads are now and then separated otherwise than the numbers.
        split(line, line.find(layout.separator) == line.npos ? separatorOf(line) : layout.separator, cells);
        Cylinder cylinder;
        cylinder.line = lineNumber;
        const char* reason = RowReader(layout, cells).read(cylinder, ++rowNumber);
        if (!reason && !ids.insert(cylinder.id).second) reason = "its ID is that of another row";
        if (reason)
            leftOut.add(reason, lineNumber);
        else
            cylinders.push_back(cylinder);
    }
    return cylinders;
}

} // namespace verdanth

#include "vdt/file/xml_output.h"

#include "vdt/file/number_list.h"
#include "vdt/file/simple_xml.h"

#include <charconv>
#include <cmath>

namespace vdt {
namespace {

template <class Number> size_t writeNumber(char (&text)[40], Number value)
{
    return static_cast<size_t>(std::to_chars(text, text + sizeof text, value).ptr - text);
}

// Floats come back through a double, which now and then rounds the shortest text of a float to its neighbour.
size_t writeNumber(char (&text)[40], float value)
{
    const auto length = static_cast<size_t>(std::to_chars(text, text + sizeof text, value).ptr - text);
    if (std::isnan(value) || static_cast<float>(ParseDouble({text, length}).value) == value) return length;
    return writeNumber(text, static_cast<double>(value));
}

} // namespace

std::string NumberText(double value)
{
    char text[40];
    return {text, writeNumber(text, value)};
}

std::string NumberText(float value)
{
    char text[40];
    return {text, writeNumber(text, value)};
}

void XmlOutput::open(std::string_view element)
{
    endTag();
    if (depth > 0) buffer += '\n';
    indent();
    buffer += '<';
    buffer += element;
    elements += '<';
    elements += element;
    ++depth;
    inTag = true;
    hasChildren = false;
}

void XmlOutput::attribute(std::string_view name, std::string_view value)
{
    if (value.find('\0') != std::string_view::npos) fail("an attribute value with a zero byte");
    if (value.size() > SimpleXml::kPieceSize) fail("an attribute value of more than 4096 bytes");
    buffer += ' ';
    buffer += name;
    buffer += "=\"";
    // A backslash before the closing quote would hide it, so backslashes at the end stand behind it.
    const size_t quoted = value.find_last_not_of('\\') + 1;
    for (const char c : value.substr(0, quoted)) {
        switch (c) {
        case '&': buffer += "&amp;"; break;
        case '<': buffer += "&lt;"; break;
        case '>': buffer += "&gt;"; break;
        case '"': buffer += "&quot;"; break;
        default: buffer += c;
        }
    }
    buffer += '"';
    buffer += value.substr(quoted);
}

void XmlOutput::attribute(std::string_view name, double value)
{
    attribute(name, NumberText(value));
}

void XmlOutput::attribute(std::string_view name, float value)
{
    attribute(name, NumberText(value));
}

void XmlOutput::close()
{
    const size_t start = elements.rfind('<');
    --depth;
    if (inTag) {
        buffer += "/>";
    } else {
        if (hasChildren) {
            buffer += '\n';
            indent();
        }
        buffer += "</";
        buffer += std::string_view(elements).substr(start + 1);
        buffer += '>';
    }
    elements.resize(start);
    inTag = false;
    hasChildren = true;
    numbersInRow = 0;
    if (buffer.size() >= kFlushSize) send();
}

void XmlOutput::text(std::string_view content)
{
    if (content.find_first_of(std::string_view("<\0", 2)) != std::string_view::npos)
        fail("a text with '<' or a zero byte in it");
    endTag();
    buffer += content;
}

template <class Number> void XmlOutput::number(Number value, uint64_t perLine)
{
    endTag();
    if (numbersInRow > 0) buffer += numbersInRow % perLine == 0 ? '\n' : ' ';
    ++numbersInRow;
    char text[40];
    buffer.append(text, writeNumber(text, value));
    if (buffer.size() >= kFlushSize) send();
}

template void XmlOutput::number(double, uint64_t);
template void XmlOutput::number(float, uint64_t);
template void XmlOutput::number(int32_t, uint64_t);
template void XmlOutput::number(uint64_t, uint64_t);

std::string XmlOutput::finish()
{
    buffer += '\n';
    send();
    return reason;
}

void XmlOutput::endTag()
{
    if (inTag) buffer += '>';
    inTag = false;
}

void XmlOutput::send()
{
    if (reason.empty() && !sink->take(buffer)) fail("the output could not be written");
    buffer.clear();
}

void XmlOutput::indent()
{
    buffer.append(2 * depth, ' ');
}

} // namespace vdt

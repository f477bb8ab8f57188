#include "core/file_fault.h"

namespace host {
namespace {

const char* wordsFor(FILEERROR error)
{
    switch (error) {
    case FILEERROR_FILE_END: return "the data ends too early";
    case FILEERROR_WRONG_VALUE: return "a value is of another type than expected";
    case FILEERROR_UNKNOWN_VALUE: return "a value is of no known type";
    case FILEERROR_CHUNK_NUMBER: return "chunks begin and end unevenly";
    case FILEERROR_INVALID: return "something that cannot be here";
    case FILEERROR_OUTOFMEMORY: return "not enough memory for a value";
    default: return "unreadable data";
    }
}

} // namespace

std::string NameForReport(const std::filesystem::path& file)
{
    const std::u8string name = file.u8string();
    return {name.begin(), name.end()};
}

std::string FaultText(FILEERROR error, size_t position)
{
    return std::string(wordsFor(error)) + ", at byte " + std::to_string(position);
}

} // namespace host

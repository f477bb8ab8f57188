// Connects libFuzzer to the entry that VERDANTH_FUZZ_ENTRY names.
#include "fuzz/entries.h"

#include <cstdint>
#include <cstdlib>
#include <iostream>

// The name and the types are libFuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string complaint = vdt::test::VERDANTH_FUZZ_ENTRY({reinterpret_cast<const char*>(data), size});
    if (complaint.empty()) return 0;
    std::cerr << complaint << '\n';
    std::abort();
}

// What the fuzzers call with one input each. The ordinary tests call the same functions with the committed corpus.
#pragma once

#include <string>
#include <string_view>

namespace vdt::test {

// Each gives what it found wrong, empty if nothing. Anything worse is left to the sanitizers.
std::string FuzzEventParser(std::string_view input);
std::string FuzzModelReader(std::string_view input);
std::string FuzzInflateStream(std::string_view input);
std::string FuzzGeo(std::string_view input);
std::string FuzzPlant(std::string_view input);

// Of the host, where it is built.
std::string FuzzResource(std::string_view input);
std::string FuzzScene(std::string_view input);

} // namespace vdt::test

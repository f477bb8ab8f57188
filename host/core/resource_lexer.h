// Cuts the text of a resource file into words, numbers, texts and marks.
#pragma once

#include "core/resource_parser.h"

namespace host {

struct ResourceToken {
    enum class Kind { Word, Number, Text, Mark, End };

    Kind kind = Kind::End;
    std::string text; // of a Text: what it says, UTF-8; of a Mark: one character
    double number = 0;
    int line = 1;

    bool isWord(std::string_view word) const { return kind == Kind::Word && text == word; }
    bool isMark(char mark) const { return kind == Kind::Mark && text.front() == mark; }
};

class ResourceLexer {
public:
    ResourceLexer(const ResourceText& source, ResourceFaults& report);

    /// The next token, which stays the next.
    const ResourceToken& peek() const { return token; }
    ResourceToken next();
    /// Goes past the next token if it is this mark.
    bool take(char mark);
    /// Like take(); anything else is a fault, and stays.
    bool expect(char mark);
    void skipToEnd();

    void fault(int atLine, std::string_view text) { faults.add(name, atLine, text); }

private:
    void read();
    void skipBlanks();
    bool skipComment();
    void readWord();
    void readNumber();
    void readText();
    void readEscape();
    bool readHexadecimal(uint32_t& unit);
    char at(size_t offset) const { return offset < content.size() - place ? content[place + offset] : '\0'; }

    std::string_view name;
    std::string_view content;
    ResourceFaults& faults;
    size_t place = 0;
    int line = 1;
    ResourceToken token;
};

} // namespace host

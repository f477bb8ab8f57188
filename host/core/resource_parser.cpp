#include "core/resource_parser.h"

#include "core/resource_lexer.h"

#include <charconv>
#include <limits>

namespace host {
namespace {

using Token = ResourceToken;
using Kind = ResourceToken::Kind;

constexpr int kDeepestNesting = 64;
// A statement takes some fifty times the memory of its shortest text, so their number is limited, not the file's size.
constexpr size_t kMostStatements = 100'000;

std::string nameOf(const Token& token)
{
    return token.kind == Kind::End ? "the file's end" : InQuotes(token.text);
}

// Leaves the lexer before the next of `stops`, which is at the same depth of braces, or at the end.
void skipTo(ResourceLexer& lexer, std::string_view stops)
{
    int depth = 0;
    while (lexer.peek().kind != Kind::End) {
        const Token& token = lexer.peek();
        if (token.kind == Kind::Mark) {
            const char mark = token.text.front();
            if (depth == 0 && stops.find(mark) != std::string_view::npos) return;
            if (mark == '{') ++depth;
            if (mark == '}' && depth > 0) --depth;
        }
        lexer.next();
    }
}

class SymbolParser {
public:
    SymbolParser(const ResourceText& source, ResourceFaults& report) : lexer(source, report) {}

    SymbolTable parse()
    {
        while (lexer.peek().kind != Kind::End) {
            const Token token = lexer.next();
            if (!token.isWord("enum")) {
                lexer.fault(token.line, "expected \"enum\", found " + nameOf(token));
                skipTo(lexer, ";");
                lexer.take(';');
                continue;
            }
            if (lexer.peek().kind == Kind::Word) lexer.next();
            parseEnum();
        }
        return std::move(table);
    }

private:
    void parseEnum()
    {
        if (!lexer.expect('{')) return skipTo(lexer, ";");
        int64_t nextValue = 0;
        while (lexer.peek().kind != Kind::End && !lexer.take('}')) {
            parseEntry(nextValue);
            if (lexer.take(',') || lexer.peek().isMark('}')) continue;
            lexer.fault(lexer.peek().line, "expected \",\" or \"}\", found " + nameOf(lexer.peek()));
            skipTo(lexer, ",}");
            lexer.take(',');
        }
        lexer.expect(';');
    }

    void parseEntry(int64_t& nextValue)
    {
        const Token symbol = lexer.peek();
        if (symbol.kind != Kind::Word) {
            lexer.fault(symbol.line, "expected a symbol, found " + nameOf(symbol));
            return skipTo(lexer, ",}");
        }
        lexer.next();
        if (lexer.take('=') && !parseValue(nextValue)) return;
        if (nextValue > std::numeric_limits<int32_t>::max()) {
            return lexer.fault(symbol.line, "counting has left the range of 32 bits at " + InQuotes(symbol.text));
        }
        enter(symbol, static_cast<int32_t>(nextValue));
        ++nextValue;
    }

    // The value behind "=": a number, or a symbol that has one.
    bool parseValue(int64_t& value)
    {
        const Token token = lexer.peek();
        int32_t number = 0;
        const int32_t* known = token.kind == Kind::Word ? table.find(token.text) : nullptr;
        if (known) number = *known;
        if (!known && !(token.kind == Kind::Number && ParseInteger(token.text, number))) {
            lexer.fault(token.line, "expected a number of 32 bits, found " + nameOf(token));
            skipTo(lexer, ",}");
            return false;
        }
        lexer.next();
        value = number;
        return true;
    }

    void enter(const Token& symbol, int32_t value)
    {
        const auto [place, isNew] = table.values.emplace(symbol.text, value);
        if (isNew) table.inOrder.push_back(symbol.text);
        if (place->second != value) lexer.fault(symbol.line, InQuotes(symbol.text) + " has another number already");
    }

    ResourceLexer lexer;
    SymbolTable table;
};

class LayoutParser {
public:
    LayoutParser(const ResourceText& source, ResourceFaults& report) : lexer(source, report) {}

    ResourceLayout parse()
    {
        ResourceLayout layout;
        const Token kind = lexer.next();
        if (kind.kind != Kind::Word) {
            lexer.fault(kind.line, "expected \"CONTAINER\", found " + nameOf(kind));
            return layout;
        }
        layout.kind = kind.text;
        if (lexer.peek().kind == Kind::Word) layout.name = lexer.next().text;
        if (lexer.expect('{')) parseBlock(layout.statements, 1);
        if (lexer.peek().kind != Kind::End)
            lexer.fault(lexer.peek().line, "what stands behind the last brace is not read");
        return layout;
    }

private:
    void parseBlock(std::vector<ResourceStatement>& statements, int depth)
    {
        while (!lexer.take('}')) {
            if (lexer.take(';')) continue;
            if (lexer.peek().kind == Kind::End) return lexer.fault(lexer.peek().line, "a brace is left open");
            if (lexer.peek().kind == Kind::Mark) {
                lexer.fault(lexer.peek().line, "a statement cannot begin with " + nameOf(lexer.peek()));
                lexer.next();
                continue;
            }
            if (++statementCount > kMostStatements) {
                if (statementCount == kMostStatements + 1) {
                    lexer.fault(lexer.peek().line, "too many statements; the rest is not read");
                }
                return lexer.skipToEnd();
            }
            statements.push_back(parseStatement(depth));
        }
    }

    ResourceStatement parseStatement(int depth)
    {
        ResourceStatement statement;
        statement.line = lexer.peek().line;
        statement.keyword = lexer.next().text;
        for (const Token* token = &lexer.peek(); isValue(*token); token = &lexer.peek()) {
            statement.values.push_back(valueOf(lexer.next()));
        }
        if (lexer.take('~') && isValue(lexer.peek())) statement.icon = lexer.next().text;

        if (lexer.peek().isMark('{')) {
            lexer.next();
            statement.hasBlock = true;
            if (depth < kDeepestNesting) {
                parseBlock(statement.children, depth + 1);
            } else {
                lexer.fault(statement.line, "blocks are nested too deeply; this one is not read");
                skipTo(lexer, "}");
                lexer.take('}');
            }
        } else if (lexer.peek().isMark('}')) {
            lexer.fault(statement.line, "expected \";\" behind " + InQuotes(statement.keyword));
        } else {
            lexer.expect(';');
        }
        return statement;
    }

    static bool isValue(const Token& token)
    {
        return token.kind == Kind::Word || token.kind == Kind::Number || token.kind == Kind::Text;
    }

    static ResourceValue valueOf(const Token& token)
    {
        if (token.kind == Kind::Number) return {ResourceValue::Kind::Number, token.text, token.number};
        return {token.kind == Kind::Word ? ResourceValue::Kind::Word : ResourceValue::Kind::Text, token.text};
    }

    ResourceLexer lexer;
    size_t statementCount = 0;
};

void parseStringEntry(ResourceLexer& lexer, StringTable& table)
{
    const Token symbol = lexer.next();
    const Token text = lexer.peek();
    if (text.kind != Kind::Text) {
        lexer.fault(text.line, InQuotes(symbol.text) + " has no text");
        skipTo(lexer, ";}");
        lexer.take(';');
        return;
    }
    lexer.next();
    StringEntry entry{symbol.text, text.text, {}, symbol.line};
    if (lexer.peek().kind == Kind::Text) entry.shortText = lexer.next().text;
    table.entries.push_back(std::move(entry));
    lexer.expect(';');
}

} // namespace

void ResourceFaults::add(std::string_view file, int line, std::string_view text)
{
    if (faults.size() > kMostFaults) return;
    if (faults.size() == kMostFaults) text = "there is more; the rest is not told";
    faults.push_back({std::string(file), line, std::string(text)});
}

std::string InQuotes(std::string_view text)
{
    constexpr size_t kLongest = 40;
    std::string quote(1, '"');
    quote += text.substr(0, kLongest);
    if (text.size() > kLongest) quote += "...";
    quote += '"';
    return quote;
}

std::string ToText(const ResourceFault& fault)
{
    if (fault.line == 0) return fault.file + ": " + fault.text;
    return fault.file + ":" + std::to_string(fault.line) + ": " + fault.text;
}

const int32_t* SymbolTable::find(std::string_view symbol) const
{
    const auto found = values.find(symbol);
    return found == values.end() ? nullptr : &found->second;
}

void SymbolTable::merge(const SymbolTable& other)
{
    for (const std::string& symbol : other.inOrder) {
        if (values.emplace(symbol, *other.find(symbol)).second) inOrder.push_back(symbol);
    }
}

SymbolTable ParseSymbols(const ResourceText& source, ResourceFaults& faults)
{
    return SymbolParser(source, faults).parse();
}

StringTable ParseStrings(const ResourceText& source, ResourceFaults& faults)
{
    ResourceLexer lexer(source, faults);
    StringTable table;
    if (!lexer.peek().isWord("STRINGTABLE")) {
        lexer.fault(lexer.peek().line, "expected \"STRINGTABLE\", found " + nameOf(lexer.peek()));
        skipTo(lexer, "{");
    } else {
        lexer.next();
        if (lexer.peek().kind == Kind::Word) table.name = lexer.next().text;
    }
    if (!lexer.expect('{')) return table;

    while (!lexer.take('}')) {
        if (lexer.take(';')) continue;
        const Token& token = lexer.peek();
        if (token.kind == Kind::Word) {
            parseStringEntry(lexer, table);
            continue;
        }
        if (token.kind == Kind::End) {
            lexer.fault(token.line, "a brace is left open");
            break;
        }
        lexer.fault(token.line, "expected a symbol, found " + nameOf(token));
        lexer.next();
    }
    return table;
}

ResourceLayout ParseLayout(const ResourceText& source, ResourceFaults& faults)
{
    return LayoutParser(source, faults).parse();
}

bool ParseInteger(std::string_view text, int32_t& value)
{
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) text.remove_prefix(1);
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (isHexadecimal) text.remove_prefix(2);

    uint32_t amount = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), amount, isHexadecimal ? 16 : 10);
    if (error != std::errc() || end != text.data() + text.size()) return false;
    constexpr uint32_t kSign = uint32_t{1} << 31;
    if (!isHexadecimal && amount > kSign - (isNegative ? 0 : 1)) return false;
    value = static_cast<int32_t>(isNegative ? 0 - amount : amount);
    return true;
}

} // namespace host

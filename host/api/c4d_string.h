// Text of the host: Unicode, a value. Positions count characters from 0.
#pragma once

#include "ge_sys_math.h"

#include <string>

enum STRINGENCODING {
    STRINGENCODING_XBIT = 0, // 7-bit text with \uHHHH for all other characters
    STRINGENCODING_8BIT = 1, // Latin-1
    STRINGENCODING_7BIT = 2,
    STRINGENCODING_7BITHEX = 3,
    STRINGENCODING_UTF8 = 4,
    STRINGENCODING_HTML = 5
} ENUM_END_LIST(STRINGENCODING);

class String {
public:
    String() = default;
    String(const Char* text, STRINGENCODING type = STRINGENCODING_XBIT);
    explicit String(const Utf16Char* text, Int count = -1);
    explicit String(const Utf32Char* text, Int count = -1);
    String(Int count, Utf32Char fill);

    Bool Content() const { return !text.empty(); }
    Int GetLength() const { return static_cast<Int>(text.size()); }
    void CopyTo(String* destination) const { *destination = *this; }

    Bool FindFirst(const String& part, Int32* position, Int start = 0) const;
    Bool FindFirst(Utf32Char character, Int32* position, Int start = 0) const;
    Bool FindLast(const String& part, Int32* position, Int start = -1) const;
    Bool FindLast(Utf32Char character, Int32* position, Int start = -1) const;

    void Insert(Int position, Utf32Char character);
    void Insert(Int position, const String& part, Int start = -1, Int end = -1);
    void Delete(Int position, Int count);
    String SubStr(Int start, Int count) const;
    String Left(Int count) const;
    String Right(Int count) const;
    String ToUpper() const;
    String ToLower() const;

    Int32 Compare(const String& other) const;
    Int32 LexCompare(const String& other) const; // without regard to case

    /// `error` is told 0 on success.

    /// Bytes, without the terminating zero.
    Int GetCStringLen(STRINGENCODING type = STRINGENCODING_XBIT) const;
    /// Writes at most `max` bytes, the terminator among them, and whole characters only; gives the bytes written
    /// without the terminator.
    Int GetCString(Char* buffer, Int max, STRINGENCODING type = STRINGENCODING_XBIT) const;
    /// The caller's, freed with DeleteMem; null on failure.
    Char* GetCStringCopy(STRINGENCODING type = STRINGENCODING_XBIT) const;
    /// A `count` of -1: up to the zero.
    void SetCString(const Char* bytes, Int count = -1, STRINGENCODING type = STRINGENCODING_XBIT);

    static String IntToString(Int32 value);
    static String IntToString(Int64 value);
    /// `vvk` digits before and `nnk` behind the point, -1 for as many as needed.
    static String FloatToString(Float32 value, Int32 vvk = -1, Int32 nnk = -1, Bool e = false, Utf32Char fill = '0');
    static String FloatToString(Float64 value, Int32 vvk = -1, Int32 nnk = -1, Bool e = false, Utf32Char fill = '0');

    Utf32Char operator[](Int position) const { return text[static_cast<std::size_t>(position)]; }
    Utf32Char& operator[](Int position) { return text[static_cast<std::size_t>(position)]; }

    String& operator+=(const String& other);
    friend String operator+(const String& a, const String& b);
    friend Bool operator==(const String& a, const String& b) { return a.text == b.text; }
    friend Bool operator!=(const String& a, const String& b) { return a.text != b.text; }
    friend Bool operator<(const String& a, const String& b) { return a.text < b.text; }

private:
    std::u32string text;
};

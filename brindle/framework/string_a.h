// CStringA: the library's narrow string, a small class over std::string with the application framework's
// usual operations.
//
// Bytes are in the ANSI code page. A string may hold zero bytes: GetLength, ==, +=, Mid and the searches for
// a single character see the whole string, while everything that goes through `const char*` (conversion,
// Format arguments, Find of a text) ends at the first zero byte. A null `const char*` reads as the empty text
// everywhere. Positions and counts are in bytes; positions out of range are clamped, never undefined.
// Letter case folds by the table in letter_case.h, never by the process locale.
// Thread: a value type without shared state; two threads may use two strings freely.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "brindle/framework/export.h"

class BRINDLE_API CStringA {
  public:
    CStringA() noexcept = default;
    CStringA(const char* text) : m_text(text ? text : "") {}
    CStringA(const char* text, int length);  // length bytes, zeros included; a negative length gives ""
    CStringA(const std::string& text) : m_text(text) {}
    CStringA(std::string&& text) noexcept : m_text(std::move(text)) {}
    explicit CStringA(std::string_view text) : m_text(text) {}
    // The character so many times; a negative number is 0.
    explicit CStringA(char character, int repeat = 1);

    // Become the text, as the constructors of the same kind.
    CStringA& operator=(const char* text);
    CStringA& operator=(const std::string& text);
    CStringA& operator=(std::string&& text) noexcept;
    CStringA& operator=(char character);

    // Valid until the string is changed or destroyed; ends at the first zero byte for whoever reads it as
    // text.
    operator const char*() const noexcept { return m_text.c_str(); }
    const char* GetString() const noexcept { return m_text.c_str(); }
    const std::string& str() const noexcept { return m_text; }
    std::string& str() noexcept { return m_text; }
    std::string_view view() const noexcept { return m_text; }

    // In bytes, zero bytes included.
    int GetLength() const noexcept;
    bool IsEmpty() const noexcept { return m_text.empty(); }
    void Empty() noexcept { m_text.clear(); }
    char GetAt(int index) const noexcept;            // '\0' out of range
    void SetAt(int index, char character) noexcept;  // ignored out of range
    char operator[](int index) const noexcept { return GetAt(index); }

    // Put something behind the end; a negative length adds nothing.
    CStringA& operator+=(const CStringA& tail);
    CStringA& operator+=(const char* tail);
    CStringA& operator+=(const std::string& tail);
    CStringA& operator+=(char tail);
    void Append(const char* tail);
    void Append(const char* tail, int length);
    void AppendChar(char tail);

    // Order of the first difference as unsigned bytes: negative, 0 or positive.
    int Compare(const char* other) const noexcept;
    int CompareNoCase(const char* other) const noexcept;

    // Part of the string; first and count are clamped to it.
    CStringA Mid(int first) const;
    CStringA Mid(int first, int count) const;
    CStringA Left(int count) const;
    CStringA Right(int count) const;
    CStringA SpanIncluding(const char* characters) const;
    CStringA SpanExcluding(const char* characters) const;
    // The next token at or after position, position moved behind it; at the end "" and position -1.
    CStringA Tokenize(const char* separators, int& position) const;

    // Index of the first match at or after start, or -1.
    int Find(char character, int start = 0) const noexcept;
    int Find(const char* text, int start = 0) const noexcept;
    int ReverseFind(char character) const noexcept;
    int FindOneOf(const char* characters) const noexcept;

    // Change the string itself and return it.
    CStringA& MakeUpper() noexcept;
    CStringA& MakeLower() noexcept;
    CStringA& MakeReverse() noexcept;
    // Take white space (space, \t \n \v \f \r) or the given characters off the ends, and return the string.
    CStringA& Trim();
    CStringA& TrimLeft();
    CStringA& TrimRight();
    CStringA& Trim(char target);
    CStringA& TrimLeft(char target);
    CStringA& TrimRight(char target);
    CStringA& Trim(const char* targets);
    CStringA& TrimLeft(const char* targets);
    CStringA& TrimRight(const char* targets);

    int Replace(char from, char to) noexcept;  // number of characters replaced
    // Replaces every occurrence from left to right; the replacement is not searched again. Returns the
    // number.
    int Replace(const char* from, const char* to);
    int Remove(char character);               // number of characters removed
    int Insert(int index, char character);    // new length
    int Insert(int index, const char* text);  // new length
    int Delete(int index, int count = 1);     // new length
    // Keeps so many bytes; a longer length changes nothing.
    void Truncate(int length);

    // printf rules, "C" locale numbers whatever the process locale is.
    void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void AppendFormat(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void FormatV(const char* format, va_list arguments);

    // Writable buffer of at least `length` bytes and a zero; ReleaseBuffer sets the length (-1: up to the
    // zero).
    char* GetBuffer(int length);
    char* GetBuffer() { return GetBuffer(GetLength()); }
    void ReleaseBuffer(int length = -1);

    void Swap(CStringA& other) noexcept { m_text.swap(other.m_text); }

  private:
    std::string m_text;
};

inline bool operator==(const CStringA& a, const CStringA& b) noexcept {
    return a.str() == b.str();
}
inline bool operator==(const CStringA& a, const char* b) noexcept {
    return a.str() == (b ? b : "");
}
inline bool operator==(const CStringA& a, const std::string& b) noexcept {
    return a.str() == b;
}
inline bool operator!=(const CStringA& a, const CStringA& b) noexcept {
    return a.str() != b.str();
}
inline bool operator!=(const CStringA& a, const char* b) noexcept {
    return !(a == b);
}
inline bool operator!=(const CStringA& a, const std::string& b) noexcept {
    return a.str() != b;
}
inline bool operator==(const char* a, const CStringA& b) noexcept {
    return b == a;
}
inline bool operator!=(const char* a, const CStringA& b) noexcept {
    return !(b == a);
}

// Byte-wise, unsigned, case-sensitive: the order of sorted containers.
inline bool operator<(const CStringA& a, const CStringA& b) noexcept {
    return a.str() < b.str();
}
inline bool operator>(const CStringA& a, const CStringA& b) noexcept {
    return b.str() < a.str();
}
inline bool operator<=(const CStringA& a, const CStringA& b) noexcept {
    return !(b < a);
}
inline bool operator>=(const CStringA& a, const CStringA& b) noexcept {
    return !(a < b);
}

// One behind the other.
BRINDLE_API CStringA operator+(const CStringA& a, const CStringA& b);
BRINDLE_API CStringA operator+(const CStringA& a, const char* b);
BRINDLE_API CStringA operator+(const char* a, const CStringA& b);
BRINDLE_API CStringA operator+(const CStringA& a, const std::string& b);
BRINDLE_API CStringA operator+(const std::string& a, const CStringA& b);
BRINDLE_API CStringA operator+(const CStringA& a, char b);
BRINDLE_API CStringA operator+(char a, const CStringA& b);

// So that strings are keys of the standard's tables.
template <>
struct std::hash<CStringA> {
    // The standard's value for the same bytes.
    std::size_t operator()(const CStringA& text) const noexcept {
        return std::hash<std::string>{}(text.str());
    }
};

// CStringA over std::string. Positions and counts come in as int and are clamped here, in one place (At,
// Count); arguments may point into the string itself. Tests: string_a_test.cpp.
#include "brindle/framework/string_a.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "brindle/framework/format_text.h"
#include "brindle/framework/letter_case.h"

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

const char* OrEmpty(const char* text) noexcept {
    return text ? text : "";
}

// A position or count from outside: negative is 0, more than `limit` is `limit`.
std::size_t Clamp(int value, std::size_t limit) noexcept {
    return value <= 0 ? 0 : std::min(static_cast<std::size_t>(value), limit);
}

int ToIndex(std::size_t position) noexcept {
    constexpr auto largest = static_cast<std::size_t>(std::numeric_limits<int>::max());
    return position == std::string::npos ? -1 : static_cast<int>(std::min(position, largest));
}

CStringA Joined(std::string_view a, std::string_view b) {
    std::string text;
    text.reserve(a.size() + b.size());
    text += a;
    text += b;
    return CStringA(std::move(text));
}

void TrimLeftOf(std::string& text, std::string_view targets) {
    text.erase(0, std::min(text.find_first_not_of(targets), text.size()));
}

void TrimRightOf(std::string& text, std::string_view targets) {
    text.erase(text.find_last_not_of(targets) + 1);  // npos + 1 is 0: all of it
}

}  // namespace

CStringA::CStringA(const char* text, int length) {
    if (text && length > 0) m_text.assign(text, static_cast<std::size_t>(length));
}

CStringA::CStringA(char character, int repeat) {
    if (repeat > 0) m_text.assign(static_cast<std::size_t>(repeat), character);
}

CStringA& CStringA::operator=(const char* text) {
    m_text = OrEmpty(text);
    return *this;
}

CStringA& CStringA::operator=(const std::string& text) {
    m_text = text;
    return *this;
}

CStringA& CStringA::operator=(std::string&& text) noexcept {
    m_text = std::move(text);
    return *this;
}

CStringA& CStringA::operator=(char character) {
    m_text.assign(1, character);
    return *this;
}

int CStringA::GetLength() const noexcept {
    return ToIndex(m_text.size());
}

char CStringA::GetAt(int index) const noexcept {
    return index >= 0 && static_cast<std::size_t>(index) < m_text.size()
               ? m_text[static_cast<std::size_t>(index)]
               : '\0';
}

void CStringA::SetAt(int index, char character) noexcept {
    if (index >= 0 && static_cast<std::size_t>(index) < m_text.size())
        m_text[static_cast<std::size_t>(index)] = character;
}

CStringA& CStringA::operator+=(const CStringA& tail) {
    m_text += tail.m_text;
    return *this;
}

CStringA& CStringA::operator+=(const char* tail) {
    m_text += OrEmpty(tail);
    return *this;
}

CStringA& CStringA::operator+=(const std::string& tail) {
    m_text += tail;
    return *this;
}

CStringA& CStringA::operator+=(char tail) {
    m_text += tail;
    return *this;
}

void CStringA::Append(const char* tail) {
    *this += tail;
}

void CStringA::Append(const char* tail, int length) {
    if (tail && length > 0) m_text.append(tail, static_cast<std::size_t>(length));
}

void CStringA::AppendChar(char tail) {
    m_text += tail;
}

int CStringA::Compare(const char* other) const noexcept {
    return std::strcmp(m_text.c_str(), OrEmpty(other));
}

int CStringA::CompareNoCase(const char* other) const noexcept {
    return brindle::CompareNoCase(m_text.c_str(), OrEmpty(other));
}

CStringA CStringA::Mid(int first) const {
    return CStringA(m_text.substr(Clamp(first, m_text.size())));
}

CStringA CStringA::Mid(int first, int count) const {
    return CStringA(m_text.substr(Clamp(first, m_text.size()), Clamp(count, m_text.size())));
}

CStringA CStringA::Left(int count) const {
    return Mid(0, count);
}

CStringA CStringA::Right(int count) const {
    return CStringA(m_text.substr(m_text.size() - Clamp(count, m_text.size())));
}

CStringA CStringA::SpanIncluding(const char* characters) const {
    return CStringA(m_text.substr(0, m_text.find_first_not_of(OrEmpty(characters))));
}

CStringA CStringA::SpanExcluding(const char* characters) const {
    return CStringA(m_text.substr(0, m_text.find_first_of(OrEmpty(characters))));
}

CStringA CStringA::Tokenize(const char* separators, int& position) const {
    const std::string_view set = OrEmpty(separators);
    const std::size_t begin =
        position < 0 ? std::string::npos : m_text.find_first_not_of(set, static_cast<std::size_t>(position));
    if (begin == std::string::npos) {
        position = -1;
        return {};
    }
    const std::size_t end = std::min(m_text.find_first_of(set, begin), m_text.size());
    position = ToIndex(end + 1);
    return CStringA(m_text.substr(begin, end - begin));
}

int CStringA::Find(char character, int start) const noexcept {
    return ToIndex(m_text.find(character, start < 0 ? 0 : static_cast<std::size_t>(start)));
}

int CStringA::Find(const char* text, int start) const noexcept {
    const std::size_t from = start < 0 ? 0 : static_cast<std::size_t>(start);
    if (from > m_text.size()) return -1;
    // The part searched ends at the first zero byte, as a text does.
    const std::size_t found = std::string_view(m_text.c_str() + from).find(OrEmpty(text));
    return found == std::string_view::npos ? -1 : ToIndex(from + found);
}

int CStringA::ReverseFind(char character) const noexcept {
    return ToIndex(m_text.rfind(character));
}

int CStringA::FindOneOf(const char* characters) const noexcept {
    return ToIndex(m_text.find_first_of(OrEmpty(characters)));
}

CStringA& CStringA::MakeUpper() noexcept {
    std::transform(m_text.begin(), m_text.end(), m_text.begin(), brindle::ToUpper);
    return *this;
}

CStringA& CStringA::MakeLower() noexcept {
    std::transform(m_text.begin(), m_text.end(), m_text.begin(), brindle::ToLower);
    return *this;
}

CStringA& CStringA::MakeReverse() noexcept {
    std::reverse(m_text.begin(), m_text.end());
    return *this;
}

CStringA& CStringA::Trim() {
    return TrimRight().TrimLeft();
}

CStringA& CStringA::TrimLeft() {
    TrimLeftOf(m_text, kWhiteSpace);
    return *this;
}

CStringA& CStringA::TrimRight() {
    TrimRightOf(m_text, kWhiteSpace);
    return *this;
}

CStringA& CStringA::Trim(char target) {
    return TrimRight(target).TrimLeft(target);
}

CStringA& CStringA::TrimLeft(char target) {
    TrimLeftOf(m_text, {&target, 1});
    return *this;
}

CStringA& CStringA::TrimRight(char target) {
    TrimRightOf(m_text, {&target, 1});
    return *this;
}

CStringA& CStringA::Trim(const char* targets) {
    const std::string copy = OrEmpty(targets);
    TrimRightOf(m_text, copy);
    TrimLeftOf(m_text, copy);
    return *this;
}

CStringA& CStringA::TrimLeft(const char* targets) {
    TrimLeftOf(m_text, OrEmpty(targets));
    return *this;
}

CStringA& CStringA::TrimRight(const char* targets) {
    TrimRightOf(m_text, OrEmpty(targets));
    return *this;
}

int CStringA::Replace(char from, char to) noexcept {
    if (from == to) return 0;
    const auto count = std::count(m_text.begin(), m_text.end(), from);
    std::replace(m_text.begin(), m_text.end(), from, to);
    return static_cast<int>(count);
}

int CStringA::Replace(const char* from, const char* to) {
    const std::string_view old = OrEmpty(from);
    if (old.empty()) return 0;
    const std::string_view with = OrEmpty(to);
    std::string out;
    int count = 0;
    std::size_t at = 0;
    for (std::size_t found; (found = m_text.find(old, at)) != std::string::npos; at = found + old.size()) {
        out.append(m_text, at, found - at);
        out += with;
        ++count;
    }
    if (count == 0) return 0;
    out.append(m_text, at);
    m_text = std::move(out);
    return count;
}

int CStringA::Remove(char character) {
    return static_cast<int>(std::erase(m_text, character));
}

int CStringA::Insert(int index, char character) {
    m_text.insert(Clamp(index, m_text.size()), 1, character);
    return GetLength();
}

int CStringA::Insert(int index, const char* text) {
    m_text.insert(Clamp(index, m_text.size()), OrEmpty(text));
    return GetLength();
}

int CStringA::Delete(int index, int count) {
    m_text.erase(Clamp(index, m_text.size()), Clamp(count, m_text.size()));
    return GetLength();
}

void CStringA::Truncate(int length) {
    m_text.resize(Clamp(length, m_text.size()));
}

void CStringA::Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    FormatV(format, arguments);
    va_end(arguments);
}

void CStringA::AppendFormat(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    m_text += brindle::FormatText(format, arguments);
    va_end(arguments);
}

void CStringA::FormatV(const char* format, va_list arguments) {
    m_text =
        brindle::FormatText(format, arguments);  // complete before it is stored: arguments may be this text
}

char* CStringA::GetBuffer(int length) {
    const std::size_t wanted = length > 0 ? static_cast<std::size_t>(length) : 0;
    if (wanted > m_text.size()) m_text.resize(wanted);
    return m_text.data();
}

void CStringA::ReleaseBuffer(int length) {
    m_text.resize(length < 0 ? std::strlen(m_text.c_str()) : Clamp(length, m_text.size()));
}

CStringA operator+(const CStringA& a, const CStringA& b) {
    return Joined(a.view(), b.view());
}
CStringA operator+(const CStringA& a, const char* b) {
    return Joined(a.view(), OrEmpty(b));
}
CStringA operator+(const char* a, const CStringA& b) {
    return Joined(OrEmpty(a), b.view());
}
CStringA operator+(const CStringA& a, const std::string& b) {
    return Joined(a.view(), b);
}
CStringA operator+(const std::string& a, const CStringA& b) {
    return Joined(a, b.view());
}
CStringA operator+(const CStringA& a, char b) {
    return Joined(a.view(), {&b, 1});
}
CStringA operator+(char a, const CStringA& b) {
    return Joined({&a, 1}, b.view());
}

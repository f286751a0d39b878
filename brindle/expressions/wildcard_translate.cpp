// The translation walks over "^" + pattern + "$" with every "%" written as ".*". Character classes are read into
// sets of bytes, so that neither the sign of a character nor a locale has a say in them; groups never capture.
// Entry point: TranslateWildcard. Tests: wildcard_test.cpp.
#include "brindle/expressions/wildcard_translate.h"

#include "brindle/expressions/byte_set.h"
#include "brindle/expressions/wildcard.h"
#include "brindle/framework/letter_case.h"
#include "brindle/framework/number_text.h"

namespace brindle {
namespace {

constexpr bool IsHexDigit(char c) noexcept {
    return IsDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

std::string WithStars(std::string_view pattern) {
    std::string text = "^";
    for (const char c : pattern) {
        if (c == '%') {
            text += ".*";
        } else {
            text += c;
        }
    }
    return text += '$';
}

class Translation {
  public:
    Translation(std::string_view pattern, std::string& out) : m_text(WithStars(pattern)), m_out(out) {}

    bool Run() {
        while (m_at < m_text.size())
            if (!Next()) return false;
        return m_open.empty();
    }

  private:
    bool Next();
    bool OpenGroup(char closing);
    bool CloseGroup(char closing);
    bool Escape();
    bool ReadCodedByte(char letter, unsigned char& byte);
    bool Class();
    bool ClassMember(ByteSet& set);
    bool ClassCharacter(ByteSet& set, bool& isSet, unsigned char& byte);
    bool NamedClass(ByteSet& set, bool& isSet, unsigned char& byte);

    bool AtEnd() const noexcept { return m_at >= m_text.size(); }
    bool StartsWith(std::string_view start) const noexcept {
        return std::string_view(m_text).substr(m_at).starts_with(start);
    }
    void Literal(unsigned char byte) {
        ByteSet set;
        set.Add(byte);
        set.AppendTo(m_out);
    }

    const std::string m_text;
    std::string& m_out;
    std::size_t m_at = 0;
    std::string m_open;  // the characters that close the open groups
};

bool Translation::Next() {
    const char c = m_text[m_at++];
    switch (c) {
        case '(':
            return OpenGroup(')');
        case '{':
            return OpenGroup('}');
        case ')':
        case '}':
            return CloseGroup(c);
        case '[':
            return Class();
        case '\\':
            return Escape();
        case '.':
            ByteSet::All().AppendTo(m_out);
            return true;
        case '*':
        case '+':
        case '?':
        case '^':
        case '$':
        case '|':
            m_out += c;
            return true;
        default:
            if (IsAsciiLetter(c) || IsDigit(c) || c == ' ') {
                m_out += c;
            } else {
                Literal(static_cast<unsigned char>(c));
            }
            return true;
    }
}

bool Translation::OpenGroup(char closing) {
    if (m_open.size() >= kMaxPatternDepth) return false;
    if (StartsWith("?:")) {
        m_at += 2;
    } else if (StartsWith("?=") || StartsWith("?!")) {
        return false;  // a look-ahead would take the linear time away
    }
    m_open += closing;
    m_out += "(?:";
    return true;
}

bool Translation::CloseGroup(char closing) {
    if (m_open.empty() || m_open.back() != closing) return false;
    m_open.pop_back();
    m_out += ')';
    return true;
}

bool Translation::Escape() {
    if (AtEnd()) return false;
    const char letter = m_text[m_at++];
    ByteSet set;
    unsigned char byte = 0;
    switch (letter) {
        case 'n':
            m_out += "(?:\\r|\\r?\\n)";
            return true;
        case 'q':
            m_out += "(?:[\\x22][^\\x22]*[\\x22]|[\\x27][^\\x27]*[\\x27])";
            return true;
        case 'w':
            m_out += "(?:[A-Za-z]+)";
            return true;
        case 'z':
            m_out += "(?:[0-9]+)";
            return true;
        case 'B':
            m_out += "\\B";
            return true;
        default:
            break;
    }
    if (ByteSet::OfAbbreviation(letter, set)) {
        set.AppendTo(m_out);
        return true;
    }
    if (!ReadCodedByte(letter, byte)) return false;
    Literal(byte);
    return true;
}

// The engine's escapes for one character: \t \v \f \r \0 \xHH \uHHHH; any other character stands for itself. False
// for a back-reference and for a code that is none.
bool Translation::ReadCodedByte(char letter, unsigned char& byte) {
    const std::size_t digits = letter == 'x' ? 2 : letter == 'u' ? 4 : 0;
    if (digits > 0) {
        std::string_view code = std::string_view(m_text).substr(m_at, digits);
        for (const char c : code)
            if (!IsHexDigit(c)) return false;
        std::uint32_t value = 0;
        if (code.size() != digits || !ScanHex(code, value) || value > 0xFF) return false;
        m_at += digits;
        byte = static_cast<unsigned char>(value);
        return true;
    }
    switch (letter) {
        case 't':
            byte = '\t';
            return true;
        case 'v':
            byte = '\v';
            return true;
        case 'f':
            byte = '\f';
            return true;
        case 'r':
            byte = '\r';
            return true;
        case '0':
            byte = 0;
            return true;
        default:
            byte = static_cast<unsigned char>(letter);
            return !IsDigit(letter);
    }
}

bool Translation::Class() {
    ByteSet set;
    const bool isComplement = StartsWith("^");
    if (isComplement) ++m_at;
    while (!AtEnd() && m_text[m_at] != ']')
        if (!ClassMember(set)) return false;
    if (AtEnd()) return false;
    ++m_at;
    if (isComplement) set.Complement();
    set.AppendTo(m_out);
    return true;
}

// One character, one range or one named set. A "-" that has no character on both sides stands for itself.
bool Translation::ClassMember(ByteSet& set) {
    bool isSet = false;
    unsigned char first = 0;
    if (!ClassCharacter(set, isSet, first)) return false;
    if (isSet) return true;
    const bool isRange = StartsWith("-") && m_at + 1 < m_text.size() && m_text[m_at + 1] != ']';
    if (!isRange) {
        set.Add(first);
        return true;
    }
    ++m_at;
    unsigned char last = 0;
    if (!ClassCharacter(set, isSet, last)) return false;
    if (isSet) {
        set.Add(first);
        set.Add('-');
        return true;
    }
    if (last < first) return false;
    set.AddRange(first, last);
    return true;
}

// What stands for a set is added to it at once; what stands for one byte is left to the caller.
bool Translation::ClassCharacter(ByteSet& set, bool& isSet, unsigned char& byte) {
    if (StartsWith("[:") || StartsWith("[.") || StartsWith("[=")) return NamedClass(set, isSet, byte);
    byte = static_cast<unsigned char>(m_text[m_at++]);
    if (byte != '\\') return true;
    if (AtEnd()) return false;
    const char letter = m_text[m_at++];
    isSet = true;
    switch (letter) {
        case 'n':
            set.Add('\r');
            set.Add('\n');
            return true;
        case 'w':
            return ByteSet::OfName("alpha", set);
        case 'z':
            return ByteSet::OfName("digit", set);
        default:
            break;
    }
    ByteSet abbreviated;
    if (ByteSet::OfAbbreviation(letter, abbreviated)) {
        set.Add(abbreviated);
        return true;
    }
    isSet = false;
    return ReadCodedByte(letter, byte);
}

// "[:alpha:]"; "[.x.]" and "[=x=]" for one character.
bool Translation::NamedClass(ByteSet& set, bool& isSet, unsigned char& byte) {
    const char kind = m_text[m_at + 1];
    const std::size_t end = m_text.find(std::string{kind, ']'}, m_at + 2);
    if (end == std::string::npos) return false;
    const std::string_view name = std::string_view(m_text).substr(m_at + 2, end - m_at - 2);
    m_at = end + 2;
    isSet = kind == ':';
    if (isSet) return ByteSet::OfName(name, set);
    if (name.size() != 1) return false;
    byte = static_cast<unsigned char>(name.front());
    return true;
}

}  // namespace

bool TranslateWildcard(std::string_view pattern, std::string& out) {
    out.clear();
    return Translation(pattern, out).Run();
}

}  // namespace brindle

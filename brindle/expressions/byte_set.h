// ByteSet: a set of bytes, as a character class of a pattern describes one. Tests: wildcard_test.cpp.
#pragma once

#include <bitset>
#include <string>
#include <string_view>

namespace brindle {

class ByteSet {
  public:
    static ByteSet All();
    // The bytes of a class that an abbreviation stands for: \a \b \c \d \h of the classic language, \s \w and
    // \D \S \W of the engine. False for other letters.
    static bool OfAbbreviation(char letter, ByteSet& set);
    // A named class: "alpha", "digit" ... False for an unknown name.
    static bool OfName(std::string_view name, ByteSet& set);

    void Add(unsigned char byte) { m_bytes.set(byte); }
    void AddRange(unsigned char first, unsigned char last);
    void Add(const ByteSet& other) { m_bytes |= other.m_bytes; }
    void Complement() { m_bytes.flip(); }
    bool Contains(unsigned char byte) const { return m_bytes.test(byte); }

    // The set as a bracket expression of the engine: printable with any byte in it, the same in every locale.
    void AppendTo(std::string& out) const;

  private:
    std::bitset<256> m_bytes;
};

}  // namespace brindle

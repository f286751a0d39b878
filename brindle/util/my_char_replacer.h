// Orvane::MyCharReplacer: removes or replaces the characters of a set, and control characters. Thread: a value type
// without shared state.
#pragma once

#include "brindle/framework/string_a.h"
#include "brindle/util/replacer.h"

namespace Orvane {

class BRINDLE_API MyCharReplacer : public Replacer<char> {
  public:
    // Copies the texts. For both replacements 0 means: remove.
    MyCharReplacer(const CStringA& chars, char replacement, bool stripControls, char controlReplacement,
                   const CStringA& keepControls);

    // A character of `chars` is replaced or removed; a control character (1 to 31) likewise if controls are
    // treated and it is not among those kept; everything else, bytes of 128 and above included, is kept.
    int operator()(char c, char& out) override;

  private:
    friend struct UtilLayout;

    CStringA m_chars;
    char m_replacement;
    bool m_stripControls;
    char m_controlReplacement;
    CStringA m_keepControls;
};

}  // namespace Orvane

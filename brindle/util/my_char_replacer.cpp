// The verdicts on characters. Tests: utils_test.cpp.
#include "brindle/util/my_char_replacer.h"

#include <string_view>

namespace Orvane {
namespace {

bool Contains(const CStringA& set, char c) {
    return set.view().find(c) != std::string_view::npos;
}

int ReplaceOrRemove(char replacement, char& out) {
    if (replacement == '\0') return kRemoveElement;
    out = replacement;
    return kReplaceElement;
}

}  // namespace

MyCharReplacer::MyCharReplacer(const CStringA& chars, char replacement, bool stripControls,
                               char controlReplacement, const CStringA& keepControls)
    : m_chars(chars),
      m_replacement(replacement),
      m_stripControls(stripControls),
      m_controlReplacement(controlReplacement),
      m_keepControls(keepControls) {}

int MyCharReplacer::operator()(char c, char& out) {
    if (Contains(m_chars, c)) return ReplaceOrRemove(m_replacement, out);
    const auto number = static_cast<signed char>(c);
    if (!m_stripControls || number < 1 || number > 31) return kKeepElement;
    if (Contains(m_keepControls, c)) return kKeepElement;
    return ReplaceOrRemove(m_controlReplacement, out);
}

}  // namespace Orvane

// PainterCaptions: fonts and lines of text as Qt has them, kept for all painters of the process: what is measured eight
// times for each drawing of a caption, and laid out for each, is the same in the next frame.
//
// There must be an application object; when that goes nothing is kept. A thousand texts take about a megabyte; beyond
// a limit all are forgotten. Thread: the user interface's.
#pragma once

#include <QtGui/QFont>
#include <QtGui/QStaticText>
#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "brindle/framework/log_font.h"

namespace brindle {

// A line of text in one font.
struct PainterCaption {
    QString text;
    int width = 0;
    bool plain = false;  // neither control characters nor lines: `laidOut` draws it
    QStaticText laidOut;
};

class PainterFont {
  public:
    explicit PainterFont(const LOGFONTA& record);

    QFont font;
    int height = 0;  // of a line
    int ascent = 0;

  private:
    friend class PainterCaptions;
    // Finds texts without a copy of them.
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    LOGFONTA m_record;
    std::unordered_map<std::string, PainterCaption, Hash, std::equal_to<>> m_captions;
};

class PainterCaptions {
  public:
    // Those of the process; never destroyed.
    static PainterCaptions& Instance();

    // Both are valid until the next call.
    PainterFont& Font(const LOGFONTA& record);
    const PainterCaption& Caption(PainterFont& font, std::string_view text);

    void Clear();
    std::size_t Texts() const noexcept { return m_texts; }

    static constexpr std::size_t kMostFonts = 32, kMostTexts = 4096, kLongestText = 256;

  private:
    static void ForgetApplication();
    void NoteCodePage();

    std::list<PainterFont> m_fonts;  // the last used first
    std::size_t m_texts = 0;
    PainterCaption m_long;              // a text that is too long to keep
    bool m_knowsApplication = false;    // which tells when it goes
    const void* m_codePages = nullptr;  // the service that texts were converted with,
    unsigned m_codePage = 0;            // and its selection
};

}  // namespace brindle

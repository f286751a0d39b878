// Fonts and laid-out texts that are kept. Tests: painter_captions_test.cpp.
#include "brindle/platform/qt/painter_captions.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QFontMetrics>
#include <algorithm>
#include <cstring>

#include "brindle/platform/code_page.h"
#include "brindle/platform/qt/painter_font.h"

namespace brindle {
namespace {

bool Same(const LOGFONTA& a, const LOGFONTA& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

PainterCaption Laid(const PainterFont& font, std::string_view bytes) {
    const std::string utf8 = ToUtf8(bytes);
    PainterCaption caption;
    caption.text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    caption.width = QFontMetrics(font.font).horizontalAdvance(caption.text);
    // Qt draws the lines of a laid-out text elsewhere.
    caption.plain =
        !font.font.underline() && !font.font.strikeOut() &&
        std::all_of(caption.text.begin(), caption.text.end(), [](QChar c) { return c.isPrint(); });
    if (caption.plain) {
        caption.laidOut.setTextFormat(Qt::PlainText);
        caption.laidOut.setPerformanceHint(QStaticText::AggressiveCaching);
        caption.laidOut.setText(caption.text);
    }
    return caption;
}

}  // namespace

PainterFont::PainterFont(const LOGFONTA& record) : font(QtFont(record)), m_record(record) {
    const QFontMetrics metrics(font);
    height = metrics.height();
    ascent = metrics.ascent();
}

PainterCaptions& PainterCaptions::Instance() {
    static PainterCaptions& captions = *new PainterCaptions;
    return captions;
}

void PainterCaptions::ForgetApplication() {
    Instance().Clear();
    Instance().m_knowsApplication = false;
}

void PainterCaptions::Clear() {
    m_fonts.clear();
    m_texts = 0;
    m_long = {};
}

void PainterCaptions::NoteCodePage() {
    CodePage& service = CurrentCodePage();
    const unsigned selected = service.Selected();
    if (m_codePages == &service && m_codePage == selected) return;
    Clear();
    m_codePages = &service;
    m_codePage = selected;
}

PainterFont& PainterCaptions::Font(const LOGFONTA& record) {
    NoteCodePage();
    const auto found = std::find_if(m_fonts.begin(), m_fonts.end(),
                                    [&](const PainterFont& each) { return Same(each.m_record, record); });
    if (found != m_fonts.end()) {
        m_fonts.splice(m_fonts.begin(), m_fonts, found);
        return m_fonts.front();
    }
    if (!m_knowsApplication) qAddPostRoutine(&ForgetApplication);  // fonts must not outlive it
    m_knowsApplication = true;
    if (m_fonts.size() >= kMostFonts) {
        m_texts -= m_fonts.back().m_captions.size();
        m_fonts.pop_back();
    }
    return m_fonts.emplace_front(record);
}

const PainterCaption& PainterCaptions::Caption(PainterFont& font, std::string_view text) {
    if (text.size() > kLongestText) return m_long = Laid(font, text);
    if (const auto found = font.m_captions.find(text); found != font.m_captions.end()) return found->second;
    if (m_texts >= kMostTexts) {
        for (PainterFont& each : m_fonts) each.m_captions.clear();
        m_texts = 0;
    }
    ++m_texts;
    return font.m_captions.emplace(text, Laid(font, text)).first->second;
}

}  // namespace brindle

// OV::Text on the recording surface: a font of height -13 has bytes 7 wide and lines 13 high.
#include "brindle/widgets/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/recording_surface.h"
#include "brindle/platform/screen.h"
#include "brindle/platform/service.h"
#include "testing/layout.h"

namespace brindle {

struct TextLayoutProbe {
    static std::vector<const void*> Fields(const OV::Text& t) {
        return {&t,
                &t.m_text,
                &t.m_subTexts,
                &t.m_font,
                &t.m_highlightFont,
                &t.m_fontColour,
                &t.m_highlightFontColour,
                &t.m_fontHighlighting,
                &t.m_verticalAlignment,
                &t.m_horizontalAlignment,
                &t.m_escapement,
                &t.m_textOffset};
    }
    static const LOGFONTA& Font(const OV::Text& t) { return t.m_font; }
    static const LOGFONTA& HighlightFont(const OV::Text& t) { return t.m_highlightFont; }
    static std::size_t SubTexts(const OV::Text& t) { return t.m_subTexts.size(); }
};

namespace {

using OV::Text;
using Probe = TextLayoutProbe;

class FixedScreen final : public Screen {
  public:
    explicit FixedScreen(int y) : m_y(y) {}
    int DotsPerInchX() override { return 1; }
    int DotsPerInchY() override { return m_y; }

  private:
    int m_y;
};

LOGFONTA Record(const char* face, int height) {
    LOGFONTA record{};
    record.lfHeight = height;
    std::strcpy(record.lfFaceName, face);
    return record;
}

Text::SubText Sub(const char* text, OVDrawing::VerticalAlignment vertical,
                  OVDrawing::HorizontalAlignment horizontal, double scale = 1,
                  OVDrawing::Escapement escapement = OVDrawing::Default) {
    Text::SubText sub;
    sub.text = text;
    sub.fontScale = scale;
    sub.verticalAlignment = vertical;
    sub.horizontalAlignment = horizontal;
    sub.escapement = escapement;
    return sub;
}

std::string Drawn(Text& text, double scale = 1) {
    RecordingSurface surface;
    CDC dc(surface);
    text.Draw(&dc, scale);
    EXPECT_EQ(dc.GetTextColor(), 0u) << "the context is as it was";
    EXPECT_EQ(dc.GetBkMode(), kGroundOpaque);
    EXPECT_EQ(dc.SelectObject(nullptr), nullptr);
    const std::string all = surface.Text(), first = "save\n", last = "restore\n";
    EXPECT_EQ(all.substr(0, first.size()), first);
    EXPECT_EQ(all.substr(all.size() - last.size()), last);
    return all.substr(first.size(), all.size() - first.size() - last.size());
}

TEST(Text, StartsCentredBlackInTenPointArial) {
    for (const auto& [dpi, height] : std::vector<std::pair<int, int>>{{96, -13}, {72, -10}, {120, -17}}) {
        SCOPED_TRACE(dpi);
        FixedScreen screen(dpi);
        const ScopedService<Screen> scope(SetScreen, screen);
        const Text text;
        const LOGFONTA expected = Record("Arial", height);
        EXPECT_EQ(std::memcmp(&Probe::Font(text), &expected, sizeof expected), 0);
        EXPECT_EQ(std::memcmp(&Probe::HighlightFont(text), &expected, sizeof expected), 0);
    }
    Text text;
    EXPECT_EQ(text.GetText(), "");
    EXPECT_EQ(Drawn(text), "");
    text.SetText("ab");
    text.SetBounds({0, 0, 100, 40});
    EXPECT_EQ(Drawn(text), "text \"ab\" at 43 13 within 43 13 57 26 font \"Arial\" -13 colour #000000\n");
}

TEST(Text, TheCaptionStandsInItsBounds) {
    struct Row {
        const char* label;
        std::function<void(Text&)> set;
        double scale;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"5 from the left", [](Text& t) { t.SetHorizontalAlignment(OVDrawing::Left); }, 1,
         R"(text "ab" at 5 13 within 5 13 19 26 font "Arial" -13 colour #000000)"},
        {"5 from the right", [](Text& t) { t.SetHorizontalAlignment(OVDrawing::Right); }, 1,
         R"(text "ab" at 81 13 within 81 13 95 26 font "Arial" -13 colour #000000)"},
        {"at the top", [](Text& t) { t.SetVerticalAlignment(OVDrawing::Top); }, 1,
         R"(text "ab" at 43 0 within 43 0 57 13 font "Arial" -13 colour #000000)"},
        {"at the bottom", [](Text& t) { t.SetVerticalAlignment(OVDrawing::Bottom); }, 1,
         R"(text "ab" at 43 27 within 43 27 57 40 font "Arial" -13 colour #000000)"},
        {"moved", [](Text& t) { t.SetTextOffset(3, -4); }, 1,
         R"(text "ab" at 46 9 within 46 9 60 22 font "Arial" -13 colour #000000)"},
        {"scaled", [](Text&) {}, 1.5,
         R"(text "ab" at 40 10 within 40 10 60 29 font "Arial" -19 colour #000000)"},
        {"coloured", [](Text& t) { t.SetFontColor(0x123456); }, 1,
         R"(text "ab" at 43 13 within 43 13 57 26 font "Arial" -13 colour #123456)"},
        {"upwards", [](Text& t) { t.SetEscapment(OVDrawing::Vertical90); }, 1,
         R"(text "ab" at 44 27 within 5 0 95 40 font "Arial" -13 turned 900/900 colour #000000)"},
        {"another font", [](Text& t) { t.SetFont(Record("Courier", -20)); }, 1,
         R"(text "ab" at 40 10 within 40 10 60 30 font "Courier" -20 colour #000000)"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Text text;
        text.SetText("ab");
        text.SetBounds({0, 0, 100, 40});
        row.set(text);
        EXPECT_EQ(Drawn(text, row.scale), row.expected + std::string("\n"));
        EXPECT_EQ(text.GetBounds(), (CRect{0, 0, 100, 40}));
    }
}

TEST(Text, IsHighlightedWhileTheMouseIsOverItAndItIsEnabled) {
    Text text;
    text.SetText("ab");
    text.SetBounds({0, 0, 100, 40});
    text.SetFontColor(0x000010);
    text.SetHighlightFont(Record("Times", -20));
    text.SetHighlightFontColor(0x0000FF);
    text.AddSubText(Sub("s", OVDrawing::Top, OVDrawing::Left));
    const std::string sub = "text \"s\" at 10 2 within 10 2 17 15 font \"Arial\" -13 colour #32322E\n";
    const std::string normal = "text \"ab\" at 43 13 within 43 13 57 26 font \"Arial\" -13 colour #000010\n";
    const std::string over = "text \"ab\" at 40 10 within 40 10 60 30 font \"Times\" -20 colour #0000FF\n";
    struct Row {
        const char* label;
        bool enabled, mouse;
        const std::string& caption;
    };
    for (const Row& row : std::vector<Row>{{"neither", false, false, normal},
                                           {"enabled only", true, false, normal},
                                           {"mouse only", false, true, normal},
                                           {"both", true, true, over}}) {
        SCOPED_TRACE(row.label);
        text.EnableFontHighlighting(row.enabled);
        row.mouse ? text.OnMouseOver() : text.OnMouseOut();
        EXPECT_EQ(Drawn(text), row.caption + sub) << "secondary captions are never highlighted";
    }
}

TEST(Text, SubTextsStandAtTheirPlaces) {
    struct Row {
        const char* label;
        Text::SubText sub;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"left top", Sub("s", OVDrawing::Top, OVDrawing::Left),
         R"(text "s" at 10 2 within 10 2 17 15 font "Arial" -13)"},
        {"right bottom", Sub("s", OVDrawing::Bottom, OVDrawing::Right),
         R"(text "s" at 83 25 within 83 25 90 38 font "Arial" -13)"},
        {"half as high, rounded up from -6.5", Sub("s", OVDrawing::Top, OVDrawing::Left, 0.5),
         R"(text "s" at 10 2 within 10 2 13 8 font "Arial" -6)"},
        {"turned, its glyphs upright", Sub("s", OVDrawing::Top, OVDrawing::Left, 1, OVDrawing::Vertical270),
         R"(text "s" at 23 2 within 10 2 90 38 font "Arial" -13)"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Text text;
        text.SetBounds({0, 0, 100, 40});
        text.SetTextOffset(50, 50);                // not theirs
        text.SetEscapment(OVDrawing::Vertical90);  // neither
        text.AddSubText(row.sub);
        EXPECT_EQ(Drawn(text), row.expected + std::string(" colour #323232\n"));
    }
    Text text;
    text.SetBounds({0, 0, 100, 40});
    text.AddSubText(Sub("s", OVDrawing::Top, OVDrawing::Left, 0.5));
    EXPECT_EQ(Drawn(text, 2), "text \"s\" at 10 2 within 10 2 16 14 font \"Arial\" -12 colour #323232\n")
        << "rounded before it is scaled";
}

TEST(Text, OneSubTextStandsAtAPlace) {
    Text text;
    text.SetBounds({0, 0, 100, 40});
    text.AddSubText(Sub("a", OVDrawing::Top, OVDrawing::Left));
    text.AddSubText(Sub("b", OVDrawing::Top, OVDrawing::Right));
    text.AddSubText(Sub("c", OVDrawing::Bottom, OVDrawing::Left));
    EXPECT_EQ(Probe::SubTexts(text), 3u) << "either alignment makes another place";
    text.AddSubText(Sub("d", OVDrawing::Top, OVDrawing::Left));
    EXPECT_EQ(Probe::SubTexts(text), 3u);
    std::string order;
    const std::string drawn = Drawn(text);
    for (std::size_t at = 0; (at = drawn.find("text \"", at)) != std::string::npos; at += 6)
        order += drawn[at + 6];
    EXPECT_EQ(order, "bcd") << "the new one is the last";
    text.ClearSubText();
    EXPECT_EQ(Drawn(text), "");
}

TEST(Text, CopiesHaveEverything) {
    Text text;
    text.SetText("ab");
    text.SetBounds({0, 0, 100, 40});
    text.SetFontColor(0xFF);
    text.AddSubText(Sub("a", OVDrawing::Top, OVDrawing::Left));
    Text copy = text;
    EXPECT_EQ(Drawn(copy), Drawn(text));
    Text assigned;
    assigned = text;
    EXPECT_EQ(Drawn(assigned), Drawn(text));
}

TEST(Text, NothingIsDrawnWithoutAContext) {
    Text text;
    text.SetText("ab");
    text.Draw(nullptr, 1);
}

TEST(TextLayoutOfFields, FieldsStandInTheirOrder) {
    const Text text;
    const std::vector<const void*> fields = Probe::Fields(text);
    for (std::size_t i = 1; i < fields.size(); ++i) EXPECT_LT(fields[i - 1], fields[i]) << i;
    EXPECT_EQ(testing::SlotOf(&Text::Draw), 2u);
}

}  // namespace
}  // namespace brindle

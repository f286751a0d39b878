// Kept fonts and texts: measured and drawn as Qt does without them, within limits.
#include "brindle/platform/qt/painter_captions.h"

#include <gtest/gtest.h>

#include <QtGui/QFontMetrics>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <cstring>
#include <string>
#include <vector>

#include "brindle/platform/code_page.h"
#include "brindle/platform/qt/painter_font.h"
#include "brindle/platform/qt/painter_surface.h"
#include "brindle/platform/qt/qt_test_application.h"

namespace brindle {
namespace {

LOGFONTA Arial(int height, int escapement = 0) {
    LOGFONTA font{};
    font.lfHeight = height;
    font.lfEscapement = font.lfOrientation = escapement;
    std::strcpy(font.lfFaceName, "Arial");
    return font;
}

class PainterCaptionsTest : public ::testing::Test {
  protected:
    PainterCaptionsTest() {
        testing::NeedQtApplication();
        Captions().Clear();
    }
    static PainterCaptions& Captions() { return PainterCaptions::Instance(); }
    static CSize Extent(const LOGFONTA& font, std::string_view text) {
        QImage image(1, 1, QImage::Format_RGB32);
        QPainter painter(&image);
        PainterSurface surface(painter);
        CSize extent;
        EXPECT_TRUE(surface.TextExtent(font, text, extent));
        return extent;
    }
};

template <class Draw>
QImage Drawn(double scale, const Draw& draw) {
    QImage image(200, 120, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(scale, scale);
    draw(painter);
    return image;
}

TEST_F(PainterCaptionsTest, TextsAreDrawnAsQtDrawsThem) {
    struct Row {
        const char* label;
        LOGFONTA font;
        const char* text;
        double scale;
    };
    LOGFONTA slanting = Arial(-15);
    slanting.lfItalic = 1;
    LOGFONTA marked = Arial(-15);
    marked.lfUnderline = marked.lfStrikeOut = marked.lfItalic = 1;
    const std::vector<Row> rows = {
        {"upright", Arial(-13), "On air: AVWA fi", 1},
        {"upwards", Arial(-13, 900), "On air", 1},
        {"downwards", Arial(-13, -900), "On air", 1},
        {"smaller", Arial(-13), "On air", 0.75},
        {"larger", Arial(-13), "On air", 2},
        {"slanting", slanting, "On air", 1},
        {"underlined, struck out, slanting", marked, "On air", 1},
        {"beyond ASCII", Arial(-13), "\xC4gypten \x80", 1},
        {"a line break is a character", Arial(-13), "On\nair", 1},
        {"nothing", Arial(-13), "", 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        const QFont font = QtFont(row.font);
        const QString text = QString::fromStdString(ToUtf8(row.text));
        const QImage expected = Drawn(row.scale, [&](QPainter& painter) {
            painter.setFont(font);
            painter.setPen(Qt::black);
            painter.setClipRect(0, 0, 200, 120, Qt::IntersectClip);
            painter.translate(50, 45);
            painter.rotate(-row.font.lfEscapement / 10.0);
            painter.drawText(0, QFontMetrics(font).ascent(), text);
        });
        for (const char* time : {"first", "again"}) {
            SCOPED_TRACE(time);
            EXPECT_EQ(Drawn(row.scale,
                            [&](QPainter& painter) {
                                PainterSurface surface(painter);
                                surface.DrawRun({row.text, {50, 45}, {0, 0, 200, 120}, row.font});
                            }),
                      expected);
        }
        EXPECT_EQ(Extent(row.font, row.text).cx, QFontMetrics(font).horizontalAdvance(text));
        EXPECT_EQ(Extent(row.font, row.text).cy, QFontMetrics(font).height());
    }
}

TEST_F(PainterCaptionsTest, FontsThatDifferInAnythingAreOthers) {
    LOGFONTA heavy = Arial(-20);
    heavy.lfWeight = 700;
    EXPECT_GT(Extent(heavy, "illicit").cx, Extent(Arial(-20), "illicit").cx);
    EXPECT_GT(Extent(Arial(-21), "illicit").cx, Extent(Arial(-20), "illicit").cx);
    EXPECT_GT(Extent(heavy, "illicit").cx, Extent(Arial(-20), "illicit").cx) << "and are found again";
}

TEST_F(PainterCaptionsTest, LimitsHold) {
    for (std::size_t i = 0; i < PainterCaptions::kMostTexts + 10; ++i) {
        Extent(Arial(-13), std::to_string(i));
        ASSERT_LE(Captions().Texts(), PainterCaptions::kMostTexts);
    }
    EXPECT_GT(Captions().Texts(), 0u);
    Captions().Clear();
    for (int height = 1; height <= static_cast<int>(PainterCaptions::kMostFonts) + 5; ++height)
        Extent(Arial(-height), "text");
    EXPECT_EQ(Captions().Texts(), PainterCaptions::kMostFonts) << "those of forgotten fonts are not counted";
    Captions().Clear();
    EXPECT_EQ(Captions().Texts(), 0u);
    const std::string longText(PainterCaptions::kLongestText + 1, 'i');
    EXPECT_GT(Extent(Arial(-13), longText).cx, 0);
    EXPECT_EQ(Captions().Texts(), 0u) << "long ones are not kept";
}

TEST_F(PainterCaptionsTest, AnotherCodePageHasOtherTexts) {
    const char* text = "\xC3\xA9";
    const int two = Extent(Arial(-20), text).cx;
    ASSERT_TRUE(CurrentCodePage().Select(kCodePageUtf8));
    const int one = Extent(Arial(-20), text).cx;
    ASSERT_TRUE(CurrentCodePage().Select(1252));
    EXPECT_LT(one, two);
    EXPECT_EQ(Extent(Arial(-20), text).cx, two);
}

}  // namespace
}  // namespace brindle

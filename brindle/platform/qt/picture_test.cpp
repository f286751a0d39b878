// Frames and rectangles beside recorded pictures of them; how they are compared says picture_test_kit.h.
#include <QtGui/QPainter>

#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/qt/picture_test_kit.h"
#include "brindle/widgets/ov_drawing.h"
#include "brindle/widgets/rectangle.h"
#include "testing/vectors.h"

namespace brindle::testing {
namespace {

void DrawFrame(CDC& dc, const nlohmann::json& p) {
    OVDrawing::DrawFrame(&dc, Rect(p["rect"]), Number(p["colour1"]), Number(p["colour2"]),
                         Number(p["border_colour"]), p["border_width"], p["pen_style"], p["fill_mode"],
                         p["hollow"], {p["roundness_x"], p["roundness_y"]});
}

// The outline of a glossy frame, as wide as its edge and a pixel on each side.
QImage FrameClipEnds(const nlohmann::json& p) {
    if (p["fill_mode"] != 3) return {};
    QImage mask = Mask(p);
    QPainter painter(&mask);
    PainterContext context(painter);
    OVDrawing::DrawFrame(&context.DC(), Rect(p["rect"]), 0, 0, 0, 2, 0, 0, true,
                         {p["roundness_x"], p["roundness_y"]});
    return mask;
}

int FrameCornerWidth(const nlohmann::json& p) {
    return p["roundness_x"] == 0 || p["roundness_y"] == 0 ? p["border_width"].get<int>() : 0;
}

void DrawRectangle(CDC& dc, const nlohmann::json& p) {
    OV::Rectangle rectangle;
    rectangle.SetBounds(Rect(p["rect"]));
    rectangle.SetColor(Number(p["colour"]));
    rectangle.SetBorderColor(Number(p["border_colour"]));
    rectangle.SetOpacity(p["opacity"]);
    rectangle.SetRoundness(p["roundness"]);
    rectangle.SetBorderThickness(p["border_thickness"]);
    rectangle.Draw(&dc, 1);
}

QImage RectangleHiddenEdges(const nlohmann::json& p) {
    if (p["opacity"] == 255) return {};
    nlohmann::json edge = p;
    edge.update({{"opacity", 255}, {"colour", "0xFFFFFF"}, {"border_colour", "0"}, {"border_thickness", 2}});
    QImage mask = Mask(p);
    QPainter painter(&mask);
    PainterContext context(painter);
    DrawRectangle(context.DC(), edge);
    return mask;
}

int RectangleCornerWidth(const nlohmann::json& p) {
    return p["roundness"] <= 0 || p["roundness"] > 100 ? p["border_thickness"].get<int>() : 0;
}

TEST(Pictures, Frames) {
    BRINDLE_VECTORS_OR_SKIP(index, "images/index.json");
    WriteSheet(
        Worst(ComparePictures(index, {"frame", 70, DrawFrame, FrameClipEnds, nullptr, FrameCornerWidth})),
        "frames_worst");
}

TEST(Pictures, Rectangles) {
    BRINDLE_VECTORS_OR_SKIP(index, "images/index.json");
    WriteSheet(Worst(ComparePictures(index, {"rectangle", 24, DrawRectangle, nullptr, RectangleHiddenEdges,
                                             RectangleCornerWidth})),
               "rectangles_worst");
}

}  // namespace
}  // namespace brindle::testing

// Buttons beside recorded pictures of them; how they are compared says picture_test_kit.h. The pictures have no
// captions.
#include <QtGui/QPainter>
#include <algorithm>
#include <iterator>

#include "brindle/platform/drawing_surface.h"
#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/qt/picture_test_kit.h"
#include "brindle/widgets/button.h"
#include "brindle/widgets/rounded_rectangle.h"
#include "testing/vectors.h"

namespace brindle::testing {
namespace {

using OV::Button;

void DrawButton(CDC& dc, const nlohmann::json& p) {
    Button button;
    button.SetBounds(Rect(p["rect"]));
    button.SetColor(Number(p["colour"]));
    button.SetSecondaryColor(Number(p["secondary_colour"]));
    button.SetSelectedColor(Number(p["selected_colour"]));
    button.SetBorderColor(Number(p["border_colour"]));
    button.SetOpacity(p["opacity"]);
    button.SetRoundness(p["roundness"]);
    button.SetBorderThickness(p["border_thickness"]);
    button.SetFillMode(static_cast<Button::FillModeEnum>(p["fill_mode"].get<int>()));
    button.SetSelectedMode(static_cast<Button::SelectedModeTypeEnum>(p["selected_mode"].get<int>()));
    button.SetEscapment(static_cast<OVDrawing::Escapement>(p["escapement"].get<int>()));
    if (p["pressed"]) button.OnMouseDown();
    button.SetSelected(p["selected"]);
    button.SetDisabled(p["disabled"]);
    button.Draw(&dc, 1);
}

// The area of the highlight, by the caption's turn.
RectF Highlight(const RectF& frame, int escapement) {
    if (escapement == OVDrawing::Vertical90) return {frame.x, frame.y, frame.width / 2, frame.height};
    if (escapement == OVDrawing::Vertical270)
        return {frame.x + frame.width / 2, frame.y, frame.width / 2, frame.height};
    return {frame.x, frame.y, frame.width, frame.height / 2};
}

// The outlines that the highlight and the glow are clipped to, as wide as their edges and a pixel on each side.
QImage ButtonClipEnds(const nlohmann::json& p) {
    const bool hasHighlight = p["fill_mode"] == Button::FillGlossy && !p["pressed"] && !p["disabled"];
    if (p["fill_mode"] == Button::FillNone || !(hasHighlight || p["selected"])) return {};
    QImage mask = Mask(p);
    QPainter painter(&mask);
    PainterContext context(painter);
    DrawingSurface& surface = context.DC().Surface();
    const CRect bounds = Rect(p["rect"]);
    const RectF frame = FrameRectangle(bounds);
    const int radius = CornerRadius(bounds, p["roundness"]);
    const ShapeScope shapes(surface, true);
    surface.DrawPath(RoundedRectangle(frame, radius), {0xFF000000, 2});
    if (hasHighlight)
        surface.DrawPath(RoundedRectangle(Highlight(frame, p["escapement"]), radius), {0xFF000000, 2});
    return mask;
}

int ButtonCornerWidth(const nlohmann::json& p) {
    return CornerRadius(Rect(p["rect"]), p["roundness"]) == 0 ? p["border_thickness"].get<int>() : 0;
}

bool IsOrdinary(const nlohmann::json& p) {
    return p["roundness"] == 10 && p["opacity"] == 255 && p["border_thickness"] == 2 &&
           p["colour"] == "0xB46E3C" && p["background"] == "0xFFFFFF";
}
bool IsPlain(const nlohmann::json& p) {
    return IsOrdinary(p) && !p["pressed"] && !p["selected"] && !p["disabled"] && p["escapement"] == 0;
}
bool HasState(const nlohmann::json& p) {
    return IsOrdinary(p) && p["fill_mode"] == 0 && (p["pressed"] || p["disabled"]);
}
bool IsSelected(const nlohmann::json& p) {
    return p["opacity"] == 255 && p["selected"] && p["background"] == "0xFFFFFF" && p["roundness"] == 100;
}
bool IsTurned(const nlohmann::json& p) {
    return p["escapement"] != 0 && p["background"] == "0xFFFFFF";
}

std::vector<Comparison> Those(const std::vector<Comparison>& all, bool (*wanted)(const nlohmann::json&)) {
    std::vector<Comparison> chosen;
    std::copy_if(all.begin(), all.end(), std::back_inserter(chosen),
                 [&](const Comparison& c) { return wanted(c.parameters); });
    return chosen;
}

TEST(Pictures, Buttons) {
    BRINDLE_VECTORS_OR_SKIP(index, "images/index.json");
    const auto all =
        ComparePictures(index, {"button", 150, DrawButton, ButtonClipEnds, nullptr, ButtonCornerWidth});
    WriteSheet(Worst(all), "buttons_worst");
    WriteSheet(Those(all, IsPlain), "buttons_fill_modes");
    WriteSheet(Those(all, IsSelected), "buttons_selected_modes");
    WriteSheet(Those(all, HasState), "buttons_states");
    WriteSheet(Those(all, IsTurned), "buttons_escapements");
}

}  // namespace
}  // namespace brindle::testing

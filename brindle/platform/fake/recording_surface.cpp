// The recording surface: operations as text. Tests: drawing_surface_test.cpp, and every test of a widget.
#include "brindle/platform/fake/recording_surface.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace brindle {
namespace {

std::string Number(float value) {
    char buffer[64];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

std::string Hex(std::uint32_t value, int digits) {
    std::string text = "#";
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text += "0123456789ABCDEF"[(value >> shift) & 15];
    return text;
}

std::string Text(PointF p) {
    return Number(p.x) + " " + Number(p.y);
}
std::string Text(const RectF& r) {
    return Number(r.x) + " " + Number(r.y) + " " + Number(r.width) + " " + Number(r.height);
}
std::string Text(const CRect& r) {
    return std::to_string(r.left) + " " + std::to_string(r.top) + " " + std::to_string(r.right) + " " +
           std::to_string(r.bottom);
}

std::string Text(const Paint& paint) {
    static constexpr const char* kNames[] = {"solid", "horizontal", "vertical", "centre"};
    std::string text = kNames[static_cast<int>(paint.kind)];
    text += " " + Hex(paint.first, 8);
    if (paint.kind == Paint::Kind::kSolid) return text;
    text += " " + Hex(paint.second, 8) + " over " + Text(paint.area);
    if (paint.kind == Paint::Kind::kCentre) text += " from " + Text(paint.centre);
    return text;
}

std::string Text(const Pen& pen) {
    static constexpr const char* kNames[] = {"", " dash", " dot", " dash-dot", " dash-dot-dot"};
    return Hex(pen.colour, 8) + " width " + Number(pen.width) + kNames[static_cast<int>(pen.dash)] +
           (pen.dash != DashStyle::kSolid && pen.roundDashes ? " round" : "");
}

std::string Text(const ShapePath::Step& step) {
    using Kind = ShapePath::StepKind;
    switch (step.kind) {
        case Kind::kArc:
            return "arc " + Text(step.box) + " from " + Number(step.start) + " by " + Number(step.sweep);
        case Kind::kLine:
            return "line " + Text(step.from) + " to " + Text(step.to);
        case Kind::kEllipse:
            return "ellipse " + Text(step.box);
        case Kind::kRectangle:
            return "rectangle " + Text(step.box);
        case Kind::kClose:
            break;
    }
    return "close";
}

std::string Text(const LOGFONTA& font) {
    std::string text = "\"" + std::string(font.lfFaceName) + "\" " + std::to_string(font.lfHeight);
    if (font.lfEscapement || font.lfOrientation)
        text += " turned " + std::to_string(font.lfEscapement) + "/" + std::to_string(font.lfOrientation);
    if (font.lfWeight) text += " weight " + std::to_string(font.lfWeight);
    if (font.lfItalic) text += " italic";
    if (font.lfUnderline) text += " underline";
    if (font.lfStrikeOut) text += " strikeout";
    return text;
}

std::int32_t Height(const LOGFONTA& font) {
    constexpr std::int64_t kLargest = 100'000;
    if (font.lfHeight == 0) return 16;
    return static_cast<std::int32_t>(std::min(std::abs(std::int64_t{font.lfHeight}), kLargest));
}

}  // namespace

void RecordingSurface::Line(const std::string& text) {
    if (m_inShapes) m_text += "error: inside shapes: ";
    m_text += text + "\n";
}

void RecordingSurface::Shape(const std::string& text) {
    m_text += (m_inShapes ? "  " : "error: outside shapes: ") + text + "\n";
}

void RecordingSurface::Path(const ShapePath& path) {
    for (const ShapePath::Step& step : path.Steps()) m_text += "    " + brindle::Text(step) + "\n";
}

void RecordingSurface::Save() {
    ++m_saved;
    Line("save");
}

void RecordingSurface::Restore() {
    Line(m_saved > 0 ? "restore" : "error: restore without save");
    if (m_saved > 0) --m_saved;
}

void RecordingSurface::ClipToRectangle(const CRect& rectangle) {
    Line("clip " + brindle::Text(rectangle));
}

void RecordingSurface::BeginShapes() {
    Line("shapes");
    m_inShapes = true;
}

void RecordingSurface::EndShapes() {
    if (!m_inShapes) m_text += "error: end of shapes that have not begun\n";
    m_inShapes = false;
    m_text += "end\n";
}

void RecordingSurface::SetSmooth(bool smooth) {
    Shape(smooth ? "smooth" : "not smooth");
}

void RecordingSurface::ClipShapes(const ShapePath& path, bool also) {
    Shape(also ? "clip also" : "clip");
    Path(path);
}

void RecordingSurface::UnclipShapes() {
    Shape("unclip");
}

void RecordingSurface::FillPath(const ShapePath& path, const Paint& paint) {
    Shape("fill " + brindle::Text(paint));
    Path(path);
}

void RecordingSurface::FillArea(const RectF& area, const Paint& paint) {
    Shape("fill area " + brindle::Text(area) + " " + brindle::Text(paint));
}

void RecordingSurface::DrawPath(const ShapePath& path, const Pen& pen) {
    Shape("draw " + brindle::Text(pen));
    Path(path);
}

bool RecordingSurface::TextExtent(const LOGFONTA& font, std::string_view text, CSize& extent) {
    if (!fonts) return false;
    extent = {static_cast<std::int32_t>(text.size()) * ((Height(font) + 1) / 2), Height(font)};
    return true;
}

bool RecordingSurface::DrawRun(const TextRun& run) {
    if (!fonts) return false;
    Line("text \"" + std::string(run.text) + "\" at " + std::to_string(run.at.x) + " " +
         std::to_string(run.at.y) + " within " + brindle::Text(run.clip) + " font " +
         brindle::Text(run.font) + " colour " + Hex(run.colour, 6) + (run.opaque ? " opaque" : ""));
    return true;
}

void RecordingSurface::DrawPicture(const PicturePart& part) {
    Line("picture " + std::to_string(part.image.width) + "x" + std::to_string(part.image.height) + " frame " +
         std::to_string(part.frame) + " of " + std::to_string(part.image.frames) + " part " +
         brindle::Text(part.source) + " into " + brindle::Text(part.target) +
         (part.mirrored ? " mirrored" : "") + (part.upsideDown ? " upside down" : ""));
}

}  // namespace brindle

// What shapes are made of and painted with, as handed to a drawing surface: paths, paints and pens. Plain values;
// colours are 0xAARRGGBB, coordinates the surface's own in single precision, angles in degrees clockwise from the
// right.
#pragma once

#include <cstdint>
#include <vector>

namespace brindle {

using Argb = std::uint32_t;

struct PointF {
    float x = 0;
    float y = 0;
};

struct RectF {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;
};

// A path as the steps that make it. Each step goes on from where the last one of its figure ended, with a straight line
// when it begins elsewhere. An arc in a box that is not wider and higher than 0 adds nothing.
class ShapePath {
  public:
    enum class StepKind { kArc, kLine, kEllipse, kRectangle, kClose };
    struct Step {
        StepKind kind = StepKind::kClose;
        RectF box;                   // of the arc, ellipse or rectangle
        float start = 0, sweep = 0;  // of the arc
        PointF from, to;             // of the line
    };

    ShapePath& Arc(const RectF& box, float start, float sweep) {
        m_steps.push_back({StepKind::kArc, box, start, sweep, {}, {}});
        return *this;
    }
    ShapePath& Line(PointF from, PointF to) {
        m_steps.push_back({StepKind::kLine, {}, 0, 0, from, to});
        return *this;
    }
    ShapePath& Ellipse(const RectF& box) {
        m_steps.push_back({StepKind::kEllipse, box, 0, 0, {}, {}});
        return *this;
    }
    ShapePath& Rectangle(const RectF& box) {
        m_steps.push_back({StepKind::kRectangle, box, 0, 0, {}, {}});
        return *this;
    }
    ShapePath& Close() {
        m_steps.push_back({});
        return *this;
    }
    const std::vector<Step>& Steps() const noexcept { return m_steps; }

  private:
    std::vector<Step> m_steps;
};

// One colour, or two between which it changes. Outside its area a linear gradient repeats; without width or height
// it paints nothing.
struct Paint {
    enum class Kind {
        kSolid,       // first
        kHorizontal,  // first at the left of the area, second at its right
        kVertical,    // first at the top, second at the bottom
        kCentre,      // first at the centre, second on the ellipse in the area and nothing outside it
    };
    Kind kind = Kind::kSolid;
    Argb first = 0;
    Argb second = 0;
    RectF area;
    PointF centre;

    static Paint Solid(Argb colour) { return {Kind::kSolid, colour, colour, {}, {}}; }
    static Paint Horizontal(const RectF& area, Argb left, Argb right) {
        return {Kind::kHorizontal, left, right, area, {}};
    }
    static Paint Vertical(const RectF& area, Argb top, Argb bottom) {
        return {Kind::kVertical, top, bottom, area, {}};
    }
    static Paint Centre(const RectF& ellipse, PointF centre, Argb inside, Argb edge) {
        return {Kind::kCentre, inside, edge, ellipse, centre};
    }
};

enum class DashStyle { kSolid, kDash, kDot, kDashDot, kDashDotDot };

// Corners are mitred; the ends of dashes are round where `roundDashes` says so.
struct Pen {
    Argb colour = 0;
    float width = 1;  // in the surface's coordinates
    DashStyle dash = DashStyle::kSolid;
    bool roundDashes = false;
};

}  // namespace brindle

// NotingWidget: a widget that writes down what it is told, in a notebook that several may share: one line for each
// call, beginning with the widget's name. What it draws is a line of text in its bounds: its name, and the scale in
// percent where it is not 100.
#pragma once

#include <cmath>
#include <functional>
#include <string>
#include <string_view>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/drawing_surface.h"
#include "brindle/widgets/widget.h"

namespace brindle::testing {

class NotingWidget : public OV::Widget {
  public:
    NotingWidget(std::string name, std::string& notes) : m_name(std::move(name)), m_notes(notes) {}
    ~NotingWidget() override {
        if (noteEnd) Note("gone");
    }

    void Draw(CDC* dc, double scale) override {
        const CRect& bounds = GetBounds();
        const std::string text =
            m_name + (scale == 1 ? "" : " " + std::to_string(std::lround(scale * 100)) + "%");
        dc->Surface().DrawRun({text, {bounds.left, bounds.top}, bounds, {}});
        if (whenDrawn) whenDrawn();
    }
    using Widget::OnMouseDown, Widget::OnMouseOver, Widget::OnMouseUp;
    bool OnMouseOver(CPoint point) override { return Told("over", point); }
    void OnMouseOut() override { Note("out"); }
    bool OnMouseDown(CPoint point) override {
        const bool answered = Told("down", point);
        if (whenPressed) whenPressed();
        return answered;
    }
    bool OnMouseUp(CPoint point) override { return Told("up", point); }

    bool answer = false;   // of the operations with a point
    bool noteEnd = false;  // whether its destruction is noted
    std::function<void()> whenPressed, whenDrawn;

  private:
    bool Told(std::string_view what, CPoint point) {
        Note(std::string(what) + " " + std::to_string(point.x) + " " + std::to_string(point.y));
        return answer;
    }
    void Note(std::string_view what) { m_notes += m_name + " " + std::string(what) + "\n"; }

    std::string m_name;
    std::string& m_notes;
};

}  // namespace brindle::testing

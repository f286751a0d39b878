// Puts a widget's bounds back, whatever happens while they are others. The widget must outlive it.
#pragma once

#include "brindle/widgets/widget.h"

namespace brindle {

class KeptBounds {
  public:
    explicit KeptBounds(OV::Widget& widget) : m_widget(widget), m_bounds(widget.GetBounds()) {}
    KeptBounds(const KeptBounds&) = delete;
    KeptBounds& operator=(const KeptBounds&) = delete;
    ~KeptBounds() { m_widget.SetBounds(m_bounds); }

  private:
    OV::Widget& m_widget;
    CRect m_bounds;
};

}  // namespace brindle

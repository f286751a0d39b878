// What tests see of a scroll panel's inside.
#pragma once

#include <vector>

#include "brindle/widgets/scroll_panel.h"

namespace brindle {

struct ScrollPanelLayoutProbe {
    static std::vector<const void*> Fields(const OV::ScrollPanel& p) {
        return {&p, &p.m_contents, &p.m_upArrow, &p.m_downArrow, &p.m_thumb, &p.m_offset, &p.m_capturedPart};
    }
    static int Offset(const OV::ScrollPanel& p) { return p.m_offset; }
    static void Scroll(OV::ScrollPanel& p, int offset) { p.m_offset = offset; }
    static int Captured(const OV::ScrollPanel& p) { return p.m_capturedPart; }
    static int Hit(const OV::ScrollPanel& p, CPoint point) { return p.HitTest(point); }
    // Up arrow, down arrow, thumb.
    static std::vector<CRect> Parts(const OV::ScrollPanel& p) {
        return {p.m_upArrow, p.m_downArrow, p.m_thumb};
    }
};

}  // namespace brindle

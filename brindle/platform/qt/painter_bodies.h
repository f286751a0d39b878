// PainterBodies: finished pictures of shapes that many widgets draw alike, kept for all painters of the process.
//
// A body is drawn once for each look, scale and place within a pixel, and copied after that. It is always drawn by way
// of its picture, so that the first and every later drawing are the same pixel by pixel. Kept are those used last, up
// to a limit. Thread: the user interface's.
#pragma once

#include <QtGui/QImage>
#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "brindle/platform/drawing_surface.h"

class QPainter;
class QTransform;

namespace brindle {

class PainterBodies {
  public:
    // Those of the process; never destroyed.
    static PainterBodies& Instance();

    explicit PainterBodies(std::size_t limit) : m_limit(limit) {}

    // False, nothing drawn, where a picture would not look the same: for painters that do not draw into pixels, are
    // turned, or blend in another way, and for shapes of unknown or very large extent.
    bool Draw(QPainter& painter, const SharedShapes& shapes, CPoint at);

    void Clear();
    // The limit of bytes that are kept; 0 keeps nothing. Drops what is beyond it.
    void SetLimit(std::size_t bytes);
    std::size_t Bytes() const noexcept { return m_bytes; }
    std::size_t Drawn() const noexcept { return m_drawn; }  // bodies that were not copied, so far

  private:
    struct Body {
        std::string key;
        QImage picture;
        QPoint offset;  // from the pixel that the shapes' place is in
    };
    struct Place;
    using Bodies = std::list<Body>;

    const Body& Find(const SharedShapes& shapes, const Place& place);
    void Shrink(std::size_t limit);

    Bodies m_bodies;  // the last used first
    std::unordered_map<std::string_view, Bodies::iterator> m_byKey;
    std::size_t m_limit;
    std::size_t m_bytes = 0;
    std::size_t m_drawn = 0;
    std::string m_key;  // of the last look-up; kept for its memory
    QImage m_sheet;     // bodies are drawn on it before they are kept
};

}  // namespace brindle

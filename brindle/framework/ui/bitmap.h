// CBitmap: pixels that can be drawn onto a device context. Thread: the user interface's.
#pragma once

#include <cstdint>
#include <memory>

#include "brindle/framework/export.h"
#include "brindle/framework/point.h"

namespace brindle {
struct Image;
}

class BRINDLE_API CBitmap {
  public:
    CBitmap() noexcept;
    CBitmap(const CBitmap&) = delete;
    CBitmap& operator=(const CBitmap&) = delete;
    ~CBitmap();

    // Makes the pixels, copied from `pixels` (row by row from the top, 0x00RRGGBB), or black when that is null; earlier
    // ones are dropped. 1, or 0, nothing changed, when a size is not positive or above 16384.
    int CreateBitmap(int width, int height, const std::uint32_t* pixels);
    // 0 when there were none.
    int DeleteObject() noexcept;

    // The size in pixels; (0, 0) when there are none.
    CSize GetSize() const noexcept;
    // Row by row from the top, 0xFFRRGGBB, valid as long as the pixels; null when there are none.
    const std::uint32_t* GetPixels() const noexcept;
    // A size the host notes down; nothing here depends on it. Setting returns the one before.
    CSize SetBitmapDimension(int width, int height) noexcept;
    CSize GetBitmapDimension() const noexcept { return m_dimension; }

    // For drawing; null when there are no pixels. It stays the bitmap's.
    const brindle::Image* Picture() const noexcept { return m_image.get(); }

  private:
    std::unique_ptr<brindle::Image> m_image;
    CSize m_dimension;
};

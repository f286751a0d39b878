// CBitmap. Tests: bitmap_test.cpp.
#include "brindle/framework/ui/bitmap.h"

#include <utility>

#include "brindle/platform/image.h"

namespace {
constexpr int kLargestSide = 16384;
constexpr std::uint32_t kOpaque = 0xFF000000;
}  // namespace

CBitmap::CBitmap() noexcept = default;
CBitmap::~CBitmap() = default;

int CBitmap::CreateBitmap(int width, int height, const std::uint32_t* pixels) {
    if (width <= 0 || height <= 0 || width > kLargestSide || height > kLargestSide) return 0;
    auto image = std::make_unique<brindle::Image>();
    image->width = width;
    image->height = height;
    image->frames = 1;
    image->pixels.assign(image->PixelsOfFrame(), kOpaque);
    if (pixels)
        for (std::uint32_t& pixel : image->pixels) pixel = kOpaque | *pixels++;
    m_image = std::move(image);
    return 1;
}

int CBitmap::DeleteObject() noexcept {
    const bool made = m_image != nullptr;
    m_image.reset();
    m_dimension = {};
    return made ? 1 : 0;
}

CSize CBitmap::GetSize() const noexcept {
    return m_image ? CSize{m_image->width, m_image->height} : CSize();
}

const std::uint32_t* CBitmap::GetPixels() const noexcept {
    return m_image ? m_image->pixels.data() : nullptr;
}

CSize CBitmap::SetBitmapDimension(int width, int height) noexcept {
    return std::exchange(m_dimension, CSize{width, height});
}

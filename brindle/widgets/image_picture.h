// ImagePicture: a picture object over decoded frames: counted, measured by a resolution, drawn by parts. One frame at a
// time is current. Internal. Thread: the user interface's. Tests: image_picture_test.cpp.
#pragma once

#include <cstdint>

#include "brindle/framework/ui/picture.h"
#include "brindle/platform/image.h"

namespace brindle {

// How a length in pixels is told in hundredths of a millimetre, and taken back. Every whole number of pixels comes back
// as itself, below 1270 dots per inch at least.
struct PictureScale {
    std::int32_t dotsPerInch = 96;
    bool rounded = true;  // else cut

    std::int64_t ToMetric(std::int32_t pixels) const noexcept;
    std::int64_t ToPixels(std::int64_t metric) const noexcept;
};

class ImagePicture : public IPicture {
  public:
    // The image has a frame and a size. The object starts with one reference.
    ImagePicture(Image image, PictureScale across, PictureScale down);
    ImagePicture(const ImagePicture&) = delete;
    ImagePicture& operator=(const ImagePicture&) = delete;

    HRESULT QueryInterface(const GUID& id, void** object) override;
    unsigned long AddRef() override;
    unsigned long Release() override;
    HRESULT get_Width(long* width) override;
    HRESULT get_Height(long* height) override;
    // What lies outside the picture is left out. kInterfaceFailed when nothing remains, or a number is beyond a
    // thousand million.
    HRESULT Render(CDC* dc, long x, long y, long cx, long cy, long sourceX, long sourceY, long sourceCx,
                   long sourceCy, const CRect* bounds) override;

  protected:
    virtual ~ImagePicture();

    const Image& Frames() const noexcept { return m_image; }
    std::uint32_t m_frame = 0;  // the current one

  private:
    Image m_image;
    PictureScale m_across, m_down;
    unsigned long m_references = 1;
};

}  // namespace brindle

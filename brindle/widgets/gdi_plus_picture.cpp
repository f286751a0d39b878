// Pictures that step through their frames. Tests: image_picture_test.cpp.
#include "brindle/widgets/gdi_plus_picture.h"

#include <utility>

namespace brindle {
namespace {

constexpr PictureScale kPoints{72, false};
constexpr std::uint32_t kMillisecondsPerUnit = 10;  // of a file's delays
constexpr std::uint32_t kDelayOfNone = 10;          // in milliseconds

}  // namespace

GdiPlusPicture::GdiPlusPicture(Image image) : ImagePicture(std::move(image), kPoints, kPoints) {}

GdiPlusPicture::~GdiPlusPicture() = default;

HRESULT GdiPlusPicture::QueryInterface(const GUID& id, void** object) {
    if (!object || id != kPictureAnimationId) return ImagePicture::QueryInterface(id, object);
    *object = static_cast<IPictureAnimation*>(this);
    return kInterfaceOk;
}

bool GdiPlusPicture::IsAnimated() {
    return Frames().frames > 1;
}

bool GdiPlusPicture::Advance(std::uint32_t, std::uint32_t& delay) {
    if (++m_frame == Frames().frames) m_frame = 0;
    delay = Frames().delays.empty() ? kDelayOfNone : kMillisecondsPerUnit * Frames().delays[m_frame];
    return true;
}

}  // namespace brindle

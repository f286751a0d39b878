// Picture objects over decoded frames. Tests: image_picture_test.cpp.
#include "brindle/widgets/image_picture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/drawing_surface.h"

namespace brindle {
namespace {

constexpr std::int64_t kMetricPerInch = 2540;  // hundredths of a millimetre
constexpr std::int64_t kFar = 1'000'000'000;

std::int64_t RoundedQuotient(std::int64_t value, std::int64_t divisor) noexcept {
    return (value < 0 ? value - divisor / 2 : value + divisor / 2) / divisor;
}

bool IsFar(long value) noexcept {
    return value > kFar || value < -kFar;
}

struct Span {
    std::int64_t from, to;
};

// Puts both the right way round and cuts them to what the picture holds. False when nothing remains.
bool FitAxis(Span& source, Span& target, std::int64_t size, bool& flipped) {
    flipped = (source.from > source.to) != (target.from > target.to);
    if (source.from > source.to) std::swap(source.from, source.to);
    if (target.from > target.to) std::swap(target.from, target.to);
    const Span held{std::max<std::int64_t>(source.from, 0), std::min(source.to, size)};
    if (held.from >= held.to || target.from >= target.to) return false;
    const double scale =
        static_cast<double>(target.to - target.from) / static_cast<double>(source.to - source.from);
    std::int64_t before = std::llround(static_cast<double>(held.from - source.from) * scale);
    std::int64_t behind = std::llround(static_cast<double>(source.to - held.to) * scale);
    if (flipped) std::swap(before, behind);
    source = held;
    target = {target.from + before, target.to - behind};
    return target.from < target.to;
}

CRect Rectangle(const Span& across, const Span& down) {
    return {static_cast<std::int32_t>(across.from), static_cast<std::int32_t>(down.from),
            static_cast<std::int32_t>(across.to), static_cast<std::int32_t>(down.to)};
}

HRESULT Tell(std::int64_t value, long* place) {
    if (!place) return kInterfacePointer;
    *place = static_cast<long>(value);
    return kInterfaceOk;
}

}  // namespace

std::int64_t PictureScale::ToMetric(std::int32_t pixels) const noexcept {
    const std::int64_t product = pixels * kMetricPerInch;
    return rounded ? RoundedQuotient(product, dotsPerInch) : product / dotsPerInch;
}

std::int64_t PictureScale::ToPixels(std::int64_t metric) const noexcept {
    return RoundedQuotient(metric * dotsPerInch, kMetricPerInch);
}

ImagePicture::ImagePicture(Image image, PictureScale across, PictureScale down)
    : m_image(std::move(image)), m_across(across), m_down(down) {}

ImagePicture::~ImagePicture() = default;

HRESULT ImagePicture::QueryInterface(const GUID& id, void** object) {
    if (!object) return kInterfacePointer;
    *object = nullptr;
    // Kept: no other identifier is known, not even that of the counting alone; hosts test for this answer.
    if (id != kPictureId) return kInterfaceNone;
    AddRef();
    *object = static_cast<IPicture*>(this);
    return kInterfaceOk;
}

unsigned long ImagePicture::AddRef() {
    return ++m_references;
}

unsigned long ImagePicture::Release() {
    const unsigned long left = --m_references;
    if (left == 0) delete this;
    return left;
}

HRESULT ImagePicture::get_Width(long* width) {
    return Tell(m_across.ToMetric(m_image.width), width);
}

HRESULT ImagePicture::get_Height(long* height) {
    return Tell(m_down.ToMetric(m_image.height), height);
}

HRESULT ImagePicture::Render(CDC* dc, long x, long y, long cx, long cy, long sourceX, long sourceY,
                             long sourceCx, long sourceCy, const CRect*) {
    if (!dc) return kInterfacePointer;
    for (const long number : {x, y, cx, cy, sourceX, sourceY, sourceCx, sourceCy})
        if (IsFar(number)) return kInterfaceFailed;
    Span targetAcross{x, x + cx}, targetDown{y, y + cy};
    Span across{m_across.ToPixels(sourceX), m_across.ToPixels(sourceX + sourceCx)};
    Span down{m_image.height - m_down.ToPixels(sourceY),
              m_image.height - m_down.ToPixels(sourceY + sourceCy)};
    bool mirrored = false, upsideDown = false;
    if (!FitAxis(across, targetAcross, m_image.width, mirrored) ||
        !FitAxis(down, targetDown, m_image.height, upsideDown))
        return kInterfaceFailed;
    dc->Surface().DrawPicture({m_image, m_frame, Rectangle(across, down), Rectangle(targetAcross, targetDown),
                               mirrored, upsideDown});
    return kInterfaceOk;
}

}  // namespace brindle

// The pictures of OV::Button: one for each of four states, shared with everyone who shows the same file. Tests:
// button_images_test.cpp.
#include "brindle/platform/files.h"
#include "brindle/platform/path_text.h"
#include "brindle/widgets/button.h"
#include "brindle/widgets/rounded_rectangle.h"
#include "brindle/widgets/shared_picture.h"

namespace OV {
namespace {

int Rounded(float distance) noexcept {
    return brindle::Truncated(static_cast<double>(distance) + 0.5);
}

// The largest part of the place, in its middle, that has the picture's proportions.
CRect WithAspect(CRect place, float width, float height) noexcept {
    const auto across = static_cast<float>(place.Width()), down = static_cast<float>(place.Height());
    const float picture = width / height, room = across / down;
    if (picture > room) {
        place.DeflateRect(0, Rounded((1 / room - 1 / picture) * (across / 2)));
    } else if (room > picture) {
        place.DeflateRect(Rounded((room - picture) * (down / 2)), 0);
    }
    return place;
}

}  // namespace

Button::ImageSlot::ImageSlot(const ImageSlot& other)
    : path(other.path), animated(other.animated), fullPath(other.fullPath) {
    // The other's reference keeps it in the cache: this finds it there.
    if (other.picture) Take(CreateSharedPicture(fullPath));
}

Button::ImageSlot& Button::ImageSlot::operator=(const ImageSlot& other) {
    if (this == &other) return *this;
    IPicture* const shared = other.picture ? CreateSharedPicture(other.fullPath) : nullptr;
    Release();
    path = other.path;
    fullPath = other.fullPath;
    animated = other.animated;
    Take(shared);
    return *this;
}

Button::ImageSlot::~ImageSlot() {
    Release();
}

void Button::ImageSlot::Take(IPicture* shared) {
    picture = shared;
    void* facet = nullptr;
    if (!picture || picture->QueryInterface(kPictureAnimationId, &facet) != kInterfaceOk) return;
    animation = static_cast<IPictureAnimation*>(facet);
    if (animation) animated = animation->IsAnimated();
}

void Button::ImageSlot::Release() {
    animation = nullptr;
    if (picture) ReleaseSharedPicture(picture);
    picture = nullptr;
}

bool Button::ImageSlot::Load(const CStringA& wanted) {
    if (picture && path == wanted) return true;
    const CStringA asked = wanted;  // it may be ours
    Release();
    path = asked;
    fullPath = "";
    if (path.IsEmpty()) return true;
    fullPath = CStringA(brindle::FullPathOf(brindle::CurrentFiles().CurrentDirectory(), path.view()));
    // Kept: of a picture that cannot be animated the flag of an earlier one stays.
    Take(CreateSharedPicture(path));
    return picture != nullptr;
}

bool Button::SetImage(const CStringA& path, ImageTypeEnum type) {
    return static_cast<unsigned>(type) < kImages && m_images[type].Load(path);
}

bool Button::IsImageAnimated(ImageTypeEnum type) const noexcept {
    return static_cast<unsigned>(type) < kImages && m_images[type].animated;
}

void Button::UpdateAnimation(ImageTypeEnum type, unsigned int time, unsigned int& nextDelay) {
    if (static_cast<unsigned>(type) >= kImages) return;
    const ImageSlot& slot = m_images[type];
    if (slot.picture && slot.animated && slot.animation) slot.animation->Advance(time, nextDelay);
}

const Button::ImageSlot& Button::CurrentImage() const noexcept {
    return m_images[m_selected    ? ImageSelected
                    : m_pressed   ? ImagePressed
                    : m_mouseOver ? ImageMouseOver
                                  : ImageNormal];
}

void Button::DrawImage(CDC* dc, CRect place) const {
    const ImageSlot& slot = CurrentImage();
    DrawImage(dc, slot.picture, place, slot.animated);
}

void Button::DrawImage(CDC* dc, IPicture* picture, CRect place, bool /*animated*/) const {
    long width = 0, height = 0;
    if (!picture || picture->get_Width(&width) < 0 || picture->get_Height(&height) < 0) return;
    if (width <= 0 || height <= 0 || place.Width() == 0 || place.Height() == 0) return;
    if (m_keepImageAspect) place = WithAspect(place, static_cast<float>(width), static_cast<float>(height));
    picture->Render(dc, place.left, place.top, place.Width(), place.Height(), 0, height, width, -height,
                    nullptr);
}

}  // namespace OV

// The slot of the images service, and what stands there without a desktop. Tests: images_test.cpp.
#include "brindle/platform/images.h"

#include "brindle/platform/service.h"

namespace brindle {
namespace {

class NoImages final : public Images {
  public:
    Result Decode(std::string_view, ImageFrames, Image&) override {
        return Result::Error(ErrorCode::kUnsupported, "picture: there is no desktop to decode it");
    }
};

constinit NoImages g_noImages;
constinit ServiceSlot<Images> g_images;

}  // namespace

Images& CurrentImages() noexcept {
    return g_images.GetOr(g_noImages);
}

Images* SetImages(Images* service) noexcept {
    return g_images.Set(service);
}

}  // namespace brindle

// GdiPlusPicture: a picture object that can step through the frames of a GIF. Its size is told as if every pixel were a
// point (72 to the inch), cut. Internal: hosts get one from CreateSharedPicture. Thread: the user interface's.
#pragma once

#include "brindle/widgets/image_picture.h"

namespace brindle {

class GdiPlusPicture final : public ImagePicture, public IPictureAnimation {
  public:
    // The image has a frame and a size. The object starts with one reference, and shows the first frame.
    explicit GdiPlusPicture(Image image);

    HRESULT QueryInterface(const GUID& id, void** object) override;
    bool IsAnimated() override;
    // The delay is the file's in milliseconds, 0 too; 10 when the file gives none. Always true.
    bool Advance(std::uint32_t time, std::uint32_t& delay) override;

  private:
    ~GdiPlusPicture() override;
};

}  // namespace brindle

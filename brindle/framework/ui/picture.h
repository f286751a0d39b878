// IPicture: a picture object of the desktop's automation: reference-counted, measured in hundredths of a millimetre.
// Hosts may hand theirs in; the library makes its own (widgets/shared_picture.h). A picture that can step through
// frames also offers IPictureAnimation. Thread: the user interface's.
#pragma once

#include <cstdint>

#include "brindle/framework/interface_id.h"
#include "brindle/framework/rect.h"

class CDC;

class IPicture {
  public:
    // Another interface of the object into `object`: for kPictureId an IPicture*, with a reference the caller releases;
    // for kPictureAnimationId an IPictureAnimation*, which counts no reference and is there as long as the picture. Any
    // other identifier (a picture may know more of its own): kInterfaceNone, and `object` becomes null. `object` null:
    // kInterfacePointer.
    virtual HRESULT QueryInterface(const GUID& id, void** object) = 0;
    // Both return the number of references afterwards; the object goes with its last one.
    virtual unsigned long AddRef() = 0;
    virtual unsigned long Release() = 0;

    // The size in hundredths of a millimetre, never negative. A failure leaves the number unchanged.
    virtual HRESULT get_Width(long* width) = 0;
    virtual HRESULT get_Height(long* height) = 0;

    // Draws a part of the picture into the rectangle (x, y, cx, cy) of the device context. The part is given in
    // hundredths of a millimetre from the picture's lower left corner upwards, and its first row is drawn at y: the
    // whole picture upright is (0, height, width, -height). Negative sizes mirror. `bounds` is not used and may be
    // null. A failure draws nothing.
    virtual HRESULT Render(CDC* dc, long x, long y, long cx, long cy, long sourceX, long sourceY,
                           long sourceCx, long sourceCy, const CRect* bounds) = 0;

  protected:
    ~IPicture() = default;  // goes with its last reference
};

// {7BF80980-BF32-101A-8BBB-00AA00300CAB}
constexpr GUID kPictureId = {0x7BF80980, 0xBF32, 0x101A, {0x8B, 0xBB, 0x00, 0xAA, 0x00, 0x30, 0x0C, 0xAB}};

// What a picture with frames can do besides.
class IPictureAnimation {
  public:
    // Whether there is more than one frame.
    virtual bool IsAnimated() = 0;
    // Steps to the next frame, behind the last one to the first, and says for how many milliseconds it is shown. The
    // time (milliseconds, cut to 32 bits) may be used to skip frames; the library's pictures never do. True: the
    // picture is to be drawn anew.
    virtual bool Advance(std::uint32_t time, std::uint32_t& delay) = 0;

  protected:
    ~IPictureAnimation() = default;  // goes with its picture
};

// {81F6D058-2557-40D5-9B2C-149A2E0E60E3}
constexpr GUID kPictureAnimationId = {
    0x81F6D058, 0x2557, 0x40D5, {0x9B, 0x2C, 0x14, 0x9A, 0x2E, 0x0E, 0x60, 0xE3}};

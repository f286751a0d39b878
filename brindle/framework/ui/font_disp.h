// IFontDisp: a font object of the desktop's automation: reference-counted, with properties by number. Hosts hand theirs
// in; the library makes its own with CreateFontDisp. Thread: the user interface's.
#pragma once

#include <cstdint>
#include <variant>

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

// The numbers under which every font object has its properties, with the type of each.
enum FontProperty : long {
    kFontName = 0,           // CStringA
    kFontSize = 2,           // std::int64_t: a currency value, in 1/10000 of a point
    kFontBold = 3,           // bool: whether the weight is above 550
    kFontItalic = 4,         // bool
    kFontUnderline = 5,      // bool
    kFontStrikethrough = 6,  // bool
    kFontWeight = 7,         // std::int16_t
    kFontCharset = 8,        // std::int16_t
};
using FontValue = std::variant<CStringA, std::int64_t, bool, std::int16_t>;

class IFontDisp {
  public:
    // Both return the number of references afterwards; the object goes with its last one.
    virtual unsigned long AddRef() = 0;
    virtual unsigned long Release() = 0;
    // False, `value` unchanged, when the object has no such property.
    virtual bool GetProperty(long property, FontValue& value) = 0;
    // False, nothing changed, when the object has no such property or the value is of another type.
    virtual bool PutProperty(long property, const FontValue& value) = 0;

  protected:
    ~IFontDisp() = default;
};

// What a font object is made from.
struct FontDescription {
    CStringA name;
    std::int64_t size = 0;  // in 1/10000 of a point
    std::int16_t weight = 400;
    std::int16_t charset = 0;
    bool italic = false;
    bool underline = false;
    bool strikethrough = false;
};

// A new font object with one reference, the caller's. Null when memory runs out.
BRINDLE_API IFontDisp* CreateFontDisp(const FontDescription& description) noexcept;

// The library's own font object. Tests: font_disp_test.cpp.
#include "brindle/framework/ui/font_disp.h"

#include <new>

namespace {

constexpr std::int16_t kNormal = 400, kBold = 700, kLightestBold = 551;

template <class Value, class Field>
bool Assign(const FontValue& value, Field& field) {
    const Value* given = std::get_if<Value>(&value);
    if (given) field = *given;
    return given != nullptr;
}

class FontObject final : public IFontDisp {
  public:
    explicit FontObject(const FontDescription& description) : m_font(description) {}

    unsigned long AddRef() override { return ++m_references; }
    unsigned long Release() override {
        const unsigned long left = --m_references;
        if (left == 0) delete this;
        return left;
    }

    bool GetProperty(long property, FontValue& value) override {
        switch (property) {
            case kFontName:
                value = m_font.name;
                return true;
            case kFontSize:
                value = m_font.size;
                return true;
            case kFontBold:
                value = m_font.weight >= kLightestBold;
                return true;
            case kFontItalic:
                value = m_font.italic;
                return true;
            case kFontUnderline:
                value = m_font.underline;
                return true;
            case kFontStrikethrough:
                value = m_font.strikethrough;
                return true;
            case kFontWeight:
                value = m_font.weight;
                return true;
            case kFontCharset:
                value = m_font.charset;
                return true;
            default:
                return false;
        }
    }

    bool PutProperty(long property, const FontValue& value) override {
        bool bold = false;
        switch (property) {
            case kFontName:
                return Assign<CStringA>(value, m_font.name);
            case kFontSize:
                return Assign<std::int64_t>(value, m_font.size);
            case kFontBold:
                if (!Assign<bool>(value, bold)) return false;
                m_font.weight = bold ? kBold : kNormal;
                return true;
            case kFontItalic:
                return Assign<bool>(value, m_font.italic);
            case kFontUnderline:
                return Assign<bool>(value, m_font.underline);
            case kFontStrikethrough:
                return Assign<bool>(value, m_font.strikethrough);
            case kFontWeight:
                return Assign<std::int16_t>(value, m_font.weight);
            case kFontCharset:
                return Assign<std::int16_t>(value, m_font.charset);
            default:
                return false;
        }
    }

  private:
    ~FontObject() = default;

    FontDescription m_font;
    unsigned long m_references = 1;
};

}  // namespace

IFontDisp* CreateFontDisp(const FontDescription& description) noexcept {
    try {
        return new FontObject(description);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

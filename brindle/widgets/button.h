// OV::Button: a caption on a rounded push button: filled in one of five ways, with a gloss, a glow when selected, a
// lighter body when disabled, an outline, and a picture for each of four states. It does not act on clicks; its host
// does. Thread: the user interface's.
#pragma once

#include <cstdint>

#include "brindle/framework/export.h"
#include "brindle/framework/ui/picture.h"
#include "brindle/widgets/text.h"

namespace brindle {
struct ButtonLayoutProbe;
struct ButtonLook;
}  // namespace brindle

namespace OV {

class BRINDLE_API Button : public Text {
  public:
    enum FillModeEnum {
        FillGlossy = 0,              // the colour, and a highlight; while pressed a sheen instead
        FillSolid = 1,               // the colour
        FillVerticalGradient = 2,    // from the colour at the top to the secondary colour at the bottom
        FillHorizontalGradient = 3,  // from the colour at the left to the secondary colour at the right
        FillNone = 4,                // no body: neither fill nor highlight nor glow
    };
    // How a selected button differs; any other number: only by its picture.
    enum SelectedModeTypeEnum { SelectedColour = 0, SelectedColourAndGlow = 1, SelectedGlow = 2 };
    // Of several that apply the first of: selected, pressed, mouse over, normal.
    enum ImageTypeEnum { ImageNormal = 0, ImagePressed = 1, ImageSelected = 2, ImageMouseOver = 3 };

    // Opaque grey, glossy, a little rounded, with an outline of 2.
    Button();
    explicit Button(const CStringA& text);
    // A copy holds the same pictures, with references of its own.
    Button(const Button& other);
    Button& operator=(const Button& other);
    ~Button() override;

    // The number is the scale of the caption's fonts.
    void Draw(CDC* dc, double scale) override;
    using Text::OnMouseUp;
    void OnMouseUp() override;

    // Colours are 0x00BBGGRR.
    void SetColor(unsigned long colour) noexcept { m_colour = static_cast<std::uint32_t>(colour); }
    // Of the body; its low 8 bits count as alpha. Kept: above 127 (all bits counted) the highlight and the glow of a
    // body with much blue and green, whatever its red, are stronger.
    void SetOpacity(int opacity) noexcept { m_opacity = opacity; }
    // In percent of half the smaller side. More than half of the height gives square corners.
    void SetRoundness(int percent) noexcept { m_roundness = percent; }
    void SetBorderThickness(int thickness) noexcept { m_borderThickness = thickness; }  // 0 or less: none
    void SetBorderColor(unsigned long colour) noexcept {
        m_borderColour = static_cast<std::uint32_t>(colour);
    }
    void SetSelectedColor(unsigned long colour) noexcept {
        m_selectedColour = static_cast<std::uint32_t>(colour);
    }
    void SetSecondaryColor(unsigned long colour) noexcept {
        m_secondaryColour = static_cast<std::uint32_t>(colour);
    }
    void SetSelected(bool selected) noexcept { m_selected = selected; }
    bool IsSelected() const noexcept { return m_selected; }
    // The host's own; never looked at. Null at first.
    void SetData(void* data) noexcept { m_data = data; }
    void* GetData() const noexcept { return m_data; }
    void SetSelectedMode(SelectedModeTypeEnum mode) noexcept { m_selectedMode = mode; }
    SelectedModeTypeEnum GetSelectedMode() const noexcept { return m_selectedMode; }
    // The picture of a state, shared among everyone who shows the file (shared_picture.h), or none for an empty path.
    // False when the file cannot be loaded: the state then has no picture, and the next call tries again. A state
    // without a picture shows none, also while the normal one has one.
    bool SetImage(const CStringA& path, ImageTypeEnum type);
    // Kept: as the last picture that could be animated said; a later one that cannot, or none, does not change it.
    bool IsImageAnimated(ImageTypeEnum type) const noexcept;
    // Steps the state's picture to its next frame; nextDelay becomes the milliseconds for which that is shown. Does
    // nothing, nextDelay unchanged, for a picture that is not animated and for none.
    void UpdateAnimation(ImageTypeEnum type, unsigned int time, unsigned int& nextDelay);
    // Whether pictures keep their proportions; else they fill the bounds. At first they do.
    void SetKeepImageAspect(bool keep) noexcept { m_keepImageAspect = keep; }
    // Below the body, which may be transparent, instead of between body and outline.
    void SetDrawImageBehindNormal(bool behind) noexcept { m_drawImageBehindNormal = behind; }
    // The host's own flag; drawing and the mouse do not ask it.
    void SetProtected(bool isProtected) noexcept { m_protected = isProtected; }
    bool IsProtected() const noexcept { return m_protected; }
    void SetFillMode(FillModeEnum mode) noexcept { m_fillMode = mode; }

  private:
    struct ImageSlot {
        ImageSlot() = default;
        ImageSlot(const ImageSlot& other);
        ImageSlot& operator=(const ImageSlot& other);
        ~ImageSlot();
        bool Load(const CStringA& wanted);
        void Take(IPicture* shared);
        void Release();

        CStringA path;
        IPicture* picture = nullptr;  // a shared one
        bool animated = false;
        IPictureAnimation* animation = nullptr;  // of the picture, if it has one
        CStringA fullPath;                       // of the picture, whatever the current directory becomes
    };
    static constexpr unsigned kImages = 4;

    brindle::ButtonLook Look() const noexcept;
    std::uint32_t BodyColour() const noexcept;
    const ImageSlot& CurrentImage() const noexcept;
    void DrawImage(CDC* dc, IPicture* picture, CRect place, bool animated) const;
    void DrawImage(CDC* dc, CRect place) const;

    std::uint32_t m_colour = 0x6E6E6E;
    int m_opacity = 255;
    int m_roundness = 10;
    int m_borderThickness = 2;
    std::uint32_t m_borderColour = 0x505050;
    std::uint32_t m_selectedColour = 0x6E6E6E;
    std::uint32_t m_secondaryColour = 0;
    bool m_selected = false;
    void* m_data = nullptr;
    ImageSlot m_images[kImages];
    bool m_keepImageAspect = true;
    SelectedModeTypeEnum m_selectedMode = SelectedGlow;
    bool m_drawImageBehindNormal = false;
    bool m_protected = false;
    FillModeEnum m_fillMode = FillGlossy;

    friend struct brindle::ButtonLayoutProbe;
};

}  // namespace OV

// MapElement: one thing on a map as its file describes it: where it stands, what it says, which device or object it
// stands for. A kind describes itself by a table of attributes, as triggers and actions do; reading, checking and
// the test of the document all work from that table.
#pragma once

#include <brindle/framework/rect.h>
#include <brindle/framework/string_a.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/address_pattern.h"
#include "host/attribute.h"

namespace brindle::host {

// "#RRGGBB", or nothing given. In memory as widgets want it, 0x00BBGGRR.
class MapColour {
  public:
    MapColour() = default;
    explicit MapColour(std::uint32_t colour) : m_colour(colour) {}

    // Returns why the text is no colour, or an empty text. On failure the colour stays as it was.
    std::string Parse(std::string_view text);
    std::string Text() const;
    std::uint32_t Or(std::uint32_t colour) const noexcept { return m_colour.value_or(colour); }
    bool IsGiven() const noexcept { return m_colour.has_value(); }

  private:
    std::optional<std::uint32_t> m_colour;
};

enum class MapKind { kPanel, kLabel, kClock, kButton, kPicture, kAlarms };
// The element's name in the file.
const char* MapKindName(MapKind kind) noexcept;
std::optional<MapKind> FindMapKind(std::string_view name) noexcept;

// Indices of the words that the attributes of the same names take.
enum MapAlign { kAlignLeft, kAlignCentre, kAlignRight };
enum MapVerticalAlign { kAlignTop, kAlignMiddle, kAlignBottom };
enum MapTurn { kTurnNone, kTurnUp, kTurnDown };
enum MapFill { kFillGlossy, kFillSolid, kFillVertical, kFillHorizontal, kFillNone, kFillSkin };
enum MapEvent { kEventButton, kEventCheckBox, kEventAcknowledge, kEventNone };
enum MapSelected { kSelectedColour, kSelectedBoth, kSelectedGlow };

// A secondary caption: an element inside the one it belongs to.
struct MapNote {
    static constexpr const char* kName = "note";

    CStringA text;  // with fields
    int align = kAlignLeft;
    int vertical = kAlignBottom;
    int turn = kTurnNone;
    int scale = 75;  // percent of the caption's height

    AttributeTable Attributes();
};

struct MapElement {
    static constexpr int kFarthest = 32'000;  // the largest coordinate and size

    explicit MapElement(MapKind elementKind);

    // The table of this kind, bound to this object's fields.
    AttributeTable Attributes();
    // Whether it can be pressed.
    bool IsClickable() const noexcept;
    CRect Place() const noexcept { return {x, y, x + width, y + height}; }
    // The packed address of its device; `own` is that of its object. Nothing while some part is open.
    std::optional<std::uint32_t> Device(const CAddressOv& own) const;
    // All texts with fields.
    std::vector<const CStringA*> Texts() const;
    // All files of pictures, as written.
    std::vector<const CStringA*> Pictures() const;

    MapKind kind;
    std::uint32_t line = 0;  // where it stands in its file
    std::uint32_t column = 0;

    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    CStringA name;    // for people who do not see the map; the caption when empty
    CStringA object;  // of site.ini
    AddressPattern device;

    CStringA text;
    CStringA font = "Arial";
    int size = 16;  // height of the characters
    bool bold = false;
    bool italic = false;
    MapColour textColour;
    int align = kAlignCentre;
    int vertical = kAlignMiddle;
    int turn = kTurnNone;
    std::vector<MapNote> notes;

    MapColour colour;
    MapColour secondColour;
    MapColour borderColour;
    int border = 1;
    int roundness = 10;  // percent
    int opacity = 255;
    bool states = false;  // the body shows the device's state
    bool blink = true;    // ... and blinks while an alarm of the device is not acknowledged

    int fill = kFillSkin;
    int event = kEventButton;
    bool toggle = false;
    CStringA key;
    CStringA keyValue;
    CStringA user;
    int selected = kSelectedColour;
    MapColour selectedColour;

    CStringA picture;
    CStringA pressedPicture;
    CStringA selectedPicture;
    CStringA overPicture;
    bool pictureBehind = false;
    bool keepAspect = true;

    int from = 2;  // the lowest state that is an alarm

  private:
    void AppendPlace(AttributeTable& table);
    void AppendText(AttributeTable& table, bool required);
    void AppendDevice(AttributeTable& table);
    void AppendBody(AttributeTable& table);
    void AppendButton(AttributeTable& table);
};

}  // namespace brindle::host

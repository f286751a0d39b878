// OV::Button on the recording surface: whole recipes as golden text, and the rows that decide what is in them.
#include "brindle/widgets/button.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/recording_surface.h"
#include "brindle/widgets/button_shapes.h"
#include "testing/golden.h"
#include "testing/layout.h"

namespace brindle {

struct ButtonLayoutProbe {
    static std::vector<const void*> Fields(const OV::Button& b) {
        return {&b,
                &b.m_colour,
                &b.m_opacity,
                &b.m_roundness,
                &b.m_borderThickness,
                &b.m_borderColour,
                &b.m_selectedColour,
                &b.m_secondaryColour,
                &b.m_selected,
                &b.m_data,
                &b.m_images,
                &b.m_keepImageAspect,
                &b.m_selectedMode,
                &b.m_drawImageBehindNormal,
                &b.m_protected,
                &b.m_fillMode};
    }
    static bool MouseOver(const OV::Button& b) { return b.m_mouseOver; }
    static bool Pressed(const OV::Button& b) { return b.m_pressed; }
    static ButtonLook Look(const OV::Button& b) { return b.Look(); }
};

namespace {

using OV::Button;
using Probe = ButtonLayoutProbe;

struct Row {
    const char* label;
    std::function<void(Button&)> set;
};

Button Ordinary() {
    Button button;
    button.SetBounds({5, 5, 105, 45});
    button.SetColor(0x302010);
    button.SetSelectedColor(0x605040);
    button.SetSecondaryColor(0x908070);
    button.SetBorderColor(0xC0B0A0);
    return button;
}

std::string Drawn(Button& button, double scale = 1) {
    RecordingSurface surface;
    CDC dc(surface);
    button.Draw(&dc, scale);
    return surface.Text();
}

void ExpectDrawings(const char* golden, const std::vector<Row>& rows) {
    std::string all;
    for (const Row& row : rows) {
        Button button = Ordinary();
        row.set(button);
        all += "# " + std::string(row.label) + "\n" + Drawn(button);
    }
    testing::ExpectGolden(golden, all);
}

void Press(Button& b) {
    b.OnMouseDown();
}

TEST(Button, FillModesAreDrawnByTheirRecipe) {
    ExpectDrawings(
        "button_fills.txt",
        {{"glossy", [](Button&) {}},
         {"solid", [](Button& b) { b.SetFillMode(Button::FillSolid); }},
         {"vertical gradient", [](Button& b) { b.SetFillMode(Button::FillVerticalGradient); }},
         {"horizontal gradient, half transparent at both ends",
          [](Button& b) { b.SetFillMode(Button::FillHorizontalGradient), b.SetOpacity(128); }},
         {"none", [](Button& b) { b.SetFillMode(Button::FillNone); }},
         {"none, selected with a glow: no glow",
          [](Button& b) { b.SetFillMode(Button::FillNone), b.SetSelected(true); }},
         {"an unknown one is solid", [](Button& b) { b.SetFillMode(static_cast<Button::FillModeEnum>(5)); }},
         {"no outline", [](Button& b) { b.SetBorderThickness(0); }},
         {"negative outline", [](Button& b) { b.SetBorderThickness(-2); }},
         {"the caption comes last", [](Button& b) { b.SetText("ab"); }}});
}

TEST(Button, StatesAreDrawnByTheirRecipe) {
    const auto selected = [](int mode) {
        return [mode](Button& b) {
            b.SetSelected(true);
            b.SetSelectedMode(static_cast<Button::SelectedModeTypeEnum>(mode));
        };
    };
    ExpectDrawings(
        "button_states.txt",
        {{"selected: its colour", selected(0)},
         {"selected: its colour and a glow", selected(1)},
         {"selected: a glow", selected(2)},
         {"selected: any other mode changes nothing", selected(3)},
         {"pressed", Press},
         {"pressed with square corners", [](Button& b) { Press(b), b.SetRoundness(0); }},
         {"pressed, solid: no sheen", [](Button& b) { Press(b), b.SetFillMode(Button::FillSolid); }},
         {"disabled: lighter, no gloss", [](Button& b) { b.SetDisabled(true); }},
         {"disabled and pressed: no sheen", [](Button& b) { b.SetDisabled(true), Press(b); }},
         {"disabled and selected: the glow stays",
          [](Button& b) { b.SetDisabled(true), b.SetSelected(true); }},
         {"the mouse over it changes nothing", [](Button& b) { b.OnMouseOver(); }}});
}

TEST(Button, TheHighlightFollowsTheCaptionsTurn) {
    const auto turned = [](OVDrawing::Escapement escapement) {
        return [escapement](Button& b) { b.SetEscapment(escapement), b.SetRoundness(100); };
    };
    ExpectDrawings("button_escapements.txt", {{"upright", turned(OVDrawing::Horizontal)},
                                              {"upwards: at the left", turned(OVDrawing::Vertical90)},
                                              {"downwards: at the right", turned(OVDrawing::Vertical270)}});
}

TEST(Button, PlacesAreCutToWholeCoordinatesTowardsZero) {
    ExpectDrawings("button_places.txt", {{"left of and above the origin",
                                          [](Button& b) {
                                              b.SetBounds({-105, -45, -5, -5});
                                          }},
                                         {"odd sides",
                                          [](Button& b) {
                                              b.SetBounds({0, 0, 31, 15}), b.SetRoundness(100);
                                          }},
                                         {"higher than wide",
                                          [](Button& b) {
                                              b.SetBounds({0, 0, 10, 90}), b.SetRoundness(150);
                                          }},
                                         {"one unit",
                                          [](Button& b) {
                                              b.SetBounds({7, 7, 8, 8});
                                          }},
                                         {"empty",
                                          [](Button& b) {
                                              b.SetBounds({7, 7, 7, 7});
                                          }},
                                         {"reversed", [](Button& b) {
                                              b.SetBounds({105, 45, 5, 5}), Press(b);
                                          }}});
}

TEST(Button, CornersAreAPercentageOfHalfTheSmallerSide) {
    struct Corner {
        const char* label;
        int roundness, expected;
    };
    for (const Corner& row : std::vector<Corner>{{"10 %", 10, 2},
                                                 {"all of it", 100, 20},
                                                 {"more than half of the height: square", 300, 0},
                                                 {"negative: square", -1, 0}}) {
        SCOPED_TRACE(row.label);
        Button button = Ordinary();
        button.SetRoundness(row.roundness);
        EXPECT_EQ(Probe::Look(button).radius, row.expected);
    }
}

TEST(Button, BrightBodiesHaveStrongerHighlights_RedIsNotAsked) {
    struct Bright {
        const char* label;
        unsigned long colour;
        int opacity;
        unsigned strong, glow;
    };
    const std::vector<Bright> rows = {
        {"blue and green, no red", 0xFFFF00, 200, 255, 255},
        {"red and green, no blue", 0x00FFFF, 200, 200, 0x7F},
        {"red and blue, no green", 0xFF00FF, 200, 200, 0x7F},
        {"just bright enough", 0x808000, 255, 255, 255},
        {"blue not quite", 0x7F8000, 255, 200, 0x7F},
        {"green not quite", 0x807F00, 255, 200, 0x7F},
        {"just opaque enough", 0xFFFF00, 128, 255, 255},
        {"not opaque enough", 0xFFFF00, 127, 200, 0x7F},
        {"all bits of the opacity count here", 0xFFFF00, 0x101, 255, 255},
        {"negative", 0xFFFF00, -1, 200, 0x7F},
    };
    for (const Bright& row : rows) {
        SCOPED_TRACE(row.label);
        Button button = Ordinary();
        button.SetColor(row.colour);
        button.SetOpacity(row.opacity);
        button.SetSelected(true);
        EXPECT_EQ(Probe::Look(button).strongWhite, row.strong);
        EXPECT_EQ(Probe::Look(button).glowWhite, row.glow);
        EXPECT_EQ(Probe::Look(button).first >> 24, static_cast<unsigned>(row.opacity) & 0xFF);
    }
    Button button = Ordinary();
    button.SetColor(0);
    button.SetDisabled(true);
    EXPECT_EQ(Probe::Look(button).strongWhite, 200u);
    button.SetColor(0x020200);
    EXPECT_EQ(Probe::Look(button).strongWhite, 255u) << "the lightened colour is asked";
}

TEST(Button, TheWeakEndOfAHighlightIsAThirdOfTheStrongOne) {
    Button button = Ordinary();
    EXPECT_NE(Drawn(button).find("vertical #C8FFFFFF #42FFFFFF over 5.5 5.5 99 19.5"), std::string::npos);
    button.SetColor(0xFFFF00);
    EXPECT_NE(Drawn(button).find("vertical #FFFFFFFF #55FFFFFF over 5.5 5.5 99 19.5"), std::string::npos);
}

TEST(Button, ADisabledBlackButtonIsGreyWithoutGloss) {
    Button button = Ordinary();
    button.SetColor(0);
    button.SetDisabled(true);
    const std::string drawn = Drawn(button);
    EXPECT_NE(drawn.find("fill solid #FF7F7F7F"), std::string::npos);
    EXPECT_EQ(drawn.find("fill area"), std::string::npos);
}

TEST(Button, AHighlightWithoutAreaShowsNothing) {
    ButtonLook look;
    look.width = look.height = 20;
    look.shine = ButtonLook::kEmptyShine;
    look.strongWhite = 200;
    RecordingSurface surface;
    ButtonShapes(look, ButtonParts::kBody).Draw(surface, {5, 5});
    EXPECT_NE(surface.Text().find("fill area 0 0 0 0 vertical #C8FFFFFF #42FFFFFF over 0 0 0 0\n"),
              std::string::npos);
}

TEST(Button, TheCaptionIsScaledTheBodyIsNot) {
    Button button = Ordinary();
    button.SetText("ab");
    const std::string plain = Drawn(button), scaled = Drawn(button, 2);
    EXPECT_EQ(plain.substr(0, plain.find("text")), scaled.substr(0, scaled.find("text")));
    EXPECT_NE(plain.find("\"Arial\" -13 "), std::string::npos);
    EXPECT_NE(scaled.find("\"Arial\" -26 "), std::string::npos);
}

TEST(Button, StartsAsDescribed) {
    const Button plain;
    const Button named("On air");
    for (const Button* button : {&plain, &named}) {
        EXPECT_FALSE(button->IsSelected());
        EXPECT_FALSE(button->IsProtected());
        EXPECT_EQ(button->GetData(), nullptr);
        EXPECT_EQ(button->GetSelectedMode(), Button::SelectedGlow);
        const ButtonLook look = Probe::Look(*button);
        EXPECT_EQ(look.first, 0xFF6E6E6Eu);
        EXPECT_EQ(look.outline, 0xFF505050u);
        EXPECT_EQ(look.outlineWidth, 2);
        EXPECT_EQ(look.shine, ButtonLook::kTopShine);
    }
    EXPECT_EQ(plain.GetText(), "");
    EXPECT_EQ(named.GetText(), "On air");
}

TEST(Button, KeepsWhatItsHostSets) {
    Button button;
    int data = 0;
    button.SetData(&data);
    button.SetSelected(true);
    button.SetProtected(true);
    button.SetSelectedMode(Button::SelectedColour);
    EXPECT_EQ(button.GetData(), &data);
    EXPECT_TRUE(button.IsSelected());
    EXPECT_TRUE(button.IsProtected());
    EXPECT_EQ(button.GetSelectedMode(), Button::SelectedColour);
    button.SetSelected(false);
    button.SetProtected(false);
    EXPECT_FALSE(button.IsSelected());
    EXPECT_FALSE(button.IsProtected());
}

TEST(Button, TheMouseChangesFlagsAndNothingElse) {
    struct Step {
        const char* label;
        std::function<bool(OV::Widget&)> go;
        bool over, pressed;
    };
    const std::vector<Step> steps = {
        {"over",
         [](OV::Widget& w) {
             return w.OnMouseOver({1, 1});
         },
         true, false},
        {"down",
         [](OV::Widget& w) {
             return w.OnMouseDown({1, 1});
         },
         true, true},
        {"out while pressed: stays pressed", [](OV::Widget& w) { return w.OnMouseOut(), false; }, false,
         true},
        {"up",
         [](OV::Widget& w) {
             return w.OnMouseUp({1, 1});
         },
         false, false},
        {"up again", [](OV::Widget& w) { return w.OnMouseUp(), false; }, false, false},
        {"down without a point", [](OV::Widget& w) { return w.OnMouseDown(), false; }, false, true},
        {"up without a point", [](OV::Widget& w) { return w.OnMouseUp(), false; }, false, false},
    };
    Button button = Ordinary();
    button.SetDisabled(true);  // a disabled one takes part
    for (const Step& step : steps) {
        SCOPED_TRACE(step.label);
        EXPECT_FALSE(step.go(button)) << "no redraw is asked for";
        EXPECT_EQ(Probe::MouseOver(button), step.over);
        EXPECT_EQ(Probe::Pressed(button), step.pressed);
        EXPECT_FALSE(button.IsSelected());
    }
}

TEST(Button, CopiesHaveEverythingAndNoContextDrawsNothing) {
    Button button = Ordinary();
    int data = 0;
    button.SetData(&data);
    button.SetText("ab");
    button.SetSelected(true);
    button.Draw(nullptr, 1);
    Button copy = button, assigned;
    assigned = button;
    assigned = *&assigned;
    for (Button* each : {&copy, &assigned}) {
        EXPECT_EQ(Drawn(*each), Drawn(button));
        EXPECT_EQ(each->GetData(), &data);
    }
}

TEST(ButtonLayout, FieldsStandInTheirOrder) {
    const Button button;
    const std::vector<const void*> fields = Probe::Fields(button);
    for (std::size_t i = 1; i < fields.size(); ++i) EXPECT_LT(fields[i - 1], fields[i]) << i;
    EXPECT_EQ(testing::SlotOf(static_cast<void (Button::*)()>(&Button::OnMouseUp)), 9u);
}

}  // namespace
}  // namespace brindle

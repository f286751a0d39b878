// Single elements. Tests: map_view_test.cpp.
#include "host/map_item.h"

#include <utility>

#include "host/host_files.h"

namespace brindle::host {

MapItem::MapItem(MapElement element, const SiteObject* object, const std::string& folder)
    : MapPart(std::move(element), object), m_notes(Element()) {
    Make();
    if (m_button) LoadPictures(folder);
    m_widget->SetFont(MapFont(Element()));
    m_widget->SetHorizontalAlignment(AlignmentOf(Element().align));
    m_widget->SetVerticalAlignment(VerticalAlignmentOf(Element().vertical));
    m_widget->SetEscapment(EscapementOf(Element().turn));
}

MapItem::~MapItem() = default;

void MapItem::Make() {
    const MapElement& element = Element();
    if (element.kind == MapKind::kPanel) {
        auto panel = std::make_unique<OV::Rectangle>();
        m_panel = panel.get();
        m_widget = std::move(panel);
        m_panel->SetRoundness(element.roundness);
        m_panel->SetOpacity(element.opacity);
    } else if (element.kind == MapKind::kButton || element.kind == MapKind::kPicture) {
        auto button = std::make_unique<OV::Button>();
        m_button = button.get();
        m_widget = std::move(button);
        m_button->SetRoundness(element.roundness);
        m_button->SetOpacity(element.opacity);
        m_button->SetSelectedMode(static_cast<OV::Button::SelectedModeTypeEnum>(element.selected));
    } else {
        m_widget = std::make_unique<OV::Text>();
    }
}

void MapItem::LoadPictures(const std::string& folder) {
    const MapElement& element = Element();
    const struct {
        const CStringA& file;
        OV::Button::ImageTypeEnum type;
    } pictures[] = {{element.picture, OV::Button::ImageNormal},
                    {element.pressedPicture, OV::Button::ImagePressed},
                    {element.selectedPicture, OV::Button::ImageSelected},
                    {element.overPicture, OV::Button::ImageMouseOver}};
    for (const auto& picture : pictures) {
        if (picture.file.IsEmpty()) continue;
        m_pictures.push_back({InFolder(folder, picture.file.str()), picture.type});
        m_button->SetImage(m_pictures.back().file, picture.type);
    }
    m_button->SetDrawImageBehindNormal(element.pictureBehind);
    m_button->SetKeepImageAspect(element.keepAspect);
}

void MapItem::Place(double scale) {
    const MapElement& element = Element();
    m_widget->SetBounds(Scaled(element.Place(), scale));
    m_notes.Place(m_widget->GetBounds(), scale);
    const int border = element.kind == MapKind::kPicture ? 0 : ScaledBorder(element.border, scale);
    if (m_button) m_button->SetBorderThickness(border);
    if (m_panel) m_panel->SetBorderThickness(border);
    m_margin = m_button || m_panel ? border / 2 + 1 : 0;
}

// A plain look while it blinks, else that of the state; what the element itself says goes before what the skin says.
BodyLook MapItem::LookFor(const MapScene& scene, const MapFields& fields) const {
    const MapElement& element = Element();
    BodyLook look = scene.look.Plain();
    const bool shows = element.states && Device();
    const bool blinks = shows && element.blink && scene.blinkOff && scene.alarms.IsUnacknowledged(*Device());
    if (shows && !blinks) {
        std::string masked;
        scene.site.devices.Field(*Device(), "Masked", masked);
        look = scene.look.OfState(fields.status, masked == "TRUE");
    } else if (!shows) {
        if (m_panel) look.borderColour = 0;
        if (element.colour.IsGiven() || m_panel) {
            look.colour = element.colour.Or(0);
            look.secondColour = element.secondColour.Or(look.colour);
            look.textColour = scene.textColour;
        }
    }
    if (!m_button && !m_panel) look.textColour = scene.textColour;
    look.borderColour = element.borderColour.Or(look.borderColour);
    look.textColour = element.textColour.Or(look.textColour);
    if (element.fill != kFillSkin) look.fill = element.fill;
    if (element.kind == MapKind::kPicture) look.fill = OV::Button::FillNone;
    if (m_pressedIn && element.selected != kSelectedGlow) {
        look.secondColour = scene.look.Checked().secondColour;
        if (!element.borderColour.IsGiven()) look.borderColour = scene.look.Checked().borderColour;
        if (!element.textColour.IsGiven()) look.textColour = scene.look.Checked().textColour;
    }
    return look;
}

bool MapItem::Update(const MapScene& scene) {
    const MapFields fields = scene.texts.Fields(Device(), Object());
    Shown shown;
    shown.text = scene.texts.Fill(Element().text, fields, Object());
    shown.look = LookFor(scene, fields);
    shown.pressedIn = m_pressedIn;
    std::vector<CStringA> notes;
    for (const MapNote& note : Element().notes)
        notes.push_back(scene.texts.Fill(note.text, fields, Object()));
    const bool noted = m_notes.Show(notes, shown.look.textColour);
    if (m_isShown && shown == m_shown && !noted) return false;
    if (m_button) m_button->SetSelectedColor(Element().selectedColour.Or(scene.look.Checked().colour));
    Apply(shown);
    return true;
}

void MapItem::Apply(const Shown& shown) {
    m_shown = shown;
    m_isShown = true;
    m_widget->SetText(shown.text);
    m_widget->SetFontColor(shown.look.textColour);
    if (m_panel) {
        m_panel->SetColor(shown.look.colour);
        m_panel->SetBorderColor(shown.look.borderColour);
    }
    if (!m_button) return;
    m_button->SetFillMode(static_cast<OV::Button::FillModeEnum>(shown.look.fill));
    m_button->SetColor(shown.look.colour);
    m_button->SetSecondaryColor(shown.look.secondColour);
    m_button->SetBorderColor(shown.look.borderColour);
    m_button->SetSelected(shown.pressedIn);
}

void MapItem::Draw(CDC& dc, double scale) {
    m_widget->Draw(&dc, scale);
    m_notes.Draw(dc, scale);
}

CRect MapItem::Bounds() const noexcept {
    return m_widget->GetBounds();
}

CRect MapItem::Painted() const noexcept {
    CRect painted = m_widget->GetBounds();
    painted.DeflateRect(-m_margin, -m_margin);
    return painted;
}

CStringA MapItem::Name() const {
    if (!Element().name.IsEmpty()) return Element().name;
    return m_shown.text.IsEmpty() ? Element().object : m_shown.text;
}

EventLine MapItem::Press() const {
    const MapElement& element = Element();
    EventLine line;
    line.kind = element.event == kEventCheckBox ? EventKind::kCheckBox : EventKind::kButton;
    line.object = element.object.str();
    if (Device()) line.address = CAddressOv(static_cast<unsigned long>(*Device()));
    line.key = element.key;
    line.keyValue = element.keyValue;
    line.user = element.user;
    line.toggle = element.toggle && !m_pressedIn;
    line.checked = !m_pressedIn;
    return line;
}

bool MapItem::TakePress(const EventLine& event) {
    const MapElement& element = Element();
    const bool checkBox = element.event == kEventCheckBox;
    const bool stays = checkBox || (element.event == kEventButton && element.toggle);
    if (!element.IsClickable() || !stays) return false;
    if (event.kind != (checkBox ? EventKind::kCheckBox : EventKind::kButton)) return false;
    const bool sameObject = element.object == event.object && !event.object.empty();
    const bool sameDevice = Device() && !event.address.IsDeferred() && event.address.GetDWord() == *Device();
    if (!sameObject && (!event.object.empty() || !sameDevice)) return false;
    if (element.key != event.key || element.keyValue != event.keyValue) return false;
    m_pressedIn = checkBox ? event.checked : event.toggle;
    return true;
}

}  // namespace brindle::host

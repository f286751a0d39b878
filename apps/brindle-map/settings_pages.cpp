// Tests: settings_dialog_test.cpp.
#include "apps/brindle-map/settings_pages.h"

#include <brindle/dialogs/select_colour.h>
#include <brindle/library/host_text.h>
#include <brindle/platform/desktop.h>

#include <QtGui/QPainter>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>

#include <algorithm>

namespace brindle::map {
namespace {

using host::DirectorySettings;
using host::PollSettings;

QString Shown(const std::string& text) {
    return QString::fromStdString(TextToSystem(text));
}

// A patch of the colour with a frame, as sharp as the screen.
QIcon Patch(std::uint32_t colour, const QWidget& widget) {
    const int side = widget.fontMetrics().height();
    QPixmap patch(QSize(2 * side, side) * widget.devicePixelRatioF());
    patch.setDevicePixelRatio(widget.devicePixelRatioF());
    const auto channel = [colour](int bits) { return static_cast<int>(colour >> bits & 0xFF); };
    patch.fill(QColor(channel(0), channel(8), channel(16)));
    QPainter painter(&patch);
    painter.setPen(widget.palette().color(QPalette::Text));
    painter.drawRect(0, 0, 2 * side - 1, side - 1);
    QIcon icon(patch);
    icon.addPixmap(patch, QIcon::Selected);  // not tinted
    return icon;
}

}  // namespace

void SettingsPage::Apply(unsigned textId, unsigned controlId, bool applies) {
    GetDlgTextEnabler(textId)->EnableWindow(applies);
    if (CWnd* const control = GetDlgItem(controlId)) control->EnableWindow(applies);
}

void SettingsPage::WatchLine(unsigned controlId) {
    auto* const line = Widget<QLineEdit>(controlId);
    QObject::connect(line, &QLineEdit::inputRejected, line,
                     [this] { Tell("The station's code page has no such character: it was not taken."); });
}

bool SettingsPage::IsSaved(const std::string& why) {
    if (why.empty()) return true;
    Tell("Not saved: " + why);
    CurrentDesktop().ShowMessage(GetSafeHwnd(), MessageIcon::kError, "Not saved: " + why);
    return false;
}

bool SkinPage::OnInitDialog() {
    auto* const list = Widget<QListWidget>(kColours);
    const int side = list->fontMetrics().height();
    list->setIconSize(QSize(2 * side, side));
    for (std::size_t i = 0; i < m_skin.colours.size(); ++i) {
        list->addItem(new QListWidgetItem);
        ShowColour(i);
    }
    QObject::connect(list, &QListWidget::itemActivated, list, [this] { Change(); });
    if (list->count() > 0) list->setCurrentRow(0);
    Apply(kColoursText, kColours, list->count() > 0);
    Tell(m_skin.Missing());
    ShowState();
    return true;
}

void SkinPage::ShowColour(std::size_t index) {
    auto* const list = Widget<QListWidget>(kColours);
    const host::SkinSettings::Colour& colour = m_skin.colours[index];
    QListWidgetItem* const row = list->item(static_cast<int>(index));
    row->setText(Shown(colour.what + " (" + colour.state + "): " + host::SkinColourText(colour.colour)));
    row->setIcon(Patch(colour.colour, *list));
}

void SkinPage::ShowState() {
    const int row = Widget<QListWidget>(kColours)->currentRow();
    const bool some = row >= 0;
    SetText(kState, some ? m_skin.colours[static_cast<std::size_t>(row)].state : std::string());
    Apply(kStateText, kChange, some);
}

void SkinPage::Change() {
    const int row = Widget<QListWidget>(kColours)->currentRow();
    if (row < 0) return;
    host::SkinSettings::Colour& colour = m_skin.colours[static_cast<std::size_t>(row)];
    unsigned long chosen = colour.colour;
    if (!SelectColour(GetSafeHwnd(), chosen) || !GetSafeHwnd() || chosen == colour.colour) return;
    colour.colour = static_cast<std::uint32_t>(chosen);
    ShowColour(static_cast<std::size_t>(row));
    SetModified();
}

bool SkinPage::OnCommand(unsigned controlId) {
    if (controlId == kColours) ShowState();
    if (controlId == kChange) Change();
    return true;
}

bool DirectoriesPage::OnInitDialog() {
    const bool some = m_directories.Missing().empty();
    for (unsigned i = 0; i < 3; ++i) {
        if (some) SetText(kLast + i, m_directories.last[i].value);
        Apply(kLastText + i, kLast + i, some);
        WatchLine(kLast + i);
    }
    auto* const names = Widget<QComboBox>(kPathName);
    for (const auto& path : m_directories.searchPaths) names->addItem(Shown(path.key));
    Apply(kPathNameText, kPathName, names->count() > 0);
    Apply(kPathText, kPath, names->count() > 0);
    WatchLine(kPath);
    ShowPath();
    Tell(m_directories.Missing());
    return true;
}

DirectorySettings::Directory* DirectoriesPage::SearchPath() {
    const int index = Widget<QComboBox>(kPathName)->currentIndex();
    return index < 0 ? nullptr : &m_directories.searchPaths[static_cast<std::size_t>(index)];
}

void DirectoriesPage::ShowPath() {
    if (const auto* path = SearchPath()) SetText(kPath, path->value);
}

bool DirectoriesPage::OnCommand(unsigned controlId) {
    if (controlId == kPathName) {
        ShowPath();
        return true;
    }
    for (unsigned i = 0; i < 3; ++i)
        if (controlId == kLast + i) m_directories.last[i].value = TextOf(controlId);
    if (auto* const path = SearchPath(); path && controlId == kPath) path->value = TextOf(kPath);
    Check(false);
    SetModified();
    return true;
}

bool DirectoriesPage::Check(bool goes) {
    Tell(m_directories.Missing());
    for (unsigned i = 0; i < m_directories.last.size(); ++i) {
        const std::string fault = DirectorySettings::Check(m_directories.last[i]);
        if (fault.empty()) continue;
        Tell(fault);
        if (goes) Widget<QLineEdit>(kLast + i)->setFocus();
        return false;
    }
    return true;
}

bool DirectoriesPage::OnKillActive() {
    return Check(true);
}

bool PollingPage::OnInitDialog() {
    auto* const devices = Widget<QComboBox>(kDevice);
    for (const auto& device : m_polls.devices) devices->addItem(Shown(device.name));
    Apply(kDeviceText, kDevice, devices->count() > 0);
    for (const unsigned line : {kPeriod, kTimeout, kRetries}) WatchLine(line);
    ShowDevice();
    return true;
}

PollSettings::Device* PollingPage::Device() {
    const int index = Widget<QComboBox>(kDevice)->currentIndex();
    return index < 0 ? nullptr : &m_polls.devices[static_cast<std::size_t>(index)];
}

void PollingPage::ShowDevice() {
    if (const auto* device = Device()) {
        CheckDlgButton(kPolled, device->values.polled ? 1 : 0);
        SetText(kPeriod, device->values.period);
        SetText(kTimeout, device->values.timeout);
        SetText(kRetries, device->values.retries);
    }
    ShowWhatApplies();
}

void PollingPage::ShowWhatApplies() {
    const auto* device = Device();
    const bool polled = device && device->values.polled;
    GetDlgItem(kPolled)->EnableWindow(device != nullptr);
    Apply(kPeriodText, kPeriod, polled);
    Apply(kTimeoutText, kTimeout, polled);
    Apply(kRetriesText, kRetries, polled);
    Tell(device ? PollSettings::Check(device->values).text : m_polls.Missing());
}

bool PollingPage::OnCommand(unsigned controlId) {
    auto* const device = Device();
    if (!device) return true;
    if (controlId == kDevice) {
        ShowDevice();
        return true;
    }
    device->values = {IsDlgButtonChecked(kPolled) != 0, TextOf(kPeriod), TextOf(kTimeout), TextOf(kRetries)};
    ShowWhatApplies();
    SetModified();
    return true;
}

// Brings what is wrong to the front, whichever device it is of.
bool PollingPage::Check() {
    for (std::size_t i = 0; i < m_polls.devices.size(); ++i) {
        const PollSettings::Fault fault = PollSettings::Check(m_polls.devices[i].values);
        if (fault.field == PollSettings::kNone) continue;
        Widget<QComboBox>(kDevice)->setCurrentIndex(static_cast<int>(i));
        ShowDevice();
        constexpr unsigned kFields[] = {kPeriod, kTimeout, kRetries};
        Widget<QLineEdit>(kFields[fault.field])->setFocus();
        return false;
    }
    return true;
}

bool PollingPage::OnKillActive() {
    return Check();
}

}  // namespace brindle::map

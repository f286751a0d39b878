// The pages of the settings: what their controls do. Each holds what was read of the site; a change is in memory until
// the sheet applies it.
#pragma once

#include <brindle/dialogs/themed_property_page.h>
#include <brindle/platform/qt/dialog_templates.h>

#include "apps/brindle-map/settings_dialog.h"
#include "host/settings_site.h"

class QLineEdit;

namespace brindle::map {

class SettingsPage : public CThemedPropertyPage {
  public:
    explicit SettingsPage(unsigned templateId) : CThemedPropertyPage(templateId, 0) {}

  protected:
    template <class T>
    T* Widget(unsigned controlId) {
        CWnd* const control = GetDlgItem(controlId);
        return control ? dynamic_cast<T*>(WidgetOf(control->GetSafeHwnd())) : nullptr;
    }
    // A control and its text can be used; else both are grey.
    void Apply(unsigned textId, unsigned controlId, bool applies);
    std::string TextOf(unsigned controlId) { return GetDlgItemTextA(controlId).str(); }
    void SetText(unsigned controlId, const std::string& text) { SetDlgItemTextA(controlId, text); }
    // What cannot be written in a line is told.
    void WatchLine(unsigned controlId);
    void Tell(const std::string& fault) { SetText(kFault, fault); }
    // Of what was saved: true when nothing is wrong; else people are told in front of everything.
    bool IsSaved(const std::string& why);
};

class SkinPage final : public SettingsPage {
  public:
    explicit SkinPage(const host::SitePlan& plan) : SettingsPage(kSkinPage), m_skin(plan) {}

  protected:
    bool OnInitDialog() override;
    bool OnCommand(unsigned controlId) override;
    bool OnApply() override { return IsSaved(m_skin.Save()); }

  private:
    void ShowColour(std::size_t index);
    void ShowState();
    void Change();
    host::SkinSettings m_skin;
};

class DirectoriesPage final : public SettingsPage {
  public:
    explicit DirectoriesPage(const host::SitePlan& plan)
        : SettingsPage(kDirectoriesPage), m_directories(plan) {}

  protected:
    bool OnInitDialog() override;
    bool OnCommand(unsigned controlId) override;
    bool OnKillActive() override;
    bool OnApply() override { return IsSaved(m_directories.Save()); }

  private:
    host::DirectorySettings::Directory* SearchPath();
    void ShowPath();
    // The first thing that is wrong, as people are told; its control gets the keyboard when `goes`. True: nothing.
    bool Check(bool goes);
    host::DirectorySettings m_directories;
};

class PollingPage final : public SettingsPage {
  public:
    explicit PollingPage(const host::SitePlan& plan) : SettingsPage(kPollingPage), m_polls(plan) {}

  protected:
    bool OnInitDialog() override;
    bool OnCommand(unsigned controlId) override;
    bool OnKillActive() override;
    bool OnApply() override { return IsSaved(m_polls.Save()); }

  private:
    host::PollSettings::Device* Device();
    void ShowDevice();
    void ShowWhatApplies();
    bool Check();
    host::PollSettings m_polls;
};

}  // namespace brindle::map

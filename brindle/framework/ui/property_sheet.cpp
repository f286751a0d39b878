// Sheets of property pages over the desktop's windows. Tests: property_sheet_test.cpp.
#include "brindle/framework/ui/property_sheet.h"

#include <algorithm>

#include "brindle/platform/dialogs.h"

// Passes what happens in the sheet on to its pages.
class CPropertySheet::Events final : public brindle::SheetEvents {
  public:
    explicit Events(const std::vector<CPropertyPage*>& pages) : m_pages(pages) {}
    bool OnLeave(std::size_t page) override { return m_pages.at(page)->OnKillActive(); }
    void OnEnter(std::size_t page) override { m_pages.at(page)->OnSetActive(); }
    bool OnApply() override {
        return std::all_of(m_pages.begin(), m_pages.end(), [](CPropertyPage* page) {
            if (!page->OnApply()) return false;
            page->SetModified(false);
            return true;
        });
    }
    void OnCancelled() override {
        for (CPropertyPage* const page : m_pages) page->OnCancel();
    }

  private:
    const std::vector<CPropertyPage*>& m_pages;
};

constinit const CRuntimeClass CPropertySheet::classCPropertySheet = {
    "CPropertySheet", sizeof(CPropertySheet), 0xFFFF, nullptr, &CWnd::classCWnd, nullptr};

CPropertySheet::CPropertySheet(const CStringA& caption, CWnd* parent, unsigned int firstPage)
    : m_caption(caption), m_parent(parent), m_firstPage(firstPage) {}
CPropertySheet::~CPropertySheet() = default;

const CRuntimeClass* CPropertySheet::GetRuntimeClass() const {
    return &classCPropertySheet;
}
const CRuntimeClass* CPropertySheet::GetThisClass() {
    return &classCPropertySheet;
}

void CPropertySheet::AddPage(CPropertyPage* page) {
    if (page) m_pages.push_back(page);
}

int CPropertySheet::DoModal() {
    if (!CreatePages()) return brindle::kDialogFailed;
    std::vector<brindle::SheetPage> pages;
    for (const CPropertyPage* const page : m_pages)
        pages.push_back({page->GetSafeHwnd(), page->Caption().str()});
    Events events(m_pages);
    const int result = brindle::CurrentDialogs().RunSheet(m_parent ? m_parent->GetSafeHwnd() : nullptr,
                                                          m_caption.view(), pages, m_firstPage, events);
    DestroyPages();
    return result;
}

// All or none.
bool CPropertySheet::CreatePages() {
    const bool all = std::all_of(m_pages.begin(), m_pages.end(),
                                 [](CPropertyPage* page) { return page->Create(page->TemplateId()); });
    if (!all) DestroyPages();
    return all && !m_pages.empty();
}

void CPropertySheet::DestroyPages() {
    for (CPropertyPage* const page : m_pages) page->DestroyWindow();
}

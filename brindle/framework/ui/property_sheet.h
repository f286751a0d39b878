// CPropertySheet: property pages behind tabs, with OK, Cancel and Apply. Thread: the user interface's.
#pragma once

#include <vector>

#include "brindle/framework/ui/property_page.h"

class BRINDLE_API CPropertySheet : public CWnd {
  public:
    // `parent` (null: none) is not owned and must live as long as the run.
    explicit CPropertySheet(const CStringA& caption, CWnd* parent = nullptr, unsigned int firstPage = 0);
    ~CPropertySheet() override;
    const CRuntimeClass* GetRuntimeClass() const override;
    static const CRuntimeClass* GetThisClass();

    // Pages are not owned and must outlive the run.
    void AddPage(CPropertyPage* page);

    // Makes the pages' windows, shows them until the user has answered and destroys them. 1: OK, after every page's
    // OnApply answered true; 2: cancelled; -1, nothing shown: no page, or one whose window could not be made.
    virtual int DoModal();

    static const CRuntimeClass classCPropertySheet;

  private:
    class Events;
    bool CreatePages();
    void DestroyPages();

    CStringA m_caption;
    CWnd* m_parent;
    unsigned int m_firstPage;
    std::vector<CPropertyPage*> m_pages;
};

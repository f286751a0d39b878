// FakeXmlDom: XML documents in memory, with switches for faults. Beside what the contract asks for it can do
// only plain paths as XPath ("a", "/a/b", "//b") and only UTF-8; a document type is refused.
#pragma once

#include <memory>

#include "brindle/platform/xml_dom.h"

namespace brindle {

class FakeXmlDom final : public XmlDom {
  public:
    struct Faults {
        bool create = false;          // no document can be created
        bool parse = false;           // every parse fails
        bool markup = false;          // an element's markup cannot be had
        bool documentMarkup = false;  // a document's cannot: nothing can be saved
    };

    std::shared_ptr<XmlDocument> CreateDocument() override;
    // Documents created earlier follow the switches too.
    Faults& FaultSwitches() noexcept { return *m_faults; }

  private:
    std::shared_ptr<Faults> m_faults = std::make_shared<Faults>();
};

}  // namespace brindle

// See results_document.h.
#include "brindle/syscreate/results_document.h"

#include "brindle/framework/number_text.h"
#include "brindle/platform/xml_dom_text.h"
#include "brindle/xml/xml_bytes.h"

namespace brindle {

void ResultsDocument::Attribute(std::string_view name, std::string_view bytes) {
    m_elements.append(" ").append(name).append("=\"");
    bytes = bytes.substr(0, bytes.find('\0'));
    if (!IsAscii(bytes)) {
        m_buffer.clear();
        CurrentCodePage().AppendUtf8(bytes, m_buffer);
        bytes = m_buffer;
    }
    m_good = AppendXmlText(bytes, XmlTextKind::kAttribute, m_elements) && m_good;
    m_elements += '"';
}

void ResultsDocument::Number(std::string_view name, std::size_t number) {
    m_elements.append(" ").append(name).append("=\"").append(PrintUnsigned(number)).append("\"");
}

void ResultsDocument::End() {
    m_elements += "/>";
    ++m_count;
}

void ResultsDocument::AddValue(std::size_t id, const CStringA& value, const CStringA& unit,
                               const CStringA& header) {
    m_elements += "<Result";
    Number("ID", id);
    Attribute("Objval", value.view());
    Attribute("Unit", unit.view());
    Attribute("Header", header.view());
    End();
}

void ResultsDocument::AddMask(std::string_view unit, std::string_view header) {
    m_elements += "<Result";
    Number("Type", static_cast<std::size_t>(ResultType::kMask));
    Number("ID", 0);
    Attribute("Unit", unit);
    Attribute("Header", header);
    Number("Mask", 1);
    End();
}

void ResultsDocument::AddCaption(std::string_view unit, std::string_view header) {
    m_elements += "<Result";
    Number("Type", static_cast<std::size_t>(ResultType::kCaption));
    Number("ID", 0);
    Attribute("Unit", unit);
    Attribute("Header", header);
    End();
}

bool ResultsDocument::Text(CStringA& xml) const {
    if (!m_good) return false;
    std::string document = "<?xml version=\"1.0\"?><ResultsList";
    if (m_count == 0)
        document += "/>";
    else
        document.append(">").append(m_elements).append("</ResultsList>");
    AssignBytes(document, xml.str());
    return true;
}

}  // namespace brindle

// XMLWriter: writes a document section by section and saves it; the counterpart of XMLReader.
//
//     XMLWriter writer;
//     if (!writer.Initialize()) return false;
//     writer.EnterSection("BehaviourList");
//     writer.WriteAttribute("Enabled", true);
//     writer.CloseSection();
//     return writer.Save(path);
//
// The document holds exactly the nodes written: no indentation, no line breaks. Narrow strings are bytes in
// the ANSI code page (platform/code_page.h); a null text reads as the empty text. Files are UTF-8. Failure:
// writing operations report nothing, and do nothing before Initialize has succeeded; only Initialize, Save
// and SaveToString return a result. Nothing throws except memory running out (std::bad_alloc); the operation then
// has written and entered nothing. Thread: a writer and its copies (they share the document) belong to one thread
// at a time.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

struct brindle_xml_node;
namespace brindle {
class XmlDocument;
}
class XMLReader;

class BRINDLE_API XMLWriter {
  public:
    // What stands in the place of a text in a copy; an empty `from` replaces nothing.
    struct BRINDLE_API Replacement {
        CStringA from;
        CStringA to;
    };

    XMLWriter();
    virtual ~XMLWriter();
    XMLWriter(const XMLWriter& other);
    XMLWriter& operator=(const XMLWriter& other);

    // Creates the document, which begins with <?xml version="1.0"?>. True at once when it was done before;
    // false when no document can be created (a later call tries again).
    bool Initialize();

    // Appends a new element to the current section (the document itself when none is open) and makes it the
    // current section. The name is used as given, without checking. Nesting is the caller's.
    void EnterSection(char const* name);
    // Appends a copy of the reader's current section with everything in it (attributes, elements, texts, comments,
    // namespaces) and makes it the current section, open for more. In attribute values, texts and comments each
    // `from` becomes its `to`, from left to right; what was put in is not searched again. False, and nothing
    // entered, when the reader has no section open.
    bool EnterCopy(const XMLReader& source, const std::vector<Replacement>& replacements = {});
    // Closes the current section. Calls are balanced by the caller; one too many does nothing.
    void CloseSection();
    // How many sections are open.
    std::size_t Depth() const noexcept { return m_sections.size(); }

    // Sets an attribute of the current section; one of the same name is replaced. Without a section: nothing.
    void WriteAttribute(char const* name, char const* value);
    void WriteAttribute(char const* name, int value);   // decimal
    void WriteAttribute(char const* name, bool value);  // "TRUE" or "FALSE"; stored: do not change
    // Append a text or a comment to the current section, or to the document when none is open.
    void WriteData(char const* text);
    void WriteComment(char const* text);

    // Saves the document at a host path, whole or not at all. False when a text in it holds a character that
    // XML cannot hold (a control character), or the file cannot be written: an existing file is then as it
    // was. May be called any number of times; writing goes on in the same document.
    bool Save(char const* path) const;
    // The markup of the document, declaration included, in the ANSI code page. False, and `xml` unchanged, as
    // for Save.
    bool SaveToString(CStringA& xml) const;
    bool SaveToString(std::string& xml) const;

  private:
    bool m_initialised = false;
    std::shared_ptr<brindle::XmlDocument> m_document;
    std::vector<brindle_xml_node*> m_sections;  // owned by the document
};

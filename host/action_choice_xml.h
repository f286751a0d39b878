// XmlPiece: an element of an XML text with the places of its parts, so that a text can be edited in place and all else
// in it stays as it was: comments, blanks, the order of attributes, what nobody knows.
//
// Places are bytes of the text, which is in an encoding that has ASCII in it and is known to be well-formed.
#pragma once

#include <brindle/framework/result.h>

#include <string>
#include <string_view>
#include <vector>

namespace brindle::host {

struct XmlPiece {
    struct Attribute {
        std::string name;       // as written
        std::size_t begin = 0;  // of the value between its quotes
        std::size_t end = 0;
    };
    std::string name;           // without prefix
    std::size_t begin = 0;      // of "<"
    std::size_t nameBegin = 0;  // of the name as written
    std::size_t nameEnd = 0;
    std::size_t contentBegin = 0;  // behind the ">" of the start tag
    std::size_t contentEnd = 0;    // of the end tag; of an empty element as contentBegin
    std::size_t end = 0;           // behind the element
    bool isEmpty = false;          // "<NAME/>"
    std::vector<Attribute> attributes;
    std::vector<XmlPiece> children;

    const Attribute* Find(std::string_view attribute) const noexcept;
    // The first child of that name at or behind the index; null: there is none.
    const XmlPiece* Child(std::string_view child, std::size_t from = 0) const noexcept;
};

// Finds the root element and everything in it. Fails for a text that has a document type, whose elements may stand
// elsewhere, and for one that ends early.
Result FindXmlPieces(std::string_view text, XmlPiece& root);

// A text with some of its parts replaced.
class XmlEdit {
  public:
    explicit XmlEdit(std::string_view text) : m_text(text) {}

    // `value` is library text; it is written with character references where it has to be.
    void SetAttribute(const XmlPiece& piece, std::string_view name, std::string_view value);
    // Puts markup behind the child, or before all children (null), on a line of its own where the others have one.
    void Insert(const XmlPiece& parent, const XmlPiece* behind, const std::string& markup);
    // With its line when nothing else stands there.
    void Remove(const XmlPiece& piece);
    std::string Text() const;

  private:
    struct Splice {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::string text;
    };
    std::string IndentAt(std::size_t place) const;
    std::string Separator(const XmlPiece& parent) const;

    std::string_view m_text;
    std::vector<Splice> m_splices;
};

// Library text as markup of ASCII characters only; `quoted`: inside quotes.
std::string ToMarkup(std::string_view text, bool quoted);

}  // namespace brindle::host

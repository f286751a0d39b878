// OVSkin: a skin, the named texts from which a host takes the colours, borders, fonts and layout numbers of its
// controls. Three levels: mode ("default", "pressed"), element ("button"), attribute ("bordersize"). Names are
// any bytes; they compare byte by byte and case counts. Every value is kept as text and converted on the way in
// and out. What the names mean is the host's business.
//
// As a document: the root "skin", a child element for each mode, in it one for each element, whose attributes are
// the values. Texts, comments and anything deeper are not read; attributes of the root and of modes neither.
// Writing brings modes and elements in the order in which they were first added, attributes in byte order.
//
// Nothing throws except memory running out; the skin then is as it was. Thread: one at a time for a skin; const
// operations may run side by side.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"
#include "brindle/skin/named_list.h"
#include "brindle/skin/sorted_texts.h"

class XMLReader;

class BRINDLE_API OVSkin {
  public:
    OVSkin();
    // Copies are deep.
    OVSkin(const OVSkin& other);
    OVSkin& operator=(const OVSkin& other);
    virtual ~OVSkin();

    // Loading adds to what the skin holds and replaces values of the same name; it never removes anything. A
    // name that comes twice is one entry, its later value wins. False when the root is not "skin": nothing is
    // changed then.
    //   Reads the file at a host path. When it cannot be loaded (missing, not well-formed, over the limits of
    //   XMLReader) the built-in default skin is loaded in its place and the result is true. Ask XMLReader::Load
    //   first to know whether a file is broken.
    bool LoadFromFile(const CStringA& path);
    //   Reads a text in the ANSI code page; false, nothing changed, when it is not well-formed.
    bool LoadFromStr(const CStringA& xml);

    // The skin as a document in the ANSI code page, with a declaration that names no encoding: convert it to
    // UTF-8 before it becomes a file. The names stand as they are given, so one that cannot be an XML name gives
    // a text that cannot be read back; a text that holds a control character, which XML cannot hold, gives the empty
    // text. A zero byte ends a name or value there. Valid until the skin changes; kept until then.
    const CStringA& GetXML();

    // A place for hosts; does nothing and returns true.
    bool PrepNewSkin();
    // Always empty: XMLReader, whose error text this is, writes none.
    CStringA GetError() const;

    // A value, of the mode or else of the mode "default". False, `out` unchanged, when neither has it. A text
    // that is no number reads as 0 (digits up to the first other character count; saturates at 32 bits).
    bool GetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                      unsigned char& out) const;  // the low 8 bits of the number: "300" is 44
    bool GetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                      int& out) const;
    bool GetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                      long& out) const;
    // Likewise a colour, 0x00BBGGRR, from "#RRGGBB" or "RRGGBB" in either case; of seven characters the first may be
    // any. Another length is black; in a pair of digits the first character that is none ends the number.
    bool GetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                      unsigned long& out) const;
    // Likewise a text. Kept: hosts tell by this one whether the mode itself sets the value, so it alone does not ask
    // "default".
    bool GetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                      CStringA& out) const;

    // The same by the number of a mode: 0 "default", 1 "checked", 2 "pressed", 3 "rule"; any other number,
    // negative ones too, is "default".
    bool GetExactProp(int mode, const CStringA& element, const CStringA& attribute, unsigned char& out) const;
    bool GetExactProp(int mode, const CStringA& element, const CStringA& attribute, int& out) const;
    bool GetExactProp(int mode, const CStringA& element, const CStringA& attribute, long& out) const;
    bool GetExactProp(int mode, const CStringA& element, const CStringA& attribute, unsigned long& out) const;
    bool GetExactProp(int mode, const CStringA& element, const CStringA& attribute, CStringA& out) const;

    // Sets a value, adding mode and element as needed. Always true. Numbers are written in decimal, colours as
    // "#RRGGBB" in capitals (bits above 24 are dropped).
    // Kept: by the name of a mode there are three kinds of values, by its number five.
    bool SetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                      const CStringA& value);
    bool SetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                      const int& value);
    bool SetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                      const unsigned long& value);
    bool SetExactProp(int mode, const CStringA& element, const CStringA& attribute, const CStringA& value);
    bool SetExactProp(int mode, const CStringA& element, const CStringA& attribute,
                      const unsigned char& value);
    bool SetExactProp(int mode, const CStringA& element, const CStringA& attribute, const int& value);
    bool SetExactProp(int mode, const CStringA& element, const CStringA& attribute, const long& value);
    bool SetExactProp(int mode, const CStringA& element, const CStringA& attribute,
                      const unsigned long& value);

  private:
    using Elements = brindle::NamedList<brindle::SortedTexts>;

    bool ReadXML(XMLReader& reader);
    void ReadMode(const CStringA& mode, XMLReader& reader);
    void DropEmpty(const CStringA& mode) noexcept;
    const CStringA* Find(const CStringA& mode, const CStringA& element,
                         const CStringA& attribute) const noexcept;
    const CStringA* FindOrDefault(const CStringA& mode, const CStringA& element,
                                  const CStringA& attribute) const noexcept;
    static const CStringA& GetModeStr(int mode);
    static unsigned long GetColorFromString(const CStringA& text) noexcept;
    static CStringA GetStringFromColour(unsigned long colour);

    brindle::NamedList<Elements> m_modes;
    CStringA m_error;  // written by the XML reader
    CStringA m_xml;    // the last GetXML; empty: to be made
};

// ConfiguredItem: what every trigger and action type of this host has besides the engine's interface: a type
// name, a table of attributes, and the free functions that load and save through that table.
//
// ConfiguredBase implements the engine's configuration operations once for all types. A type T derives from
// ConfiguredBase<T, base>, names itself with kTypeName (the XML element) and kTypeText (the display text) and
// gives its table in Attributes().
#pragma once

#include <brindle/behaviour/tree_item.h>
#include <brindle/framework/string_a.h>
#include <brindle/xml/xml_reader.h>
#include <brindle/xml/xml_writer.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/attribute.h"
#include "host/words.h"

namespace brindle::host {

class ConfiguredItem {
  public:
    virtual const char* TypeName() const = 0;
    // The table, bound to this object's fields.
    virtual AttributeTable Attributes() = 0;
    // One short line that tells the item apart from others of its type: its name, else its conditions.
    virtual std::string Summary() const = 0;
    // Rules that no single attribute can break, each as a text; empty when all is well.
    virtual std::vector<std::string> Conflicts() const { return {}; }

  protected:
    ~ConfiguredItem() = default;  // never destroyed through this interface
};

using TextChange = std::function<std::string(std::string)>;

// Reads the attributes the current section has into their fields, each text through `change` when there is
// one. Returns what is missing, unreadable or unknown, one text each; such fields keep their value.
std::vector<std::string> ReadAttributes(const XMLReader& reader, const AttributeTable& table,
                                        const TextChange& change = {});
// Writes the attributes that are required or differ from the initial ones (a table of a new object).
void WriteAttributes(XMLWriter& writer, const AttributeTable& table, const AttributeTable& initial);
// The attributes that differ from the initial ones as `Name="text"`, separated by blanks; "Name" left out.
std::string DescribeAttributes(const AttributeTable& table, const AttributeTable& initial);

template <class Derived, class Base>
class ConfiguredBase : public Base, public ConfiguredItem {
  public:
    const char* TypeName() const override { return Derived::kTypeName; }
    std::string Summary() const override {
        Derived copy(Self());
        return copy.Name().IsEmpty() ? DescribeAttributes(copy.Attributes(), Derived().Attributes())
                                     : copy.Name().str();
    }

    CStringA GetText(int kind) override { return kind == 1 ? CStringA(Derived::kTypeText) : Self().Name(); }
    CStringA GetReflect() override { return Summary(); }

    void Save(XMLWriter& writer) const override {
        Derived copy(Self());
        writer.EnterSection(Derived::kTypeName);
        WriteAttributes(writer, copy.Attributes(), Derived().Attributes());
        Base::Save(writer);
        writer.CloseSection();
    }
    // Attributes that are missing or cannot be read keep their value.
    void Load(XMLReader& reader) override {
        ReadAttributes(reader, Attributes());
        Base::Load(reader);
    }
    // Writes this item once more with both placeholders replaced in every attribute, numbers included, taken
    // from the reader's current section. The copy is no template. GetResultInfo answers for the copy
    // afterwards.
    void ReplaceData(XMLReader& reader, XMLWriter& writer, CStringA first, CStringA second, CStringA third,
                     CStringA fourth) override {
        const TextChange change = [&](std::string text) {
            return Replaced(Replaced(text, first.view(), second.view()), third.view(), fourth.view());
        };
        Derived copy(Self());
        for (const Attribute& attribute : copy.Attributes()) attribute.parse(change(attribute.text()));
        ReadAttributes(reader, copy.Attributes(), change);
        copy.SetTemplate(false);
        copy.Save(writer);
        m_replacedUnit = copy.m_resultUnit;
        m_replacedHeader = copy.m_resultHeader;
        m_replaced = true;
    }
    // "ResultUnit" and "ResultHeader": of the copy that ReplaceData wrote last, else the item's own.
    void GetResultInfo(CStringA& unit, CStringA& header) override {
        unit = m_replaced ? m_replacedUnit : m_resultUnit;
        header = m_replaced ? m_replacedHeader : m_resultHeader;
    }

  protected:
    void AppendResultAttributes(AttributeTable& table) {
        table.push_back(TextAttribute("ResultUnit", m_resultUnit));
        table.push_back(TextAttribute("ResultHeader", m_resultHeader));
    }

  private:
    const Derived& Self() const { return static_cast<const Derived&>(*this); }

    CStringA m_resultUnit;
    CStringA m_resultHeader;
    CStringA m_replacedUnit;
    CStringA m_replacedHeader;
    bool m_replaced = false;
};

}  // namespace brindle::host

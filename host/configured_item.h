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

#include <memory>
#include <string>
#include <string_view>
#include <utility>
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
    // Whether an element of that name inside it is its own; "Enabled" is everybody's.
    virtual bool KnowsElement(const CStringA&) const { return false; }
    // Reads what the type keeps beside its attributes. The reader stands in the element, anywhere among its
    // children.
    virtual void LoadContent(XMLReader&) {}
    // Rules that no single attribute can break, each as a text; empty when all is well.
    virtual std::vector<std::string> Conflicts() const { return {}; }

  protected:
    ~ConfiguredItem() = default;  // never destroyed through this interface
};

// Reads the attributes the current section has into their fields. Returns what is missing, unreadable or unknown,
// one text each; such fields keep their value.
std::vector<std::string> ReadAttributes(const XMLReader& reader, const AttributeTable& table);
// `text` with every placeholder filled in, from left to right; what was put in is not searched again.
std::string FilledIn(std::string_view text, const std::vector<XMLWriter::Replacement>& placeholders);
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
        SaveContent(writer);
        Base::Save(writer);
        writer.CloseSection();
    }
    // Attributes that are missing or cannot be read keep their value.
    void Load(XMLReader& reader) override {
        ReadAttributes(reader, Attributes());
        Base::Load(reader);
        LoadContent(reader);
    }
    // Writes the reader's current section, the element of this item, once more with both placeholders replaced in
    // its attributes, texts and comments; nothing else changes but that the copy is no template. GetResultInfo
    // answers for the copy afterwards.
    void ReplaceData(XMLReader& reader, XMLWriter& writer, CStringA first, CStringA second, CStringA third,
                     CStringA fourth) override {
        m_placeholders = {{std::move(first), std::move(second)}, {std::move(third), std::move(fourth)}};
        if (!writer.EnterCopy(reader, m_placeholders)) return;
        bool isTemplate = false;
        if (reader.ReadAttribute("Template", isTemplate) && isTemplate)
            writer.WriteAttribute("Template", false);
        writer.CloseSection();
    }
    // "ResultUnit" and "ResultHeader", or what the type gives in their place: of the copy that ReplaceData wrote
    // last, else the item's own.
    void GetResultInfo(CStringA& unit, CStringA& header) override {
        unit = FilledIn((m_resultUnit.IsEmpty() ? ImpliedUnit() : m_resultUnit).view(), m_placeholders);
        header =
            FilledIn((m_resultHeader.IsEmpty() ? ImpliedHeader() : m_resultHeader).view(), m_placeholders);
    }

  protected:
    void AppendResultAttributes(AttributeTable& table) {
        table.push_back(TextAttribute("ResultUnit", m_resultUnit));
        table.push_back(TextAttribute("ResultHeader", m_resultHeader));
    }

    // Writes what LoadContent reads, behind the attributes.
    virtual void SaveContent(XMLWriter&) const {}
    virtual CStringA ImpliedUnit() const { return {}; }
    virtual CStringA ImpliedHeader() const { return {}; }

  private:
    const Derived& Self() const { return static_cast<const Derived&>(*this); }

    CStringA m_resultUnit;
    CStringA m_resultHeader;
    std::vector<XMLWriter::Replacement> m_placeholders;  // those filled in last
};

}  // namespace brindle::host

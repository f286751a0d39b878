// Types and documents for the tests of system creation: actions by the display texts that an expansion looks for,
// with as little data as it takes.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

#include "brindle/behaviour/action.h"
#include "brindle/behaviour/action_list.h"
#include "brindle/syscreate/sys_create.h"
#include "brindle/xml/xml_reader.h"
#include "brindle/xml/xml_writer.h"
#include "testing/behaviour_probe.h"

namespace brindle::testing {

inline constexpr const char* kDeclaration = "<?xml version=\"1.0\"?>";

// Reads and writes the attribute "data" and its element text.
class KitAction : public CCommandAction {
  public:
    KitAction(const char* element, const char* type) : m_element(element), m_type(type) {}

    CStringA GetText(int kind) override { return kind == 1 ? m_type : ""; }
    CStringA GetReflect() override { return {}; }
    void Fire(const CCommandEvent*) override {}
    void SetTemplate(bool isTemplate) override { m_template = isTemplate; }
    bool IsTemplate() override { return m_template; }
    void Load(XMLReader& reader) override {
        reader.ReadAttribute("data", m_data);
        reader.ReadAttribute("Template", m_template);
        m_text = reader.ReadData();
        CCommandAction::Load(reader);
    }
    void Save(XMLWriter& writer) const override {
        writer.EnterSection(m_element);
        if (!m_data.IsEmpty()) writer.WriteAttribute("data", m_data);
        if (m_template) writer.WriteAttribute("Template", true);
        if (!m_text.empty()) writer.WriteData(m_text.c_str());
        writer.CloseSection();
    }
    void ReplaceData(XMLReader& reader, XMLWriter& writer, CStringA first, CStringA second, CStringA third,
                     CStringA fourth) override {
        if (m_data == "throw") throw std::runtime_error("the host's own");
        EXPECT_EQ(first, "%OBJFLD%");
        EXPECT_EQ(third, "%OBJVAL%");
        EXPECT_TRUE(writer.EnterCopy(reader, {{first, second}, {third, fourth}}));
        writer.CloseSection();
        m_unit = "unit of " + second;
        m_header = "header of " + fourth;
    }
    void GetResultInfo(CStringA& unit, CStringA& header) override {
        unit = m_unit;
        header = m_header;
    }

  private:
    const char* m_element;
    const char* m_type;
    CStringA m_data;
    std::string m_text;
    bool m_template = false;
    CStringA m_unit;
    CStringA m_header;
};

// As KitAction, saved with the lists it was loaded with.
class KitMaskHeaderAction final : public KitAction {
  public:
    KitMaskHeaderAction() : KitAction("MaskHeaderAction", "Mask Header") {}
    void Load(XMLReader& reader) override {
        reader.ReadAttribute("data", m_note);
        for (const CStringA& name : reader.GetChildSections()) {
            reader.EnterSection(name, false);
            m_lists.emplace_back(name, reader.ReadData());
            reader.CloseSection();
        }
    }
    void Save(XMLWriter& writer) const override {
        writer.EnterSection("MaskHeaderAction");
        for (const auto& [name, text] : m_lists) {
            writer.EnterSection(name);
            writer.WriteData(text.c_str());
            writer.CloseSection();
        }
        writer.CloseSection();
    }

  private:
    CStringA m_note;
    std::vector<std::pair<CStringA, std::string>> m_lists;
};

inline bool RegisterKit() {
    RegisterProbes();
    using List = CCommandActionList;
    List::Register("GetSNMPAction", [](unsigned long) -> CCommandAction* {
        return new KitAction("GetSNMPAction", "Get SNMP");
    });
    List::Register("MaskUnitAction", [](unsigned long) -> CCommandAction* {
        return new KitAction("MaskUnitAction", "Mask Unit");
    });
    List::Register("MaskHeaderAction",
                   [](unsigned long) -> CCommandAction* { return new KitMaskHeaderAction; });
    List::Register("OtherAction",
                   [](unsigned long) -> CCommandAction* { return new KitAction("OtherAction", "Other"); });
    List::Register("NothingAction", [](unsigned long) -> CCommandAction* { return nullptr; });
    return true;
}

inline CStringArray Texts(std::initializer_list<const char*> texts) {
    [[maybe_unused]] static const bool registered = RegisterKit();
    CStringArray array;
    for (const char* text : texts) array.Add(text);
    return array;
}

// A template of one behaviour with these actions.
inline std::string Template(const std::string& actions) {
    return "<BehaviourList><Behaviour><TriggerList/><ActionList>" + actions +
           "</ActionList></Behaviour></BehaviourList>";
}

inline std::string ExpandedTemplate(const std::string& actions) {
    const std::string list = actions.empty() ? "<ActionList/>" : "<ActionList>" + actions + "</ActionList>";
    return std::string(kDeclaration) + "<BehaviourList><Behaviour><TriggerList/>" + list +
           "</Behaviour></BehaviourList>";
}

inline std::string ResultsList(const std::string& results) {
    return std::string(kDeclaration) +
           (results.empty() ? "<ResultsList/>" : "<ResultsList>" + results + "</ResultsList>");
}

}  // namespace brindle::testing

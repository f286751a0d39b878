// Checks of the XML files of a site, element by element. Tests: site_test.cpp.
#include "host/behaviour_check.h"

#include <brindle/behaviour/action.h>
#include <brindle/behaviour/action_list.h>
#include <brindle/behaviour/behaviour_list.h>
#include <brindle/behaviour/traveral_funct.h>
#include <brindle/behaviour/trigger_list.h>
#include <brindle/variables/variable_manager.h>
#include <brindle/xml/xml_reader.h>

#include <algorithm>
#include <memory>
#include <set>

#include "host/child_sections.h"
#include "host/configured_item.h"
#include "host/get_snmp_action.h"
#include "host/rule_check.h"
#include "host/rule_trigger.h"
#include "host/run_command_action.h"
#include "host/set_variable_action.h"

namespace brindle::host {

namespace {

// A document being checked: problems get the place of the current element.
class CheckedDocument {
  public:
    CheckedDocument(const std::string& path, Problems& problems) : m_path(path), m_problems(problems) {}

    // Loads the file and enters its root; false, with a problem, when that cannot be done.
    bool Open(const char* root) {
        Result result;
        if (!m_reader.LoadPositioned(m_path.c_str(), result)) {
            m_problems.push_back({m_path, result.line, result.column, result.text});
            return false;
        }
        if (m_reader.EnterSection(root, true)) return true;
        if (m_reader.EnterSection("/*", true)) {
            Report("the root element is not \"" + std::string(root) + "\"");
            m_reader.CloseSection();
        }
        return false;
    }
    XMLReader& Reader() noexcept { return m_reader; }
    void Report(std::string text, bool warning = false) {
        std::uint32_t line = 0;
        std::uint32_t column = 0;
        m_reader.GetPosition(line, column);
        m_problems.push_back({m_path, line, column, std::move(text), warning});
    }

  private:
    const std::string& m_path;
    Problems& m_problems;
    XMLReader m_reader;
};

bool IsTypeName(const CStringList& types, const CStringA& name) {
    for (POSITION position = types.GetHeadPosition(); position;)
        if (types.GetNext(position).CompareNoCase(name) == 0) return true;
    return false;
}

class BehaviourChecker {
  public:
    BehaviourChecker(const std::string& path, const BehaviourSurroundings& surroundings, Problems& problems)
        : m_document(path, problems), m_surroundings(surroundings) {}

    void Run() {
        if (!m_document.Open("BehaviourList")) return;
        ForEachChild(m_document.Reader(), [this](const CStringA& name) {
            if (name == "Behaviour")
                CheckBehaviour();
            else
                m_document.Report("element \"" + name.str() + "\" is unknown here and has no effect");
        });
    }

  private:
    void CheckBehaviour() {
        const std::vector<CStringA> names = m_document.Reader().GetChildSections();
        const auto triggers = std::find(names.begin(), names.end(), "TriggerList");
        const auto actions = std::find(names.begin(), names.end(), "ActionList");
        if (triggers == names.end())
            m_document.Report(
                "\"Behaviour\" has no \"TriggerList\", so its \"ActionList\" is not found either");
        else if (actions == names.end())
            m_document.Report("\"Behaviour\" has no \"ActionList\": it does nothing");
        else if (actions < triggers)
            m_document.Report("\"ActionList\" stands before \"TriggerList\" and is not found");
        int triggerLists = 0;
        int actionLists = 0;
        ForEachChild(m_document.Reader(), [&](const CStringA& name) {
            const bool isTriggers = name == "TriggerList";
            if (!isTriggers && name != "ActionList")
                m_document.Report("element \"" + name.str() + "\" is unknown here and has no effect");
            else if ((isTriggers ? triggerLists : actionLists)++ > 0)
                m_document.Report("a second \"" + name.str() + "\" is not read");
            else
                CheckList(isTriggers);
        });
    }

    void CheckList(bool isTriggers) {
        ForEachChild(m_document.Reader(), [&](const CStringA& name) {
            if (isTriggers)
                CheckTrigger(name);
            else
                CheckAction(name);
        });
    }

    void CheckTrigger(const CStringA& name) {
        const std::unique_ptr<CCommandTrigger> trigger(CCommandTriggerList::CreateObject(name, 0));
        if (trigger) return CheckItem(*trigger, false);
        CStringList actions;
        CCommandActionList::GetTypeList(actions);
        m_document.Report("trigger type \"" + name.str() + "\" is unknown" +
                          (IsTypeName(actions, name) ? ": it is a type of action" : ""));
    }

    void CheckAction(const CStringA& name) {
        const std::unique_ptr<CCommandAction> action(CCommandActionList::CreateObject(name, 0));
        if (!action) {
            CStringList triggers;
            CCommandTriggerList::GetTypeList(triggers);
            m_document.Report("action type \"" + name.str() + "\" is unknown" +
                              (IsTypeName(triggers, name) ? ": it is a type of trigger" : ""));
            return;
        }
        bool isTemplate = false;
        m_document.Reader().ReadAttribute("Template", isTemplate);
        CheckItem(*action, isTemplate);
        if (m_surroundings.host && !action->SupportsHostType(*m_surroundings.host))
            m_document.Report("the action cannot be used by an object of this kind");
    }

    void CheckItem(CCommandTreeItem& item, bool isTemplate) {
        auto* configured = dynamic_cast<ConfiguredItem*>(&item);
        CheckChildren(configured);
        if (!configured) return;
        // The texts of a template hold placeholders that are replaced before anything reads them.
        if (isTemplate) return;
        const AttributeTable table = configured->Attributes();
        for (std::string& problem : ReadAttributes(m_document.Reader(), table))
            m_document.Report(std::move(problem));
        configured->LoadContent(m_document.Reader());
        for (std::string& conflict : configured->Conflicts()) m_document.Report(std::move(conflict));
        if (const auto* trigger = dynamic_cast<const RuleTrigger*>(&item)) CheckRule(trigger->Rule());
        for (const Attribute& attribute : table) {
            if (!attribute.formatted) continue;
            if (dynamic_cast<const RunCommandAction*>(&item)) CheckStartedLine(attribute.text());
            for (const std::string& problem : CheckText(attribute.text(), m_surroundings.texts))
                m_document.Report("attribute \"" + attribute.name + "\": " + problem);
        }
    }

    void CheckStartedLine(const std::string& line) {
        if (m_surroundings.commands)
            for (const std::string& problem : CheckCommand(line, *m_surroundings.commands))
                m_document.Report("attribute \"Command\": " + problem);
        std::string fields;
        for (const std::string& field : ForeignFields(line)) fields += (fields.empty() ? "" : " ") + field;
        if (m_surroundings.starts && !fields.empty())
            m_document.Report("attribute \"Command\" starts a program with texts from elsewhere (" + fields +
                                  "): a quote, \";\" or \"$\" in them changes what starts",
                              true);
    }

    void CheckRule(const PreparedRule& rule) {
        if (!m_surroundings.texts.devices) return;
        for (const std::string& problem :
             CheckRuleNames(rule, m_surroundings.address, *m_surroundings.texts.devices))
            m_document.Report("attribute \"Rule\": " + problem);
    }

    void CheckChildren(const ConfiguredItem* item) {
        ForEachChild(m_document.Reader(), [&](const CStringA& name) {
            bool unused = false;
            if (item && item->KnowsElement(name)) return;
            if (name != "Enabled")
                m_document.Report("element \"" + name.str() + "\" is unknown here and has no effect");
            else if (!m_document.Reader().ReadAttribute("value", unused))
                m_document.Report("attribute \"value\" of \"Enabled\" is not TRUE or FALSE");
        });
    }

    CheckedDocument m_document;
    const BehaviourSurroundings& m_surroundings;
};

class SetVariables final : public TraveralFunct {
  public:
    explicit SetVariables(VariableManager& scope) : m_scope(scope) {}
    void operator()(CCommandTreeItem* item) const override {
        if (const auto* set = dynamic_cast<const SetVariableAction*>(item)) Add(set->VariableName());
        if (const auto* get = dynamic_cast<const GetSnmpAction*>(item)) Add(get->VariableName());
    }

  private:
    void Add(const CStringA& name) const {
        CStringA unused;
        if (!name.IsEmpty() && !m_scope.getValue(name, unused)) m_scope.addVariable(Variable(name, ""));
    }

    VariableManager& m_scope;
};

}  // namespace

void CheckBehaviours(const std::string& path, const BehaviourSurroundings& surroundings, Problems& problems) {
    BehaviourChecker(path, surroundings, problems).Run();
}

void CheckVariables(const std::string& path, VariableManager& scope, Problems& problems) {
    CheckedDocument document(path, problems);
    if (!document.Open("Variables")) return;
    std::set<std::string> names;
    ForEachChild(document.Reader(), [&](const CStringA& element) {
        CStringA name;
        CStringA value;
        if (element != "variable") {
            document.Report("element \"" + element.str() + "\" is unknown here and has no effect");
            return;
        }
        if (!document.Reader().ReadAttribute("name", name) || name.IsEmpty())
            document.Report("attribute \"name\" is missing or empty: the variable has no effect");
        else if (!names.insert(name.str()).second)
            document.Report("variable \"" + name.str() + "\" comes twice: the last one counts");
        if (!document.Reader().ReadAttribute("value", value))
            document.Report("attribute \"value\" is missing");
        scope.addVariable(Variable(name, value));
    });
}

void AddVariablesSet(const std::string& path, VariableManager& scope) {
    XMLReader reader;
    CStringA unused;
    if (!reader.Load(path.c_str(), unused)) return;
    CCommandBehaviourList list(eHostSystem);
    list.Load(reader);
    list.Traverse(SetVariables(scope));
}

}  // namespace brindle::host

// Tests: action_choice_test.cpp, site_reload_test.cpp.
#include "host/behaviour_items.h"

#include <brindle/behaviour/action.h>
#include <brindle/behaviour/traveral_funct.h>
#include <brindle/xml/xml_writer.h>

namespace brindle::host {

namespace {

// Gathers the items of one class.
template <class T>
class Gatherer final : public TraveralFunct {
  public:
    explicit Gatherer(std::vector<T*>& items) : m_items(items) {}
    void operator()(CCommandTreeItem* item) const override {
        if (auto* const wanted = dynamic_cast<T*>(item)) m_items.push_back(wanted);
    }

  private:
    std::vector<T*>& m_items;
};

template <class T>
std::vector<T*> Gathered(CCommandBehaviour& behaviour) {
    std::vector<T*> items;
    behaviour.Traverse(Gatherer<T>(items));
    return items;
}

}  // namespace

std::vector<CCommandBehaviour*> BehavioursOf(const CCommandBehaviourList& list) {
    std::vector<CCommandBehaviour*> behaviours;
    for (POSITION position = list.GetFirstChildPosition(); position;) {
        // The list hands out its own objects for reading only; this host owns the list.
        auto* child = const_cast<CCommandTreeItem*>(list.GetNextChild(position));
        if (auto* behaviour = dynamic_cast<CCommandBehaviour*>(child)) behaviours.push_back(behaviour);
    }
    return behaviours;
}

std::vector<CCommandTrigger*> TriggersOf(CCommandBehaviour& behaviour) {
    return Gathered<CCommandTrigger>(behaviour);
}

std::vector<CCommandAction*> ActionsOf(CCommandBehaviour& behaviour) {
    return Gathered<CCommandAction>(behaviour);
}

std::string SavedText(const CCommandTreeItem& item) {
    XMLWriter writer;
    std::string text;
    if (writer.Initialize()) item.Save(writer);
    return writer.SaveToString(text) ? text : std::string();
}

void EndRepeats(CCommandBehaviour& behaviour, CCommandBehaviourList& list) {
    behaviour.Init();  // no trigger's condition holds any more
    for (const CCommandTrigger* trigger : TriggersOf(behaviour)) list.CancelRepeats(trigger);
}

}  // namespace brindle::host

// The update of scopes in place. Tests: site_reload_test.cpp.
#include "host/variables_file.h"

#include "host/host_files.h"

namespace brindle::host {

void VariablesFile::AddScope(VariableManager& scope, const ObjectPlan* object) {
    Scope added{&scope, object, {}, {}};
    added.loaded.copyFrom(&scope);
    m_scopes.push_back(std::move(added));
}

void VariablesFile::Read(Problems& problems) {
    for (Scope& scope : m_scopes) {
        scope.fresh.clear();
        if (scope.object) AddObjectVariables(*scope.object, scope.fresh);
        if (!ReadVariables(Path(), scope.fresh, problems)) return;
    }
}

void VariablesFile::TakeOver(RunState& state) {
    for (Scope& scope : m_scopes) {
        int set = 0;
        int removed = 0;
        CStringA value;
        for (const Variable& variable : scope.fresh.getVariables()) {
            if (scope.loaded.getValue(variable.name(), value) && value == variable.value()) continue;
            scope.live->addVariable(variable);
            ++set;
        }
        for (const Variable& variable : scope.loaded.getVariables()) {
            if (scope.fresh.getValue(variable.name(), value)) continue;
            scope.live->removeVariable(variable.name());
            ++removed;
        }
        scope.loaded.copyFrom(&scope.fresh);
        if (set + removed == 0) continue;
        RunRecord record = ReloadRecord(state, Path());
        if (scope.object) record["object"] = TextToUtf8(scope.object->name);
        record["set"] = set;
        record["removed"] = removed;
        state.sink.Write(record);
    }
}

}  // namespace brindle::host

// VariableManager: the scope itself, its variables and its parent. resolve stands in variable_resolve.cpp,
// XML and archive in variable_persistence.cpp. Tested in variable_manager_test.cpp.
#include "brindle/variables/variable_manager.h"

#include <utility>

VariableManager::VariableManager() = default;
VariableManager::~VariableManager() = default;

VariableManager::VariableManager(const VariableManager& other)
    : m_variables(other.m_variables), m_parent(other.m_parent) {
    rebuildIndex();
}

VariableManager& VariableManager::operator=(const VariableManager& other) {
    if (this == &other) return *this;
    replaceBy(other.m_variables);
    m_parent = other.m_parent;
    return *this;
}

void VariableManager::rebuildIndex() {
    brindle::VariableIndex index;
    for (const auto& [name, variable] : m_variables) index.Append(variable);
    m_index = std::move(index);
}

// All or nothing: the index points into the variables, so they may only change together.
void VariableManager::replaceBy(Variables variables) {
    brindle::VariableIndex index;
    for (const auto& [name, variable] : variables) index.Append(variable);
    m_variables.swap(variables);
    m_index = std::move(index);
}

void VariableManager::addVariable(const Variable& v) {
    if (v.name().IsEmpty()) return;
    if (const auto known = m_variables.find(v.name()); known != m_variables.end()) {
        known->second.setValue(v.value());
        return;
    }
    m_index.MakeRoom();
    m_index.Insert(m_variables.emplace(v.name(), v).first->second);
}

void VariableManager::removeVariable(const CStringA& name) {
    const auto entry = m_variables.find(name);
    if (entry == m_variables.end()) return;
    m_index.Erase(name.view());
    m_variables.erase(entry);
}

void VariableManager::clear() {
    m_index.Clear();
    m_variables.clear();
}

void VariableManager::copyFrom(VariableManager* other) {
    if (!other) return;
    if (other == this) {
        clear();
    } else {
        replaceBy(other->m_variables);
    }
}

bool VariableManager::getValue(const CStringA& name, CStringA& value) const {
    const Variable* variable = m_index.Find(name.view());
    if (variable) value = variable->value();
    return variable != nullptr;
}

std::vector<Variable> VariableManager::getVariables() const {
    std::vector<Variable> all;
    all.reserve(m_variables.size());
    for (const auto& [name, variable] : m_variables) all.push_back(variable);
    return all;
}

void VariableManager::setParent(VariableManager* p) {
    for (const VariableManager* scope = p; scope; scope = scope->m_parent)
        if (scope == this) return;
    m_parent = p;
}

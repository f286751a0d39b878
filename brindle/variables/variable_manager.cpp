// VariableManager: the scope itself, its variables and its parent. resolve stands in variable_resolve.cpp,
// XML and archive in variable_persistence.cpp. Tested in variable_manager_test.cpp.
#include "brindle/variables/variable_manager.h"

VariableManager::VariableManager() = default;
VariableManager::VariableManager(const VariableManager& other) = default;
VariableManager& VariableManager::operator=(const VariableManager& other) = default;
VariableManager::~VariableManager() = default;

void VariableManager::addVariable(const Variable& v) {
    if (!v.name().IsEmpty()) m_variables.insert_or_assign(v.name(), v);
}

void VariableManager::removeVariable(const CStringA& name) {
    m_variables.erase(name);
}

void VariableManager::clear() {
    m_variables.clear();
}

void VariableManager::copyFrom(VariableManager* other) {
    if (!other) return;
    if (other == this) {
        clear();
    } else {
        m_variables = other->m_variables;
    }
}

bool VariableManager::getValue(const CStringA& name, CStringA& value) const {
    const auto found = m_variables.find(name);
    if (found == m_variables.end()) return false;
    value = found->second.value();
    return true;
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

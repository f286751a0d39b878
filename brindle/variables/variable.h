// Variable: one name and its value, as a scope of variables holds it. A plain value type. Thread: a value without
// shared state.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

class BRINDLE_API Variable {
  public:
    Variable() = default;
    Variable(const CStringA& name, const CStringA& value) : m_name(name), m_value(value) {}

    const CStringA& name() const noexcept { return m_name; }
    const CStringA& value() const noexcept { return m_value; }
    void setName(const CStringA& name) { m_name = name; }
    void setValue(const CStringA& value) { m_value = value; }

    // A variable whose name and value are empty.
    static Variable empty();

  private:
    CStringA m_name;
    CStringA m_value;
};

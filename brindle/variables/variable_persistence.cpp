// How a scope of variables is stored: the XML vocabulary, and the archive string around it. Stored: do not
// change. Tested in variable_persistence_test.cpp.
#include <cstdio>
#include <utility>

#include "brindle/framework/archive.h"
#include "brindle/variables/variable_manager.h"
#include "brindle/xml/xml_reader.h"
#include "brindle/xml/xml_writer.h"

namespace {
constexpr const char* kVariables = "Variables";
constexpr const char* kVariable = "variable";
constexpr const char* kName = "name";
constexpr const char* kValue = "value";
}  // namespace

bool VariableManager::read(XMLReader& reader) {
    if (!reader.EnterSection(kVariables, true)) return false;
    Variables variables;
    while (reader.EnterSection(kVariable, false)) {
        CStringA name;
        CStringA value;
        reader.ReadAttribute(kName, name);
        reader.ReadAttribute(kValue, value);
        if (!name.IsEmpty()) variables.insert_or_assign(name, Variable(name, value));
        reader.CloseSection();
    }
    replaceBy(std::move(variables));  // at once: entry by entry the index would take quadratic time
    reader.CloseSection();
    return true;
}

void VariableManager::write(XMLWriter& writer) const {
    writer.EnterSection(kVariables);
    for (const auto& [name, variable] : m_variables) {
        writer.EnterSection(kVariable);
        writer.WriteAttribute(kName, variable.name().GetString());
        writer.WriteAttribute(kValue, variable.value().GetString());
        writer.CloseSection();
    }
    writer.CloseSection();
}

// The second half of fromXML and load: what to do once the reader has loaded, or not. Only now the scope is emptied:
// memory that runs out while the document is read takes nothing away.
bool VariableManager::readDocument(XMLReader& reader, bool loaded, const CStringA& error) {
    if (loaded && read(reader)) return true;
    clear();
    if (!loaded) std::printf("Problem loading XML string: %s\n", error.GetString());
    return false;
}

CStringA VariableManager::toXML() const {
    XMLWriter writer;
    CStringA xml;
    if (!writer.Initialize()) return xml;
    write(writer);
    writer.SaveToString(xml);
    return xml;
}

bool VariableManager::fromXML(const CStringA& xml) {
    if (xml.IsEmpty()) {
        clear();
        return false;
    }
    XMLReader reader;
    CStringA error;
    const bool loaded = reader.LoadFromString(xml, error);
    return readDocument(reader, loaded, error);
}

bool VariableManager::save(const CStringA& path) const {
    XMLWriter writer;
    if (!writer.Initialize()) return false;
    write(writer);
    return writer.Save(path);
}

bool VariableManager::load(const CStringA& path) {
    XMLReader reader;
    CStringA error;
    const bool loaded = reader.Load(path, error);
    return readDocument(reader, loaded, error);
}

void VariableManager::Serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        ar << (m_variables.empty() ? CStringA() : toXML());
        return;
    }
    CStringA xml;
    ar >> xml;
    if (!xml.IsEmpty()) fromXML(xml);
}

// The defaults of the behaviour tree's nodes. Tests: tree_item_test.cpp.
#include "brindle/behaviour/tree_item.h"

#include "brindle/behaviour/engine_call.h"
#include "brindle/behaviour/section.h"

CCommandTreeItem::~CCommandTreeItem() = default;

CCommandTreeItem& CCommandTreeItem::operator=(const CCommandTreeItem& other) noexcept {
    SetEnabled(other.m_enabled);
    return *this;
}

void CCommandTreeItem::SetEnabled(bool enabled) noexcept {
    if (m_enabled == enabled) return;
    m_enabled = enabled;
    brindle::OutdatePlans();
}

int CCommandTreeItem::GetImage() const {
    return 0;
}
int CCommandTreeItem::GetNextTime() const {
    return 0;
}
CCommandTreeItem* CCommandTreeItem::GetRealObject() {
    return this;
}
CCommandConfigDialog* CCommandTreeItem::CreateConfigDialog() const {
    return nullptr;
}
bool CCommandTreeItem::CanRename() const {
    return false;
}
void CCommandTreeItem::Rename(const char*) {}

void CCommandTreeItem::Save(XMLWriter& writer) const {
    const brindle::WriteSection section(writer, "Enabled");
    writer.WriteAttribute("value", m_enabled);
}

void CCommandTreeItem::Load(XMLReader& reader) {
    const brindle::ReadSection section(reader, "Enabled");
    if (!section) return;
    bool enabled = m_enabled;
    if (reader.ReadAttribute("value", enabled)) SetEnabled(enabled);
}

void CCommandTreeItem::ReplaceData(XMLReader&, XMLWriter&, CStringA, CStringA, CStringA, CStringA) {}
void CCommandTreeItem::GetResultInfo(CStringA&, CStringA&) {}
bool CCommandTreeItem::IsSysCreated() {
    return false;
}
void CCommandTreeItem::SetTemplate(bool) {}
bool CCommandTreeItem::IsTemplate() {
    return false;
}

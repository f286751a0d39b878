// Loading and exchanging the skin of a site. Tests: site_test.cpp, site_reload_test.cpp.
#include "host/skin_file.h"

#include <brindle/xml/xml_reader.h>

#include <map>
#include <tuple>

#include "host/skin_document.h"

namespace brindle::host {

namespace {

using Key = std::tuple<std::string, std::string, std::string>;

std::map<Key, std::string> Table(OVSkin& skin) {
    std::vector<SkinValue> values;
    ListSkinValues(skin, values);
    std::map<Key, std::string> table;
    for (SkinValue& value : values)
        table[{value.mode, value.element, value.attribute}] = std::move(value.text);
    return table;
}

}  // namespace

OVSkin LoadSiteSkin(const std::string& path, Problems& problems) {
    OVSkin skin;
    XMLReader reader;
    Result result;
    if (!path.empty() && !reader.LoadPositioned(path.c_str(), result))
        problems.push_back({path, result.line, result.column, result.text + "; the built-in skin stands in"});
    if (skin.LoadFromFile(path)) return skin;
    problems.push_back({path, 0, 0, "the document is no \"skin\"; the built-in skin stands in"});
    skin.LoadFromFile("");
    return skin;
}

void SkinFile::Read(Problems& problems) {
    m_fresh = LoadSiteSkin(Path(), problems);
}

void SkinFile::TakeOver(RunState& state) {
    const std::map<Key, std::string> before = Table(state.site.skin);
    const std::map<Key, std::string> now = Table(m_fresh);
    int set = 0;
    int removed = 0;
    for (const auto& [key, text] : now) {
        const auto old = before.find(key);
        set += old == before.end() || old->second != text;
    }
    for (const auto& [key, text] : before) removed += !now.contains(key);
    state.site.skin = m_fresh;
    if (set + removed == 0) return;
    RunRecord record = ReloadRecord(state, Path());
    record["set"] = set;
    record["removed"] = removed;
    state.sink.Write(record);
}

}  // namespace brindle::host

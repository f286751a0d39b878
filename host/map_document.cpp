// Reading maps. Tests: map_document_test.cpp; fuzz target: fuzz/map_fuzz.cpp.
#include "host/map_document.h"

#include <brindle/xml/xml_reader.h>

#include <utility>

#include "host/child_sections.h"
#include "host/configured_item.h"
#include "host/host_files.h"

namespace brindle::host {

namespace {

constexpr const char* kRoot = "map";

class MapReader {
  public:
    MapReader(const std::string& path, MapDocument& map, Problems& problems)
        : m_path(path), m_map(map), m_problems(problems) {}

    // From the file, or from a text.
    bool Run(const char* text) {
        if (!Load(text) || !EnterRoot()) return false;
        Check(ReadAttributes(m_reader, m_map.Attributes()));
        ForEachChild(m_reader, [this](const CStringA& name) { ReadElement(name); });
        return m_map.width > 0 && m_map.height > 0;
    }

  private:
    bool Load(const char* text) {
        if (!text && IsFolder(m_path)) {
            m_problems.push_back({m_path, 0, 0, "is a folder"});
            return false;
        }
        Result result;
        if (text ? m_reader.LoadFromStringPositioned(text, result)
                 : m_reader.LoadPositioned(m_path.c_str(), result))
            return true;
        m_problems.push_back({m_path, result.line, result.column, result.text});
        return false;
    }

    bool EnterRoot() {
        if (m_reader.EnterSection(kRoot, true)) return true;
        m_problems.push_back({m_path, 1, 1, "the root element is not \"" + std::string(kRoot) + "\""});
        return false;
    }

    void Report(std::string text) {
        Problem problem{m_path, 0, 0, std::move(text)};
        m_reader.GetPosition(problem.line, problem.column);
        m_problems.push_back(std::move(problem));
    }
    void Check(const std::vector<std::string>& problems) {
        for (const std::string& problem : problems) Report(problem);
    }

    void ReadElement(const CStringA& name) {
        const auto kind = FindMapKind(name.view());
        if (!kind) return Report("element \"" + name.str() + "\" is unknown and is left out");
        if (m_map.elements.size() == MapDocument::kMostElements) {
            if (!std::exchange(m_tooMany, true))
                Report("a map has at most " + std::to_string(MapDocument::kMostElements) +
                       " elements: this one and those behind it are left out");
            return;
        }
        MapElement element(*kind);
        m_reader.GetPosition(element.line, element.column);
        const std::size_t before = m_problems.size();
        Check(ReadAttributes(m_reader, element.Attributes()));
        ForEachChild(m_reader, [&](const CStringA& child) { ReadNote(child, element); });
        const bool placed = element.width > 0 && element.height > 0;
        if (!placed && m_problems.size() > before) m_problems.back().text += "; the element is left out";
        if (placed) m_map.elements.push_back(std::move(element));
    }

    void ReadNote(const CStringA& name, MapElement& element) {
        if (name != MapNote::kName || element.kind == MapKind::kPicture)
            return Report("element \"" + name.str() + "\" is unknown here and is left out");
        if (element.notes.size() == MapDocument::kMostNotes)
            return Report("an element has at most " + std::to_string(MapDocument::kMostNotes) + " notes");
        MapNote note;
        Check(ReadAttributes(m_reader, note.Attributes()));
        element.notes.push_back(std::move(note));
    }

    const std::string& m_path;
    MapDocument& m_map;
    Problems& m_problems;
    XMLReader m_reader;
    bool m_tooMany = false;
};

}  // namespace

AttributeTable MapDocument::Attributes() {
    const auto colourAttribute = [](const char* name, MapColour& field) {
        return ParsedAttribute(name, "a colour such as #FF8000", field);
    };
    return {Required(NumberAttribute("width", width, 1, MapElement::kFarthest)),
            Required(NumberAttribute("height", height, 1, MapElement::kFarthest)),
            TextAttribute("title", title),
            colourAttribute("colour", colour),
            colourAttribute("secondColour", secondColour),
            colourAttribute("textColour", textColour),
            TextAttribute("picture", picture),
            NumberAttribute("preview", preview, 0, 86'400)};
}

bool ReadMapDocument(const std::string& path, MapDocument& map, Problems& problems) {
    map = MapDocument();
    return MapReader(path, map, problems).Run(nullptr);
}

bool ReadMapText(const std::string& text, const std::string& name, MapDocument& map, Problems& problems) {
    map = MapDocument();
    return MapReader(name, map, problems).Run(text.c_str());
}

}  // namespace brindle::host

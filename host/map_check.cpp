// Checks of maps. Tests: map_document_test.cpp.
#include "host/map_check.h"

#include <brindle/library/host_path_access.h>
#include <brindle/variables/variable_manager.h>

#include <algorithm>

#include "host/device_table.h"
#include "host/host_files.h"
#include "host/map_document.h"
#include "host/site.h"

namespace brindle::host {

namespace {

class MapChecker {
  public:
    MapChecker(const std::string& path, const MapSurroundings& surroundings, Problems& problems)
        : m_path(path), m_surroundings(surroundings), m_problems(problems) {}

    void Run() {
        MapDocument map;
        if (!ReadMapDocument(m_path, map, m_problems)) return;
        CheckPicture(map.picture, 1, 1);
        for (const MapElement& element : map.elements) CheckElement(element);
    }

  private:
    void Report(const MapElement& element, std::string text) {
        m_problems.push_back({m_path, element.line, element.column, std::move(text)});
    }

    void CheckElement(const MapElement& element) {
        const ObjectPlan* object = CheckObject(element);
        CheckDevice(element, object);
        VariableManager outer;
        VariableManager scope;
        TextSurroundings texts = m_surroundings.texts;
        if (object) {
            if (texts.scope) outer = *texts.scope;
            scope.setParent(&outer);
            AddObjectVariables(*object, scope);
            Problems ofThatFile;  // the check of the object reports them
            if (!object->variables.empty()) ReadVariables(object->variables, scope, ofThatFile);
            texts.scope = &scope;
            texts.scopes = "object " + object->name + ", " + texts.scopes;
        }
        for (const CStringA* text : element.Texts())
            for (std::string& problem : CheckText(*text, texts)) Report(element, std::move(problem));
        for (const CStringA* picture : element.Pictures())
            CheckPicture(*picture, element.line, element.column);
    }

    // The object the element names, if the site has it.
    const ObjectPlan* CheckObject(const MapElement& element) {
        if (!m_surroundings.plan || element.object.IsEmpty()) return nullptr;
        const auto& objects = m_surroundings.plan->objects;
        const auto found = std::find_if(objects.begin(), objects.end(), [&](const ObjectPlan& object) {
            return element.object == object.name;
        });
        if (found != objects.end()) return &*found;
        Report(element, "the site has no object \"" + element.object.str() + "\"");
        return nullptr;
    }

    void CheckDevice(const MapElement& element, const ObjectPlan* object) {
        const auto device = element.Device(object ? object->address : CAddressOv());
        if (element.states && element.kind == MapKind::kPanel && !device)
            Report(element, "\"states\" needs a device, or an object with one");
        const bool presses = element.IsClickable() && element.event != kEventAcknowledge;
        if (presses && element.object.IsEmpty() && !device)
            Report(element, "a button needs an object or a device");
        const DeviceTable* devices = m_surroundings.texts.devices;
        if (device && devices && !devices->Knows(*device))
            Report(element, "the device " + AddressText(CAddressOv(*device)) + " does not exist");
    }

    void CheckPicture(const CStringA& picture, std::uint32_t line, std::uint32_t column) {
        if (picture.IsEmpty() || !m_surroundings.plan) return;
        if (!MarksOfHostFile(InFolder(m_surroundings.plan->folder, picture.str())).exists)
            m_problems.push_back({m_path, line, column, "there is no picture \"" + picture.str() + "\""});
    }

    const std::string& m_path;
    const MapSurroundings& m_surroundings;
    Problems& m_problems;
};

}  // namespace

void CheckMap(const std::string& path, const MapSurroundings& surroundings, Problems& problems) {
    MapChecker(path, surroundings, problems).Run();
}

}  // namespace brindle::host

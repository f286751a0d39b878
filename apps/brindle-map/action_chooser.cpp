// Choosing for lists and for objects. Tests: action_chooser_dialog_test.cpp.
#include "apps/brindle-map/action_chooser.h"

#include <brindle/behaviour/action_selection.h>
#include <brindle/platform/desktop.h>

#include <QtCore/QThread>

#include <utility>

#include "apps/brindle-map/action_chooser_dialog.h"
#include "apps/brindle-map/dialog_owner.h"
#include "host/action_choice_file.h"

namespace brindle::map {
namespace {

void Tell(const std::string& path, const std::string& why) {
    DialogOwner owner;
    CWnd* const window = owner.Window();
    CurrentDesktop().ShowMessage(window ? window->GetSafeHwnd() : nullptr, MessageIcon::kError,
                                 path + ": " + why);
}

}  // namespace

ActionChooser::ActionChooser(host::Site& site) : m_site(site) {
    ActionChooserDialog::RegisterTemplate();
    site.devices.SetChooser([this](CCommandBehaviourList& list, int selection, eHostType host) {
        return Choose(list, selection, host);
    });
}

ActionChooser::~ActionChooser() {
    m_site.devices.SetChooser({});
}

CAddressOv ActionChooser::AddressOf(const CCommandBehaviourList& list) const {
    if (&list == m_edited) return m_editedAddress;
    for (const auto& object : m_site.objects)
        if (&object->list == &list) return object->plan.address;
    return {};
}

int ActionChooser::Choose(CCommandBehaviourList& list, int selection, eHostType host) {
    if (!qApp || QThread::currentThread() != qApp->thread()) return 0;
    DialogOwner owner;
    ActionChooserDialog dialog(list, selection, host, AddressOf(list), owner.Window());
    if (dialog.DoModal() != 1) return 0;
    if (dialog.Apply()) return 1;
    Tell("The behaviours", "they became others while they were edited, and stay as they are");
    return 0;
}

bool ActionChooser::EditObject(const std::string& name) {
    const host::SiteObject* const object = m_site.Find(name);
    if (!object) return false;
    const std::string path = object->plan.behaviours;
    const HostFileMarks marks = MarksOfHostFile(path);
    CCommandBehaviourList list(object->plan.host);
    host::Problems problems;
    if (!host::ReadBehaviours(path, list, problems)) {
        Tell(problems.empty() ? path : problems[0].Place(),
             problems.empty() ? "cannot be read" : problems[0].text);
        return false;
    }
    const auto* const before = std::exchange(m_edited, &list);
    const CAddressOv addressBefore = std::exchange(m_editedAddress, object->plan.address);
    bool saved = false;
    while (!saved && SelectActions(list, -1, list.GetHostType()) == 1) {
        const Result result = host::SaveBehaviourList(path, marks, list);
        saved = result.ok();
        if (!saved) Tell(path, result.text);
    }
    m_edited = before;
    m_editedAddress = addressBefore;
    return saved;
}

}  // namespace brindle::map

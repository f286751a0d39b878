// ActionChooser: the host's dialog behind SelectActions: what a behaviour list does, chosen from the types that the
// host knows. The list changes when the user accepts, and only then.
//
// `selection` is the index of the behaviour that is selected first; any other number: the first one. Thread: the user
// interface's; on another one SelectActions answers 0.
#pragma once

#include <string>

#include "host/site.h"

class CCommandBehaviourList;

namespace brindle::map {

class ActionChooser {
  public:
    // The site is borrowed; its device table answers SelectActions through this as long as it lives.
    explicit ActionChooser(host::Site& site);
    ActionChooser(const ActionChooser&) = delete;
    ActionChooser& operator=(const ActionChooser&) = delete;
    ~ActionChooser();

    // Whether the site has such an object.
    bool Knows(const std::string& object) const { return m_site.Find(object) != nullptr; }
    // Lets the user choose what an object does, and saves that into its file, from where a running station takes it
    // over. A choice that cannot be saved is told and can be changed again; nothing is lost. False: it was cancelled,
    // or there is nothing to choose.
    bool EditObject(const std::string& object);

  private:
    int Choose(CCommandBehaviourList& list, int selection, eHostType host);
    CAddressOv AddressOf(const CCommandBehaviourList& list) const;

    host::Site& m_site;
    const CCommandBehaviourList* m_edited = nullptr;  // a copy that EditObject has made ...
    CAddressOv m_editedAddress;                       // ... and the address of its object
};

}  // namespace brindle::map

// VariablesFile: the variables file of a running site, or of some of its objects.
//
// The scopes stay where they are. A variable whose value changed in the file takes it; one that is new is added, one
// that is gone is removed. What actions have set stays as long as the file says nothing new about it.
#pragma once

#include <vector>

#include "host/reloaded_file.h"

namespace brindle::host {

class VariablesFile final : public ReloadedFile {
  public:
    using ReloadedFile::ReloadedFile;
    // A scope filled from the file and from nothing else but, for an object's, the object's own variables. It still
    // has the values it was loaded with.
    void AddScope(VariableManager& scope, const ObjectPlan* object);

    void Read(Problems& problems) override;
    void TakeOver(RunState& state) override;

  private:
    struct Scope {
        VariableManager* live;
        const ObjectPlan* object;  // null: the site's
        VariableManager loaded;    // what the file said last
        VariableManager fresh;
    };
    std::vector<Scope> m_scopes;
};

}  // namespace brindle::host

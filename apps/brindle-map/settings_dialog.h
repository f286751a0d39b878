// The settings of a site in a sheet of pages: the colours of its skin, its directories, the polling of its devices. OK
// and Apply save each page to its own file of the site; the running station takes them up by its reload. Numbers of the
// templates and their controls are here for tests. Thread: the user interface's.
#pragma once

#include <brindle/framework/ui/wnd.h>

#include "host/site_plan.h"

namespace brindle::map {

constexpr unsigned kSkinPage = 7611, kDirectoriesPage = 7612, kPollingPage = 7613;

enum SettingsControl : unsigned {
    kFault = 1001,  // of every page: what is wrong
    kColoursText,
    kColours,
    kStateText,
    kState,
    kChange,
    kLastText,  // and two more
    kLast = kLastText + 3,
    kPathNameText = kLast + 3,
    kPathName,
    kPathText,
    kPath,
    kDeviceText,
    kDevice,
    kPolled,
    kPeriodText,
    kPeriod,
    kTimeoutText,
    kTimeout,
    kRetriesText,
    kRetries,
};

// Before the first dialog; again is no harm.
void RegisterSettingsTemplates();

// Shows the settings until the user has answered. 1: OK, and what was changed is saved; 2: cancelled, what was not
// applied before is not saved; -1: no desktop. The owner is borrowed; null: none.
int ShowSettings(const host::SitePlan& plan, CWnd* owner);

}  // namespace brindle::map

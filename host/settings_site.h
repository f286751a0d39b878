// What of a site's files can be set in a dialog: the colours of its skin, its directories, the polling of its devices.
// Each is read from one file, changed in memory, and saved to that file: the file as it is at that moment, with the
// values that differ from what was read, and nothing else in it touched; whole or not at all. The site that runs takes
// it up by its reload, as any other edit.
//
// Thread: the user interface's.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/site_plan.h"

namespace brindle::host {

// Reads, changes and writes a file. Returns why not, the file unchanged; empty: it is saved, or there was no change.
// `edit` answers why it cannot.
std::string EditSiteFile(const std::string& path, const std::function<std::string(std::string&)>& edit);

// "#RRGGBB" of 0x00BBGGRR.
std::string SkinColourText(std::uint32_t colour);

// The colours that the skin's own file says.
class SkinSettings {
  public:
    struct Colour {
        std::string mode;
        std::string element;
        std::string attribute;
        std::uint32_t colour = 0;  // 0x00BBGGRR
        std::uint32_t saved = 0;   // in the file
        // In words: "Button, border colour", "Pressed".
        std::string what;
        std::string state;
    };
    explicit SkinSettings(const SitePlan& plan);

    // Why there are none; empty: there are.
    const std::string& Missing() const noexcept { return m_missing; }
    std::vector<Colour> colours;
    std::string Save();

  private:
    std::string m_path;
    std::string m_missing;
};

// The directories used last, and those of the search paths; both in the macros file.
class DirectorySettings {
  public:
    static constexpr std::size_t kLongest = 259;  // bytes of a directory used last

    struct Directory {
        std::string section;
        std::string key;
        std::string value;
        std::string saved;
    };
    explicit DirectorySettings(const SitePlan& plan);

    const std::string& Missing() const noexcept { return m_missing; }
    std::vector<Directory> last;         // LastSchematicDir, LastComponentDir, LastGraphicsDir
    std::vector<Directory> searchPaths;  // in the order of the file
    // What is wrong with a value; empty: nothing.
    static std::string Check(const Directory& directory);
    std::string Save();

  private:
    std::string m_path;
    std::string m_missing;
};

// How the devices with polled fields are asked. Values are texts as people write them.
class PollSettings {
  public:
    struct Values {
        bool polled = true;
        std::string period;   // milliseconds
        std::string timeout;  // milliseconds
        std::string retries;

        friend bool operator==(const Values&, const Values&) = default;
    };
    struct Device {
        std::string section;  // its address as the file has it
        std::string name;
        Values values;
        Values saved;
    };
    explicit PollSettings(const SitePlan& plan);

    const std::string& Missing() const noexcept { return m_missing; }
    std::vector<Device> devices;
    enum Field { kPeriod, kTimeout, kRetries, kNone };
    struct Fault {
        Field field = kNone;
        std::string text;
    };
    // The first thing that is wrong; of a device that is not polled nothing is.
    static Fault Check(const Values& values);
    std::string Save();

  private:
    std::string m_path;
    std::string m_missing;
};

}  // namespace brindle::host

// A site written into a temporary folder for one test.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace brindle::host {

class WrittenSite {
  public:
    WrittenSite() {
        static int number = 0;
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        m_folder = std::filesystem::temp_directory_path() /
                   ("brindle_" + std::string(test->test_suite_name()) + "_" + test->name() + "_" +
                    std::to_string(::getpid()) + "_" + std::to_string(++number));
        std::filesystem::create_directories(m_folder / "behaviours");
    }
    WrittenSite(const WrittenSite&) = delete;
    WrittenSite& operator=(const WrittenSite&) = delete;
    ~WrittenSite() {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

    std::string Folder() const { return m_folder.string(); }
    std::string Path(const std::string& name) const { return (m_folder / name).string(); }
    void Write(const std::string& name, const std::string& text) const {
        std::ofstream(m_folder / name, std::ios::binary) << text;
    }
    // site.ini with these objects, all of kind MapObject without an address.
    void WriteObjects(std::initializer_list<const char*> names) const {
        std::string ini =
            "[Site]\nName=Test\nDevices=devices.ini\nVariables=variables.xml\nRecording=events.jsonl\n";
        for (const char* name : names) ini += "[Object " + std::string(name) + "]\n";
        Write("site.ini", ini);
        Write("devices.ini", "[0001:01:01]\nName=Camera\nState=1\nModel=C3\n");
        Write("variables.xml", "<Variables><variable name='Who' value='desk'/></Variables>");
        Write("events.jsonl", "");
    }
    // One behaviour.
    void WriteBehaviour(const std::string& object, const std::string& trigger,
                        const std::string& actions) const {
        Write("behaviours/" + object + ".xml", "<BehaviourList><Behaviour><TriggerList>" + trigger +
                                                   "</TriggerList><ActionList>" + actions +
                                                   "</ActionList></Behaviour></BehaviourList>");
    }

  private:
    std::filesystem::path m_folder;
};

}  // namespace brindle::host

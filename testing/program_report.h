// What a program started by a test says of itself (program_report.cpp), and how a test waits for that.
#pragma once

#include <stdlib.h>
#include <time.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace brindle::testing {

// Names the file the program reports to, while it lives.
class ProgramReport {
  public:
    explicit ProgramReport(std::string file) : m_file(std::move(file)) {
        ::setenv("BRINDLE_PROGRAM_REPORT", m_file.c_str(), 1);
        Forget();
    }
    ProgramReport(const ProgramReport&) = delete;
    ProgramReport& operator=(const ProgramReport&) = delete;
    ~ProgramReport() { ::unsetenv("BRINDLE_PROGRAM_REPORT"); }

    void Forget() const { std::remove(m_file.c_str()); }
    bool IsThere() const { return std::ifstream(m_file).good(); }

    // The next report; nothing when none has come within ten seconds.
    std::optional<nlohmann::json> Wait() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!IsThere()) {
            if (std::chrono::steady_clock::now() > deadline) return {};
            constexpr timespec kPause = {0, 2'000'000};
            ::nanosleep(&kPause, nullptr);
        }
        std::ifstream file(m_file);
        nlohmann::json report = nlohmann::json::parse(file);
        Forget();
        return report;
    }

    static std::vector<std::string> Arguments(const nlohmann::json& report) {
        std::vector<std::string> arguments;
        for (const nlohmann::json& bytes : report["arguments"]) {
            std::string& argument = arguments.emplace_back();
            for (const nlohmann::json& byte : bytes) argument += static_cast<char>(byte.get<unsigned char>());
        }
        return arguments;
    }

  private:
    std::string m_file;
};

}  // namespace brindle::testing

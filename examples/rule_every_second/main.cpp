// A rule over live values, converted once and evaluated every second by a timer of the plain event loop.
// usage: rule_every_second [RULE]
#include <brindle/brindle.h>

#include <iostream>

// Where values come from: a transmitter whose power falls while the program runs.
struct Transmitter final : CSolverData {
    int power = 1000;
    bool Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const override {
        if (header != "POWER" || !address || *address != CAddressOv("1:2:3")) return false;
        value = brindle::PrintInt(power);
        return true;
    }
};

struct RuleTimer final : CTimer {
    explicit RuleTimer(const char* text) : rule(text) {}
    brindle::PreparedRule rule;
    Transmitter transmitter;
    brindle::RunLoop loop;

    void Run() {
        CreateTimer(1, 1000);
        loop.Run();
    }
    void OnTimer(std::uint64_t) override {
        transmitter.power -= 300;
        CCalculator::Literal result;
        const bool solved = rule.Solve(transmitter, result);
        std::cout << "power " << transmitter.power << ": " << (solved ? result.AsString() : "no result")
                  << std::endl;
        if (transmitter.power < 200) loop.Quit();
    }
};

int main(int count, char** arguments) {
    RuleTimer timer(count > 1 ? arguments[1] : "1:2:3,POWER < 500");
    const brindle::Result& conversion = timer.rule.Conversion();
    if (!conversion.ok()) return std::cerr << "rule_every_second: " << conversion.text << "\n", 1;
    timer.Run();
}

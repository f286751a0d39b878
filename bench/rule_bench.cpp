// Rules, parsed and evaluated from text with their values looked up as text, beside Lua's load-and-call, muParser's
// parse-and-evaluate and a hand-written evaluator; the same rules prepared; and the match behind "=". The peers get
// the rule in their own spelling and the same values as text.
#include <benchmark/benchmark.h>
#include <muParser.h>
#include <lua5.4/lua.hpp>

#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/rule_hand_evaluator.h"
#include "brindle/expressions/prepared_rule.h"
#include "brindle/expressions/solver.h"
#include "brindle/expressions/wildcard.h"

namespace {

struct Rule {
    const char* brindle;
    const char* lua;
    const char* muparser;  // without texts: STATUS is a number there
};

const Rule kLevel = {"LEVEL > 10 & STATUS = \"OK%\"",
                     "return LEVEL > 10 and string.sub(STATUS, 1, 2) == \"OK\"", "LEVEL > 10 && STATUS == 1"};
const Rule kSum = {"(A + B) * 2 >= C | !D", "return (A + B) * 2 >= C or D == 0",
                   "((A + B) * 2 >= C) || (D == 0)"};
const Rule kTwelve = {
    "LEVEL > 10 & A = \"OK%\" & B > 11 & C = \"OK%\" & D > 12 & STATUS = \"OK%\" & "
    "A > 10 & LEVEL = \"12%\" & C > 10 & B = \"12\" & B > 10 & STATUS = \"OK%\"",
    "return LEVEL > 10 and string.sub(A, 1, 2) == \"OK\" or B > 11 and string.sub(C, 1, 2) == \"OK\" or D > "
    "12 or "
    "string.sub(STATUS, 1, 2) ~= \"OK\" or A > 10 and string.sub(LEVEL, 1, 2) == \"12\" and C > 10 and B == "
    "12 and "
    "B > 10 and string.sub(STATUS, 1, 2) == \"OK\"",
    "LEVEL > 10 && A == 1 && B > 11 && C == 1 && D > 12 && STATUS == 1 && A > 10 && LEVEL == 12 && C > 10 && "
    "B == 12 && B > 10 && STATUS == 1"};

// Every value as the device reported it.
std::string_view TextOf(std::string_view name) {
    return name == "STATUS" ? "OK 1" : "12";
}

class Device final : public CSolverData {
  public:
    bool Lookup(const CStringA& header, const CAddressOv*, CStringA& value) const override {
        value.str().assign(TextOf(header.view()));
        return true;
    }
};

void Solve(benchmark::State& state, const Rule& rule) {
    const CSolver solver;
    const Device device;
    const CStringA text(rule.brindle);
    CCalculator::Literal result;
    for (auto _ : state) {
        if (!solver.Solve(text, device, false, result)) state.SkipWithError("not solved");
        benchmark::DoNotOptimize(result);
    }
}

void Prepared(benchmark::State& state, const Rule& rule) {
    const brindle::PreparedRule prepared{CStringA(rule.brindle)};
    const Device device;
    CCalculator::Literal result;
    for (auto _ : state) {
        if (!prepared.Solve(device, result)) state.SkipWithError("not solved");
        benchmark::DoNotOptimize(result);
    }
}

void ByHand(benchmark::State& state, const Rule& rule) {
    for (auto _ : state) {
        brindle::bench::HandEvaluator evaluator(rule.brindle, TextOf);
        double result = evaluator.Run();
        benchmark::DoNotOptimize(result);
    }
}

// The names a rule uses, once each.
std::vector<std::string> NamesIn(const Rule& rule) {
    std::vector<std::string> names;
    for (const char* name : {"LEVEL", "STATUS", "A", "B", "C", "D"}) {
        const brindle::PreparedRule prepared{CStringA(rule.brindle)};
        for (std::size_t i = 0; i < prepared.NameCount(); ++i) {
            if (prepared.Name(i) != name) continue;
            names.emplace_back(name);
            break;
        }
    }
    return names;
}

void WithLua(benchmark::State& state, const Rule& rule) {
    lua_State* const lua = luaL_newstate();
    luaL_openlibs(lua);
    const std::vector<std::string> names = NamesIn(rule);
    for (auto _ : state) {
        for (const std::string& name : names) {
            const std::string_view text = TextOf(name);
            if (lua_stringtonumber(lua, text.data()) == 0) lua_pushlstring(lua, text.data(), text.size());
            lua_setglobal(lua, name.c_str());
        }
        if (luaL_loadstring(lua, rule.lua) != LUA_OK || lua_pcall(lua, 0, 1, 0) != LUA_OK) {
            state.SkipWithError(lua_tostring(lua, -1));
            break;
        }
        int result = lua_toboolean(lua, -1);
        benchmark::DoNotOptimize(result);
        lua_pop(lua, 1);
    }
    lua_close(lua);
}

// muParser compares numbers only: a text that is no number counts as 1.
double NumberOf(const std::string& name) {
    const std::string_view text = TextOf(name);
    char* end = nullptr;
    const double number = std::strtod(text.data(), &end);
    return end == text.data() ? 1.0 : number;
}

struct MuParser {
    explicit MuParser(const Rule& rule) : names(NamesIn(rule)), values(names.size()) {
        for (std::size_t i = 0; i < names.size(); ++i) parser.DefineVar(names[i], &values[i]);
        parser.SetExpr(rule.muparser);
    }
    double Evaluate() {
        for (std::size_t i = 0; i < names.size(); ++i) values[i] = NumberOf(names[i]);
        return parser.Eval();
    }
    std::vector<std::string> names;
    std::vector<double> values;
    mu::Parser parser;
};

void WithMuParser(benchmark::State& state, const Rule& rule) {
    MuParser parser(rule);
    for (auto _ : state) {
        parser.parser.SetExpr(rule.muparser);
        double result = parser.Evaluate();
        benchmark::DoNotOptimize(result);
    }
}

void WithPreparedMuParser(benchmark::State& state, const Rule& rule) {
    MuParser parser(rule);
    for (auto _ : state) {
        double result = parser.Evaluate();
        benchmark::DoNotOptimize(result);
    }
}

// The match anyone would write: "%" is any text.
bool MatchByHand(std::string_view text, std::string_view pattern) {
    std::size_t at = 0;
    std::size_t in = 0;
    std::size_t star = std::string_view::npos;
    std::size_t resume = 0;
    while (at < text.size()) {
        if (in < pattern.size() && pattern[in] == '%') {
            star = in++;
            if (in == pattern.size()) return true;
            resume = at;
        } else if (in < pattern.size() && pattern[in] == text[at]) {
            ++at;
            ++in;
        } else if (star != std::string_view::npos) {
            in = star + 1;
            at = ++resume;
        } else {
            return false;
        }
    }
    while (in < pattern.size() && pattern[in] == '%') ++in;
    return in == pattern.size();
}

std::string CameraName(std::int64_t length) {
    return "Camera 1" + std::string(static_cast<std::size_t>(length) - 8, 'x');
}

void Match(benchmark::State& state, std::string_view pattern, std::int64_t length) {
    std::string text = CameraName(length);
    for (auto _ : state) {
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(pattern);
        bool result = brindle::MatchWildcard(text, pattern) == brindle::WildcardResult::kMatch;
        benchmark::DoNotOptimize(result);
    }
}

void MatchHand(benchmark::State& state, std::string_view pattern, std::int64_t length) {
    std::string text = CameraName(length);
    for (auto _ : state) {
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(pattern);
        bool result = MatchByHand(text, pattern);
        benchmark::DoNotOptimize(result);
    }
}

// The whole rule `Name = "Cam%"`, its value copied out of the device on the way, beside copying and matching it.
class Camera final : public CSolverData {
  public:
    explicit Camera(std::int64_t length) : m_name(CameraName(length)) {}
    bool Lookup(const CStringA&, const CAddressOv*, CStringA& value) const override {
        value.str().assign(m_name);
        return true;
    }

  private:
    std::string m_name;
};

void EqualityRule(benchmark::State& state, std::int64_t length) {
    const brindle::PreparedRule prepared("Name = \"Cam%\"");
    const Camera camera(length);
    CCalculator::Literal result;
    for (auto _ : state) {
        if (!prepared.Solve(camera, result) || !result.AsBool()) state.SkipWithError("not equal");
    }
}

void EqualityHand(benchmark::State& state, std::int64_t length) {
    const Camera camera(length);
    for (auto _ : state) {
        CStringA value;
        camera.Lookup("Name", nullptr, value);
        bool result = MatchByHand(value.view(), "Cam%");
        benchmark::DoNotOptimize(result);
    }
}

// Named here rather than by the macro's spelling, as the names pair a work with its peers (goals.txt).
const int kRegistered = [] {
    const std::pair<const char*, const Rule*> rules[] = {
        {"level", &kLevel}, {"sum", &kSum}, {"twelve", &kTwelve}};
    const auto add = [](const std::string& name, auto function, const auto&... arguments) {
        benchmark::RegisterBenchmark(name.c_str(),
                                     [=](benchmark::State& state) { function(state, arguments...); });
    };
    for (const auto& [name, rule] : rules) {
        const std::string suffix = std::string("/") + name;
        add("RuleFromText" + suffix, Solve, *rule);
        add("RuleByHand" + suffix, ByHand, *rule);
        add("LuaLoadAndCall" + suffix, WithLua, *rule);
        add("MuParserParseAndEvaluate" + suffix, WithMuParser, *rule);
        add("PreparedRule" + suffix, Prepared, *rule);
        add("MuParserConvertAndEvaluate" + suffix, WithPreparedMuParser, *rule);
    }
    for (const std::int64_t length : {20, 10000}) {
        const std::string suffix = "/" + std::to_string(length);
        for (const std::string_view pattern : {"Cam%", "%1x%x"}) {
            const std::string arguments = "/" + std::string(pattern) + suffix;
            add("Match" + arguments, Match, pattern, length);
            add("MatchByHand" + arguments, MatchHand, pattern, length);
        }
        add("EqualityRule" + suffix, EqualityRule, length);
        add("CopyAndMatchByHand" + suffix, EqualityHand, length);
    }
    return 0;
}();

}  // namespace

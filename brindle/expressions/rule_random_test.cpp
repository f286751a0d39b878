// Random rules over random values: the solver, the prepared form and the calculator's two steps give what the slow
// calculator gives. BRINDLE_RANDOM_RULES sets how many (50,000 otherwise), BRINDLE_RANDOM_SEED another beginning.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "brindle/address/address_ov.h"
#include "brindle/expressions/prepared_rule.h"
#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/service.h"
#include "testing/slow_calculator.h"

namespace {

using brindle::testing::SlowValue;
using Literal = CCalculator::Literal;

unsigned long FromEnvironment(const char* name, unsigned long otherwise) {
    const char* const text = std::getenv(name);
    return text && *text ? std::strtoul(text, nullptr, 10) : otherwise;
}

class Generator {
  public:
    explicit Generator(unsigned seed) : m_random(seed) {}

    std::string Rule() {
        // Mostly well-formed, sometimes damaged, sometimes no rule at all.
        if (Chance(20)) return Noise();
        std::string rule = Clause(3);
        if (Chance(10) && !rule.empty()) {
            const std::size_t at = Below(rule.size());
            if (Chance(2)) {
                rule.erase(at, 1);
            } else {
                rule.insert(at, 1,
                            Pick(std::string("()&|!+-*/^=<>\"\\#,:. \t\xE9"
                                             "aD0")));
            }
        }
        return rule;
    }
    std::string Value() { return Chance(3) ? Word() : Unquoted(); }
    std::vector<std::string> Names() const { return m_names; }
    bool Chance(unsigned one) { return Below(one) == 0; }

  private:
    std::size_t Below(std::size_t limit) { return m_random() % limit; }
    char Pick(const std::string& from) { return from[Below(from.size())]; }
    const std::string& Pick(const std::vector<std::string>& from) { return from[Below(from.size())]; }
    std::string Blank() { return Chance(2) ? " " : ""; }

    std::string Clause(int depth) {
        if (depth == 0 || Chance(4)) return Blank() + Operand() + Blank();
        if (Chance(6)) return "!" + Clause(depth - 1);
        if (Chance(4)) return Blank() + "(" + Clause(depth - 1) + ")" + Blank();
        return Clause(depth - 1) + Pick(m_operators) + Clause(depth - 1);
    }
    std::string Operand() {
        switch (Below(8)) {
            case 0:
            case 1:
                return Pick(m_names);
            case 2:
                return Number();
            case 3:
                return "\"" + Unquoted() + "\"";
            case 4:
                return "\"" + Pattern() + "\"";
            case 5:
                return Pick(m_functions);
            default:
                return Unquoted();
        }
    }
    std::string Unquoted() {
        switch (Below(7)) {
            case 0:
                return Number();
            case 1:
                return Pick(m_addresses);
            case 2:
                return Pick(m_dates);
            case 3:
                return Chance(2) ? "true" : "FALSE";
            case 4:
                return Word();
            case 5:
                return Number() + "." + Number();
            default:
                return Pick(m_names);
        }
    }
    std::string Number() {
        if (Chance(8)) return Pick(m_numbers);
        return std::to_string(Below(20));
    }
    std::string Word() {
        std::string word;
        for (std::size_t n = Below(6); n > 0; --n) word += Pick(std::string("abcOK 12.,:-\"#eE\xC9\t"));
        return word;
    }
    std::string Pattern() {
        std::string pattern;
        for (std::size_t n = Below(5); n > 0; --n) pattern += Pick(m_patterns);
        return pattern;
    }
    std::string Noise() {
        std::string noise;
        for (std::size_t n = Below(12); n > 0; --n)
            noise +=
                Chance(4) ? Pick(m_functions) : std::string(1, Pick(std::string("()&|!+-*/^=<>\"\\#a1. ")));
        return noise;
    }

    std::mt19937 m_random;
    const std::vector<std::string> m_names = {"LEVEL",   "STATUS",    "Name",      "0001:02:03,LEVEL",
                                              "1:2:3,x", "?:1FF:2,n", "two words", "x,y"};
    const std::vector<std::string> m_operators = {"&", "|",  "+",  "-",  "*",  "/", "^", "=", "<",
                                                  ">", "!=", "<=", ">=", "==", "+", "=", "&"};
    const std::vector<std::string> m_addresses = {"0001:02:03", "0001:01:01", "FFFF:FF:FF",
                                                  "?:1FF:0002", "000a:0B:0c", "????:??:??"};
    const std::vector<std::string> m_dates = {"2024-01-02T10:00:00", "1899-12-29T06:00:00",
                                              "0100-01-01T00:00:00", "9999-12-31T23:59:59",
                                              "2023-13-40T00:00:00", "Mon Jan 02 10:00:00 2023"};
    const std::vector<std::string> m_numbers = {"2147483647", "-2147483648", "99999999999", "5-",    "-",
                                                ".",          "-.5",         "0",           "1.2.3", "--1",
                                                "0.00001",    "1e400",       "nan",         "0x10",  "-1"};
    const std::vector<std::string> m_functions = {
        "DATE()",   "DATE",    "TIMESPAN(0,1,30,0)", "TIMESPAN(1,2,3)", "TIMESPAN(-1,x,3,4)", "DATES)",
        "TIMESPAN", "DATE(\"", "DATE(\\\"\")"};
    const std::vector<std::string> m_patterns = {"%", "a", "O",     "K",   "1",   ".", "(a|b)", "{O}", "*",
                                                 "+", "?", "[a-c]", "\\d", "\\w", "(", "%",     "|",   "2"};
};

void ExpectSame(const SlowValue& slow, const Literal& fast) {
    EXPECT_EQ(static_cast<int>(slow.type), static_cast<int>(fast.GetType()));
    EXPECT_EQ(slow.AsString(), fast.AsString());
    EXPECT_EQ(slow.AsInt(), fast.AsInt());
    EXPECT_EQ(slow.AsBool(), fast.AsBool());
    const double a = slow.AsDouble();
    const double b = fast.AsDouble();
    EXPECT_TRUE(a == b || (std::isnan(a) && std::isnan(b))) << a << " and " << b;
}

// Compares the conversion and, without values, the evaluation; returns whether the rule converts.
bool CompareCalculators(const std::string& rule) {
    brindle::testing::SlowExpression slow;
    CCalculator::Expression fast;
    const CCalculator calculator;
    const bool converts = brindle::testing::SlowConvert(rule, slow);
    EXPECT_EQ(calculator.ToReversePolish(rule, fast), converts);
    EXPECT_EQ(fast.AsString(), brindle::testing::SlowText(slow));
    SlowValue slowResult;
    Literal fastResult;
    const bool runs = brindle::testing::SlowRun(slow, slowResult);
    EXPECT_EQ(calculator.Run(fast, fastResult), runs);
    if (runs) ExpectSame(slowResult, fastResult);
    if (runs) {
        EXPECT_EQ(slowResult.replaceable, fastResult.IsReplaceable());
    }
    return converts;
}

// Returns whether the rule is solved.
bool CompareSolvers(const std::string& rule, const std::map<std::string, std::string>& values, bool upper) {
    class Source final : public CSolverData {
      public:
        explicit Source(const std::map<std::string, std::string>& known) : m_known(known) {}
        bool Lookup(const CStringA& header, const CAddressOv*, CStringA& value) const override {
            const auto found = m_known.find(header.str());
            if (found == m_known.end()) return false;
            value = found->second;
            return true;
        }

      private:
        const std::map<std::string, std::string>& m_known;
    };
    const auto lookup = [&values](const std::string& reference) -> std::optional<std::string> {
        // Every reference with ":" before the comma in these rules has an address that parses, or is no address.
        const std::size_t comma = reference.find(',');
        CAddressOv address;
        const bool has = comma != std::string::npos && address.SetAddress(reference.c_str());
        const auto found = values.find(has ? reference.substr(comma + 1) : reference);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    };
    SlowValue slow;
    const bool solves = brindle::testing::SlowSolve(rule, lookup, upper, slow);
    Literal direct;
    Literal prepared;
    EXPECT_EQ(CSolver().Solve(CStringA(rule), Source(values), upper, direct), solves);
    EXPECT_EQ(brindle::PreparedRule(CStringA(rule), upper).Solve(Source(values), prepared), solves);
    if (solves) {
        ExpectSame(slow, direct);
        ExpectSame(slow, prepared);
        EXPECT_FALSE(direct.IsReplaceable());
    }
    return solves;
}

TEST(RuleRandom, AgreesWithTheSlowCalculator) {
    brindle::FakeClock clock;
    const brindle::ScopedService<brindle::Clock> scope(&brindle::SetClock, clock);
    const unsigned long count = FromEnvironment("BRINDLE_RANDOM_RULES", 50000);
    const unsigned long seed = FromEnvironment("BRINDLE_RANDOM_SEED", 1);
    Generator generator(static_cast<unsigned>(seed));
    unsigned long converted = 0;
    unsigned long solved = 0;
    for (unsigned long i = 0; i < count; ++i) {
        const std::string rule = generator.Rule();
        std::map<std::string, std::string> values;
        std::string shown;
        for (const char* name : {"LEVEL", "STATUS", "Name", "NAME", "x", "n", "two words", "a"}) {
            if (generator.Chance(4)) continue;
            values[name] = generator.Value();
            shown += std::string(" ") + name + "=\"" + values[name] + "\"";
        }
        const bool upper = generator.Chance(4);
        SCOPED_TRACE("rule " + std::to_string(i) + ": " + rule + "\nvalues:" + shown +
                     (upper ? " upper" : ""));
        converted += CompareCalculators(rule);
        solved += CompareSolvers(rule, values, upper);
        if (::testing::Test::HasFailure()) return;  // one example is enough
    }
    EXPECT_GT(converted, count * 7 / 10);  // the rules are worth comparing
    EXPECT_GT(solved, count * 4 / 10);
}

}  // namespace

// brindle format: expands the fields of one command line. Tests: tool_test.cpp.
#include <brindle/platform/clock.h>
#include <brindle/variables/hook/variable_manager_format_command_line_hook.h>
#include <brindle/variables/variable_manager.h>

#include <stdexcept>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"
#include "apps/brindle/field_answers.h"
#include "apps/brindle/format_trace.h"

namespace brindle::tool {
namespace {

struct FormatOptions {
    FormatCall call;
    std::optional<std::string> address;
    std::optional<int> status, n, q;
    std::vector<std::string> variables, fields, states;
    bool trace = false;
};

// The moment the command began: the stages of a trace and the result must not see the seconds change.
class StandingClock final : public Clock {
  public:
    StandingClock() : m_real(CurrentClock()), m_ticks(m_real.SystemTicks()) { SetClock(this); }
    StandingClock(const StandingClock&) = delete;
    StandingClock& operator=(const StandingClock&) = delete;
    ~StandingClock() { SetClock(nullptr); }

    std::uint64_t SystemTicks() override { return m_ticks; }
    std::uint64_t MonotonicMilliseconds() override { return m_real.MonotonicMilliseconds(); }
    bool ToLocalTime(std::int64_t unixSeconds, LocalTime& out) override {
        return m_real.ToLocalTime(unixSeconds, out);
    }
    TimeZone StandardZone() override { return m_real.StandardZone(); }

  private:
    Clock& m_real;
    std::uint64_t m_ticks;
};

// Registers the data interface for a block of code, if there is one.
class RegisteredData {
  public:
    explicit RegisteredData(IBrindleData* data) { RegisterIBrindleData(data); }
    RegisteredData(const RegisteredData&) = delete;
    RegisteredData& operator=(const RegisteredData&) = delete;
    ~RegisteredData() { RegisterIBrindleData(nullptr); }
};

void AddVariables(const std::vector<std::string>& variables, VariableManager& scope) {
    for (const std::string& text : variables) {
        const auto [name, value] = ToAssignment(text, "--set");
        if (name.empty())
            throw Failure(kWrongUsage, "--set", "\"" + text + "\" has no name before its \"=\"");
        scope.addVariable(Variable(name, value));
    }
}

int RunFormat(FormatOptions& options) {
    FormatCall& call = options.call;
    if (options.address) call.address = ToFullAddress(*options.address, "--address");
    call.status = options.status.value_or(call.status);
    call.n = options.n.value_or(call.n);
    call.q = options.q.value_or(call.q);
    VariableManager scope;
    AddVariables(options.variables, scope);
    FieldAnswers answers;
    for (const std::string& field : options.fields) answers.AddField(field);
    for (const std::string& state : options.states) answers.AddState(state);

    const VariableManager* usedScope = options.variables.empty() ? nullptr : &scope;
    FieldAnswers* data = answers.IsEmpty() ? nullptr : &answers;
    const StandingClock clock;
    const RegisteredData registered(data);
    const VariableHookScope hook(usedScope);
    try {
        if (options.trace) TraceFormat(call, usedScope, data);
        Print(call.Expand());
    } catch (const std::invalid_argument&) {
        throw Failure(kFailed, "format", "the present time has no local time");
    }
    return kAnswered;
}

void DeclareTexts(Command& command, FormatOptions& options) {
    FormatCall& call = options.call;
    command.Option("--address", "A", options.address, "fills %a, %N, %U, %P and is where \"#\" fields look");
    command.Option("--path", "P", call.path, "fills %p, and precedes a line that begins with \".\"");
    command.Option("--caption", "C", call.caption, "fills %c");
    command.Option("--text", "T", call.text, "fills %t");
    command.Option("--help-text", "H", call.help, "fills %h, if --text is given too");
    command.Option("--status", "N", options.status, "fills %i and, as a colour name, %s; 0 when not given");
    command.Option("--r", "R", call.r, "fills %r");
    command.Option("--n", "N", options.n, "fills %n; -1 is the same as not given");
    command.Option("--q", "Q", options.q, "fills %q; -1 is the same as not given");
}

}  // namespace

void DeclareFormat(Command& tool) {
    auto options = std::make_shared<FormatOptions>();
    Command& command = tool.Add("format", kGroupQuestions, "expand the fields of a command line");
    command.Text("LINE", options->call.line, "the command line");
    DeclareTexts(command, *options);
    command.Options("--set", "NAME=VALUE", options->variables, "a variable: fills {NAME} before all else");
    command.Options("--field", "[ADDRESS,]NAME=VALUE", options->fields,
                    "answers the field #NAME# or #ADDRESS,NAME#");
    command.Options("--device-status", "ADDRESS=N", options->states,
                    "the status of a device: fills %j and %v");
    command.Flag("--trace", options->trace, "show every stage on the standard error");
    command.Note(
        "An option that is not given leaves its field as typed. --set, --field and --device-status may be "
        "repeated. Open parts of --address are 0; in --field and --device-status they stand for every "
        "number. Once one of these two is given, unknown fields become nothing and unknown states 0. A field "
        "without ADDRESS answers at every address; one with an ADDRESS goes before it there.");
    command.Note(
        "Dates: %dd% %MM% %yyyy% %ddd% %dddd% %MMM% %MMMM% %z% %H% %m% %s%. \"%%\" is a percent sign.");
    command.Example("brindle format '%a %c 100%% %i' --address 0001:02:03 --caption X --status 2",
                    "0001:02:03 X 100% 2");
    command.Example("brindle format 'play #Name# {Clip}.avi' --field 'Name=Studio A' --set Clip=News",
                    "play Studio A News.avi");
    command.Run([options] { return RunFormat(*options); });
}

}  // namespace brindle::tool

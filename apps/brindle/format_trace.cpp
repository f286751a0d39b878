// Shows the stages of command-line formatting. Tests: tool_test.cpp.
#include "apps/brindle/format_trace.h"

#include <brindle/macro/command_line.h>
#include <brindle/variables/variable_manager.h>

#include <algorithm>

#include "apps/brindle/cli_output.h"
#include "apps/brindle/field_answers.h"

namespace brindle::tool {
namespace {

// Stand for "#", so that no "#" field is seen, and before the line, so that no "." begins it. Arguments cannot hold
// them unless typed on purpose; the trace then shows them so, and the result is not concerned.
constexpr char kHash = '\x0e';
constexpr char kFront = '\x0f';

void Replace(std::string& text, char from, char to) {
    std::replace(text.begin(), text.end(), from, to);
}

const char* Pointer(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

void Show(const std::string& stage, const std::string& line, const std::string& note) {
    const std::string name = Paint(Stream::kError, Colour::kCyan, Padded(stage, 6));
    PrintError("brindle: " + name + ": " + line +
               (note.empty() ? "" : Paint(Stream::kError, Colour::kDim, "  (" + note + ")")));
}

std::string Hook(const std::string& line, const VariableManager* scope) {
    CStringA resolved(line);
    if (scope) scope->resolve(resolved);
    const char* why = !scope ? "no variables" : resolved == line ? "nothing to resolve" : "";
    Show("hook", resolved.str(), why);
    return resolved.str();
}

std::string Percent(FormatCall call) {
    const bool any = call.line.find('%') != std::string::npos;
    for (std::string* text :
         {&call.line, call.path ? &*call.path : nullptr, call.caption ? &*call.caption : nullptr,
          call.text ? &*call.text : nullptr, call.help ? &*call.help : nullptr, call.r ? &*call.r : nullptr})
        if (text) Replace(*text, '#', kHash);
    call.line.insert(call.line.begin(), kFront);
    std::string line = call.Expand().substr(1);
    Replace(line, kHash, '#');
    Show("%", line, any ? "" : "no \"%\"");
    return line;
}

std::string Path(const std::string& line, const FormatCall& call) {
    const bool relative = line.starts_with(".");
    const std::string whole = relative ? call.path.value_or("") + "\\" + line : line;
    Show("path", whole, relative ? "" : "does not begin with \".\"");
    return whole;
}

}  // namespace

std::string FormatCall::Expand() const {
    CStringA expanded(line);
    FormatCommandLineEx(expanded, address ? &*address : nullptr, Pointer(path), Pointer(caption),
                        Pointer(text), Pointer(help), status, Pointer(r), n, q);
    return expanded.str();
}

void TraceFormat(const FormatCall& call, const VariableManager* scope, FieldAnswers* data) {
    Show("line", call.line, "");
    const PreFormatHook hook = AttachPreFormatHook(nullptr);  // each stage below gets what the hook left
    FormatCall hooked = call;
    hooked.line = Hook(call.line, scope);
    const bool anyHash = hooked.line.find('#') != std::string::npos;
    if (data)
        data->SetListener([](const std::string& question, const std::string& answer) {
            Show("  asked", question + ": " + answer, "");
        });
    Path(Percent(hooked), call);
    if (data) data->SetListener(nullptr);
    std::vector<std::pair<std::string, std::string>> questions;
    if (data)
        data->SetListener([&questions](const std::string& question, const std::string& answer) {
            if (question.starts_with("field")) questions.emplace_back(question, answer);
        });
    const std::string line = hooked.Expand();
    if (data) data->SetListener(nullptr);
    for (const auto& [question, answer] : questions) Show("  asked", question + ": " + answer, "");
    Show("#", line, !data ? "no data interface" : !anyHash ? "the hook left no \"#\"" : "");
    AttachPreFormatHook(hook);
}

}  // namespace brindle::tool

// brindle format: expands the fields of one command line. Tests: command_format_test.cpp.
#include <stdexcept>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"
#include "apps/brindle/field_options.h"

namespace brindle::tool {
namespace {

struct FormatOptions {
    FieldOptions fields;
    bool trace = false;
};

int RunFormat(FormatOptions& options) {
    FieldSurroundings surroundings(options.fields);
    try {
        if (options.trace) TraceFormat(options.fields.call, surroundings.Scope(), surroundings.Data());
        Print(options.fields.call.Expand());
    } catch (const std::invalid_argument&) {
        throw Failure(kFailed, "format", "the present time has no local time");
    }
    return kAnswered;
}

}  // namespace

void DeclareFormat(Command& tool) {
    auto options = std::make_shared<FormatOptions>();
    Command& command = tool.Add("format", kGroupQuestions, "expand the fields of a command line");
    command.Text("LINE", options->fields.call.line, "the command line");
    options->fields.Declare(command);
    command.Flag("--trace", options->trace, "show every stage on the standard error");
    FieldOptions::Explain(command);
    command.Note(
        "Dates: %dd% %MM% %yyyy% %ddd% %dddd% %MMM% %MMMM% %z% %H% %m% %s%. \"%%\" is a percent sign.");
    command.Example("brindle format '%a %c 100%% %i' --address 0001:02:03 --caption X --status 2",
                    "0001:02:03 X 100% 2");
    command.Example("brindle format 'play #Name# {Clip}.avi' --field 'Name=Studio A' --set Clip=News",
                    "play Studio A News.avi");
    command.Run([options] { return RunFormat(*options); });
}

}  // namespace brindle::tool

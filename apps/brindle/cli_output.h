// What the tool writes, and where: results to the standard output, each followed by one line feed and nothing
// else there; notes, warnings and errors to the standard error as "brindle: WHAT: WHY". Texts are bytes in the
// ANSI code page and leave as UTF-8 unless a name says otherwise.
#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace brindle::tool {

enum ExitCode : int {
    kAnswered = 0,    // whatever the answer
    kFailed = 1,      // an evaluation, a look-up or a check failed, or a difference or problem was found
    kWrongUsage = 2,  // wrong usage or unreadable input
};

// Ends the command: the tool prints "brindle: WHAT: WHY" and exits with the code. `what` names the argument or
// the file; both are bytes in the code page.
class Failure final : public std::exception {
  public:
    Failure(ExitCode code, std::string what, std::string why);
    ~Failure() override;
    ExitCode Code() const noexcept { return m_code; }
    const std::string& What() const noexcept { return m_what; }
    const std::string& Why() const noexcept { return m_why; }
    const char* what() const noexcept override { return m_why.c_str(); }

  private:
    ExitCode m_code;
    std::string m_what;
    std::string m_why;
};

// "FILE", "FILE:LINE" or "FILE:LINE:COLUMN": the WHAT of a message on a file. 0: unknown.
std::string Place(std::string_view file, unsigned long line = 0, unsigned long column = 0);

// --- standard output ---
void Print(std::string_view bytes);
void PrintUtf8(std::string_view utf8);  // JSON lines
// What was printed reaches its reader now (a recording played in real time).
void FlushOutput();
// True once something could not be written (a full disk, a closed output): a long run may stop. RunTool itself
// reports it and exits with 2.
bool OutputFailed();

// --- standard error ---
// Who complains; "brindle" at first. The name is kept, not copied.
void SetProgramName(const char* name) noexcept;
void Complain(std::string_view what, std::string_view why);  // notes, warnings, errors: "brindle: WHAT: WHY"
void PrintError(std::string_view bytes);                     // a line of another form
// A line of progress in the place of the one before; an empty text takes it away. Nothing shows unless the standard
// error is a terminal.
void ShowProgress(std::string_view bytes);

// --- colour: only on a terminal, and not under NO_COLOR ---
enum class Colour { kPlain, kBold, kDim, kRed, kGreen, kYellow, kBlue, kMagenta, kCyan };
enum class Stream { kOutput, kError };
// The text, coloured if that stream shows colours.
std::string Paint(Stream stream, Colour colour, std::string_view text);

// --- columns ---
// Lines whose cells begin below each other, two blanks apart; the last cell of a line is not filled up. Cells may
// be coloured: widths count what is seen.
class Columns {
  public:
    explicit Columns(std::string indent = {}) : m_indent(std::move(indent)) {}
    void Add(std::vector<std::string> cells) { m_lines.push_back(std::move(cells)); }
    std::vector<std::string> Lines() const;

  private:
    std::string m_indent;
    std::vector<std::vector<std::string>> m_lines;
};
// The number of characters a text in the code page shows, colours not counted.
std::size_t ShownWidth(std::string_view bytes);
// `text` with blanks behind it up to `width` shown characters.
std::string Padded(std::string text, std::size_t width);

}  // namespace brindle::tool

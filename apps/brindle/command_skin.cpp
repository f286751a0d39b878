// brindle skin: shows, reads, changes, checks and compares skins. Tests: command_skin_test.cpp.
#include <brindle/framework/number_text.h>
#include <brindle/library/host_path_access.h>
#include <brindle/library/host_text.h>
#include <brindle/skin/ov_skin.h>
#include <brindle/xml/xml_reader.h>

#include <map>
#include <tuple>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"
#include "apps/brindle/skin_value_kind.h"
#include "host/skin_document.h"

namespace brindle::tool {
namespace {

using host::SkinValue;

constexpr std::size_t kMostInherited = 100'000;  // lines of values that modes take over from "default"

struct SkinOptions {
    std::string file;
    SkinPlace place;
    std::string value;
    std::optional<std::string> as;
};

// A file that cannot be loaded is a warning, and the built-in skin stands in; one that is no skin is an error.
void LoadSkin(const std::string& file, OVSkin& skin) {
    XMLReader reader;
    Result result;
    if (!reader.LoadPositioned(file.c_str(), result))
        Complain(Place(file, result.line, result.column), result.text + "; the default skin stands in");
    if (!skin.LoadFromFile(file)) throw Failure(kWrongUsage, file, "the document is no \"skin\"");
}

std::vector<SkinValue> ValuesOf(const std::string& file, OVSkin& skin) {
    std::vector<SkinValue> values;
    if (host::ListSkinValues(skin, values)) return values;
    throw Failure(kFailed, file, "a name or value has a character that skins cannot hold");
}

// The colour itself, as a terminal shows it.
std::string Swatch(const std::string& text) {
    if (!host::IsSkinColour(text) || !text.starts_with('#')) return text;
    if (Paint(Stream::kOutput, Colour::kBold, "x") == "x") return text;
    std::string code = "\x1b[48;2";
    for (std::size_t at = 1; at < 7; at += 2)
        code += ";" + std::to_string(ReadLong(text.substr(at, 2), 16).value);
    return text + " " + code + "m  \x1b[0m";
}

void AddRow(Columns& columns, const std::string& mode, const SkinValue& value, bool inherited) {
    const Colour colour = inherited ? Colour::kDim : Colour::kPlain;
    const auto cell = [&](const std::string& text) { return Paint(Stream::kOutput, colour, text); };
    columns.Add({cell(mode), cell(value.element), cell(value.attribute), cell(inherited ? "default" : "mode"),
                 Swatch(value.text)});
}

int RunShow(const SkinOptions& options) {
    OVSkin skin;
    LoadSkin(options.file, skin);
    std::map<std::string, std::vector<const SkinValue*>> byMode;
    std::vector<std::string> modes;
    const std::vector<SkinValue> values = ValuesOf(options.file, skin);
    for (const SkinValue& value : values) {
        if (modes.empty() || modes.back() != value.mode) modes.push_back(value.mode);
        byMode[value.mode].push_back(&value);
    }
    const std::vector<const SkinValue*> defaults = byMode["default"];
    const bool showInherited = modes.size() * defaults.size() <= kMostInherited;
    Columns columns;
    const auto heading = [](const char* text) { return Paint(Stream::kOutput, Colour::kBold, text); };
    columns.Add(
        {heading("MODE"), heading("ELEMENT"), heading("ATTRIBUTE"), heading("FROM"), heading("VALUE")});
    for (const std::string& mode : modes) {
        for (const SkinValue* value : byMode[mode]) AddRow(columns, mode, *value, false);
        if (mode == "default" || !showInherited) continue;
        CStringA own;
        for (const SkinValue* value : defaults)
            if (!skin.GetExactProp(CStringA(mode), value->element, value->attribute, own))
                AddRow(columns, mode, *value, true);
    }
    for (const std::string& line : columns.Lines()) Print(line);
    if (!showInherited)
        Complain(options.file, "values that modes take over from \"default\" are left out: too many");
    return kAnswered;
}

int RunGet(const SkinOptions& options) {
    const ValueKind kind = ToValueKind(options.as);
    OVSkin skin;
    LoadSkin(options.file, skin);
    const std::optional<std::string> value = GetSkinValue(skin, options.place, kind);
    if (value) Print(*value);
    return value ? kAnswered : kFailed;
}

// The skin that a change starts from: the file's, or the built-in one where there is no file. Anything else would
// lose what the file holds.
void LoadForChange(const std::string& file, OVSkin& skin) {
    XMLReader reader;
    Result result;
    if (!reader.LoadPositioned(file.c_str(), result) && result.code != ErrorCode::kNotFound)
        throw Failure(kWrongUsage, Place(file, result.line, result.column), result.text);
    if (!skin.LoadFromFile(file)) throw Failure(kWrongUsage, file, "the document is no \"skin\"");
    for (const std::string& what : host::LostBySkin(file)) Complain(file, what + " are not kept");
}

int RunSet(const SkinOptions& options) {
    const ValueKind kind = ToValueKind(options.as);
    OVSkin skin;
    LoadForChange(options.file, skin);
    SetSkinValue(skin, options.place, kind, options.value);
    ValuesOf(options.file, skin);  // what could not be read back is not written
    // Without an encoding in its declaration a file is UTF-8.
    const Result written = WriteHostFile(options.file, TextToSystem(skin.GetXML().view()));
    if (!written.ok()) throw Failure(kWrongUsage, options.file, written.text);
    return kAnswered;
}

int RunXml(const SkinOptions& options) {
    OVSkin skin;
    LoadSkin(options.file, skin);
    Print(skin.GetXML().view());
    return kAnswered;
}

int RunCheckSkins(const std::vector<std::string>& files) {
    host::Problems problems;
    for (const std::string& file : files) host::CheckSkin(file, problems);
    for (const host::Problem& problem : problems) Print(problem.Place() + ": " + problem.text);
    return problems.empty() ? kAnswered : kFailed;
}

using Key = std::tuple<std::string, std::string, std::string>;
std::map<Key, std::string> Table(const std::string& file) {
    XMLReader reader;
    Result result;
    if (!reader.LoadPositioned(file.c_str(), result))
        throw Failure(kWrongUsage, Place(file, result.line, result.column), result.text);
    OVSkin skin;
    LoadSkin(file, skin);
    std::map<Key, std::string> table;
    for (const SkinValue& value : ValuesOf(file, skin))
        table[{value.mode, value.element, value.attribute}] = value.text;
    return table;
}

int RunDiff(const std::string& before, const std::string& after) {
    const std::map<Key, std::string> old = Table(before);
    const std::map<Key, std::string> now = Table(after);
    std::map<Key, std::pair<const std::string*, const std::string*>> both;
    for (const auto& [key, text] : old) both[key].first = &text;
    for (const auto& [key, text] : now) both[key].second = &text;
    Columns columns;
    const auto add = [&](const char* sign, Colour colour, const Key& key, const std::string* text) {
        if (!text) return;
        columns.Add({Paint(Stream::kOutput, colour, sign), std::get<0>(key), std::get<1>(key),
                     std::get<2>(key), Swatch(*text)});
    };
    for (const auto& [key, texts] : both) {
        if (texts.first && texts.second && *texts.first == *texts.second) continue;
        add("-", Colour::kRed, key, texts.first);
        add("+", Colour::kGreen, key, texts.second);
    }
    const std::vector<std::string> lines = columns.Lines();
    for (const std::string& line : lines) Print(line);
    return lines.empty() ? kAnswered : kFailed;
}

void AddPlace(Command& command, SkinPlace& place) {
    command.Text("MODE", place.mode, "the mode: its name, or its number 0 (default) to 3");
    command.Text("ELEMENT", place.element, "the element");
    command.Text("ATTRIBUTE", place.attribute, "the attribute");
}

void DeclareShow(Command& skins) {
    auto options = std::make_shared<SkinOptions>();
    Command& command =
        skins.Add("show", "Commands", "list all values, also those taken over from \"default\"");
    command.Text("FILE", options->file, "the skin");
    command.Example("brindle skin show examples/sites/studio/skin.xml");
    command.Run([options] { return RunShow(*options); });
}

void DeclareGet(Command& skins) {
    auto options = std::make_shared<SkinOptions>();
    Command& command = skins.Add("get", "Commands", "print one value");
    command.Text("FILE", options->file, "the skin; when it cannot be loaded the default skin stands in");
    AddPlace(command, options->place);
    command.Option("--as", "KIND", options->as, "text (when not given), int, long, byte or colour");
    command.Note(
        "Numbers and colours that the mode lacks come from the mode \"default\", texts do not. A value that "
        "does "
        "not exist prints nothing and exits with 1.");
    command.Example("brindle skin get skin.xml checked button bordersize --as int", "2");
    command.Run([options] { return RunGet(*options); });
}

void DeclareSet(Command& skins) {
    auto options = std::make_shared<SkinOptions>();
    Command& command = skins.Add("set", "Commands", "change or add one value and save the file");
    command.Text("FILE", options->file, "the skin; a missing one begins as the default skin");
    AddPlace(command, options->place);
    command.Text("VALUE", options->value, "the value");
    command.Option("--as", "KIND", options->as, "text (when not given), int, long, byte or colour");
    command.Note(
        "The file is saved whole or stays as it was. What a skin does not keep (attributes of the root, "
        "comments, "
        "texts, deeper elements) is named on the standard error.");
    command.Example("brindle skin set skin.xml pressed mark colour '#FF0000' --as colour");
    command.Run([options] { return RunSet(*options); });
}

void DeclareXml(Command& skins) {
    auto options = std::make_shared<SkinOptions>();
    Command& command = skins.Add("xml", "Commands", "print the document a skin would be saved as");
    command.Text("FILE", options->file, "the skin");
    command.Example("brindle skin xml skin.xml");
    command.Run([options] { return RunXml(*options); });
}

void DeclareCheckSkins(Command& skins) {
    auto files = std::make_shared<std::vector<std::string>>();
    Command& command = skins.Add("check", "Commands", "report what is doubtful in skins");
    command.Texts("FILE", *files, "the skins");
    command.Note(
        "Prints FILE:LINE:COLUMN: TEXT for each problem: a file that cannot be loaded, elements and "
        "attributes that "
        "the default skin does not know, colours and numbers that are none. Exit 1 when there is one.");
    command.Example("brindle skin check skin.xml");
    command.Run([files] { return RunCheckSkins(*files); });
}

void DeclareDiff(Command& skins) {
    auto files = std::make_shared<std::pair<std::string, std::string>>();
    Command& command = skins.Add("diff", "Commands", "compare the values of two skins");
    command.Text("A", files->first, "one skin");
    command.Text("B", files->second, "the other");
    command.Note(
        "Prints values of A alone behind \"-\", of B alone behind \"+\". Exit 0 when all are alike, else 1.");
    command.Example("brindle skin diff old.xml new.xml");
    command.Run([files] { return RunDiff(files->first, files->second); });
}

}  // namespace

void DeclareSkin(Command& tool) {
    Command& skins = tool.Add("skin", kGroupQuestions, "show, read, change, check and compare skins");
    DeclareShow(skins);
    DeclareGet(skins);
    DeclareSet(skins);
    DeclareXml(skins);
    DeclareCheckSkins(skins);
    DeclareDiff(skins);
}

}  // namespace brindle::tool

// A list and the text it was read from are compared item by item; only what differs is spliced in. Tests:
// action_choice_file_test.cpp.
#include "host/action_choice_file.h"

#include <brindle/behaviour/action.h>
#include <brindle/behaviour/action_list.h>
#include <brindle/behaviour/trigger_list.h>
#include <brindle/library/host_text.h>
#include <brindle/xml/xml_reader.h>

#include <algorithm>
#include <memory>
#include <optional>

#include "host/action_choice_xml.h"
#include "host/alignment.h"
#include "host/behaviour_items.h"
#include "host/configured_item.h"
#include "host/host_files.h"
#include "host/site.h"

namespace brindle::host {

namespace {

using Pieces = std::vector<const XmlPiece*>;
using Items = std::vector<CCommandTreeItem*>;

constexpr const char* kElsewhere = "it cannot be edited in place: ";

bool IsTriggerType(const std::string& name) {
    return std::unique_ptr<CCommandTrigger>(CCommandTriggerList::CreateObject(name.c_str(), 0)) != nullptr;
}
bool IsActionType(const std::string& name) {
    return std::unique_ptr<CCommandAction>(CCommandActionList::CreateObject(name.c_str(), 0)) != nullptr;
}

// The elements that a list reads, those of types nobody registered left out.
Pieces Read(const XmlPiece* list, bool (*isType)(const std::string&)) {
    Pieces pieces;
    if (!list) return pieces;
    for (const XmlPiece& child : list->children)
        if (isType(child.name)) pieces.push_back(&child);
    return pieces;
}

template <class T>
Items ItemsOf(const std::vector<T*>& items) {
    return {items.begin(), items.end()};
}

std::vector<std::string> SavedTexts(const Items& items) {
    std::vector<std::string> texts;
    for (const CCommandTreeItem* item : items) texts.push_back(SavedText(*item));
    return texts;
}

std::string TypeOf(CCommandTreeItem* item) {
    const auto* const configured = dynamic_cast<const ConfiguredItem*>(item);
    return configured ? configured->TypeName() : std::string();
}

// What saving writes, without its declaration and in ASCII.
std::string MarkupOf(const CCommandTreeItem& item) {
    std::string text = SavedText(item);
    const std::size_t declared = text.starts_with("<?xml") ? text.find("?>") : std::string::npos;
    if (declared != std::string::npos) text.erase(0, text.find_first_not_of("\r\n", declared + 2));
    return ToMarkup(text, false);
}

class BehaviourEdit {
  public:
    explicit BehaviourEdit(std::string_view text) : m_edit(text) {}

    Result Run(const XmlPiece& root, CCommandBehaviourList& before, CCommandBehaviourList& after) {
        const std::vector<CCommandBehaviour*> old = BehavioursOf(before);
        const std::vector<CCommandBehaviour*> now = BehavioursOf(after);
        Pieces pieces;
        for (const XmlPiece& child : root.children)
            if (child.name == "Behaviour") pieces.push_back(&child);
        if (root.name != "BehaviourList" || pieces.size() != old.size()) return Other();
        const std::vector<std::string> oldTexts = SavedTexts(ItemsOf(old));
        const std::vector<std::string> nowTexts = SavedTexts(ItemsOf(now));
        const auto oldParts = PartsOf(old);
        const auto nowParts = PartsOf(now);
        const Matches matches = Align(old.size(), now.size(), [&](std::size_t i, std::size_t j) {
            if (oldTexts[i] == nowTexts[j]) return 1'000;
            return 1 + 10 * Shared(oldParts[i].texts, nowParts[j].texts) +
                   Shared(oldParts[i].types, nowParts[j].types);
        });
        const XmlPiece* behind = nullptr;
        for (std::size_t j = 0; j < now.size(); ++j) {
            if (!matches[j]) {
                m_edit.Insert(root, behind, MarkupOf(*now[j]));
                continue;
            }
            behind = pieces[*matches[j]];
            if (oldTexts[*matches[j]] == nowTexts[j]) continue;
            if (Result result = EditBehaviour(*behind, *old[*matches[j]], *now[j]); !result.ok())
                return result;
        }
        RemoveUnmatched(pieces, matches);
        return {};
    }
    std::string Text() const { return m_edit.Text(); }

  private:
    static Result Other() {
        return Result::Error(ErrorCode::kUnsupported,
                             std::string(kElsewhere) + "the list was not read from this text");
    }
    // Of a behaviour's items: what they are saved as, and their types.
    struct Parts {
        std::vector<std::string> texts;
        std::vector<std::string> types;
    };
    // How many of them two behaviours have in common.
    static int Shared(std::vector<std::string> left, const std::vector<std::string>& right) {
        int shared = 0;
        for (const std::string& text : right) {
            const auto found = std::find(left.begin(), left.end(), text);
            if (found == left.end()) continue;
            left.erase(found);
            ++shared;
        }
        return std::min(shared, 40);
    }
    static std::vector<Parts> PartsOf(const std::vector<CCommandBehaviour*>& behaviours) {
        std::vector<Parts> parts;
        for (CCommandBehaviour* behaviour : behaviours) {
            Items items = ItemsOf(TriggersOf(*behaviour));
            const Items actions = ItemsOf(ActionsOf(*behaviour));
            items.insert(items.end(), actions.begin(), actions.end());
            parts.push_back({SavedTexts(items), {}});
            for (CCommandTreeItem* item : items) parts.back().types.push_back(TypeOf(item));
        }
        return parts;
    }
    void RemoveUnmatched(const Pieces& pieces, const Matches& matches) {
        for (std::size_t i = 0; i < pieces.size(); ++i)
            if (std::find(matches.begin(), matches.end(), i) == matches.end()) m_edit.Remove(*pieces[i]);
    }

    // The lists as loading finds them: the first list of actions behind the first one of triggers.
    Result EditBehaviour(const XmlPiece& piece, CCommandBehaviour& before, CCommandBehaviour& after) {
        const XmlPiece* const triggers = piece.Child("TriggerList");
        if (!triggers)
            return Result::Error(ErrorCode::kUnsupported,
                                 std::string(kElsewhere) + "a behaviour has no \"TriggerList\"");
        const auto behind = static_cast<std::size_t>(triggers - piece.children.data()) + 1;
        const XmlPiece* const actions = piece.Child("ActionList", behind);
        const Items oldActions = ItemsOf(ActionsOf(before));
        const Items nowActions = ItemsOf(ActionsOf(after));
        Result result = EditItems(*triggers, Read(triggers, &IsTriggerType), ItemsOf(TriggersOf(before)),
                                  ItemsOf(TriggersOf(after)));
        if (!result.ok()) return result;
        if (actions) return EditItems(*actions, Read(actions, &IsActionType), oldActions, nowActions);
        if (nowActions.empty()) return {};
        std::string markup = "<ActionList>";
        for (const CCommandTreeItem* item : nowActions) markup += MarkupOf(*item);
        m_edit.Insert(piece, triggers, markup + "</ActionList>");
        return {};
    }

    Result EditItems(const XmlPiece& list, const Pieces& pieces, const Items& old, const Items& now) {
        if (pieces.size() != old.size()) return Other();
        const std::vector<std::string> oldTexts = SavedTexts(old);
        const std::vector<std::string> nowTexts = SavedTexts(now);
        const Matches matches = Align(old.size(), now.size(), [&](std::size_t i, std::size_t j) {
            return oldTexts[i] == nowTexts[j] ? 1'000 : TypeOf(old[i]) == TypeOf(now[j]) ? 1 : 0;
        });
        const XmlPiece* behind = nullptr;
        for (std::size_t j = 0; j < now.size(); ++j) {
            if (!matches[j]) {
                m_edit.Insert(list, behind, MarkupOf(*now[j]));
                continue;
            }
            behind = pieces[*matches[j]];
            if (oldTexts[*matches[j]] != nowTexts[j]) EditItem(*behind, *old[*matches[j]], *now[j]);
        }
        RemoveUnmatched(pieces, matches);
        return {};
    }

    void EditItem(const XmlPiece& piece, CCommandTreeItem& before, CCommandTreeItem& after) {
        auto* const oldItem = dynamic_cast<ConfiguredItem*>(&before);
        auto* const nowItem = dynamic_cast<ConfiguredItem*>(&after);
        if (oldItem && nowItem) {
            const AttributeTable old = oldItem->Attributes();
            const AttributeTable now = nowItem->Attributes();
            for (std::size_t i = 0; i < now.size(); ++i)
                if (old[i].text() != now[i].text()) m_edit.SetAttribute(piece, now[i].name, now[i].text());
        }
        if (before.IsEnabled() == after.IsEnabled()) return;
        const char* const value = after.IsEnabled() ? "TRUE" : "FALSE";
        if (const XmlPiece* enabled = piece.Child("Enabled"))
            m_edit.SetAttribute(*enabled, "value", value);
        else
            m_edit.Insert(piece, nullptr, std::string("<Enabled value=\"") + value + "\"/>");
    }

    XmlEdit m_edit;
};

// The encoding that the text declares, in lower case; empty: none.
std::string DeclaredEncoding(std::string_view text) {
    const std::string_view declaration = text.starts_with("<?xml") ? text.substr(0, text.find("?>")) : "";
    const std::size_t at = declaration.find("encoding");
    const std::size_t quote = at == std::string_view::npos ? at : declaration.find_first_of("\"'", at);
    if (quote == std::string_view::npos) return {};
    const std::string_view rest = declaration.substr(quote + 1);
    std::string name(rest.substr(0, rest.find(declaration[quote])));
    for (char& c : name)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return name;
}

// The text as library text, or nothing when it is in an encoding that this cannot read.
std::optional<std::string> LibraryText(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    const std::string encoding = DeclaredEncoding(text);
    if (text.find('\0') != std::string_view::npos || text.starts_with("\xFF\xFE") ||
        text.starts_with("\xFE\xFF"))
        return {};
    std::string bytes;
    if (encoding.empty() || encoding == "utf-8" || encoding == "us-ascii") {
        TextFromSystem(text, bytes);
        return bytes;
    }
    if (encoding == "windows-" + std::to_string(SelectedCodePage())) return std::string(text);
    return {};
}

Result Load(const std::string& text, CCommandBehaviourList& list) {
    XMLReader reader;
    Result result;
    if (reader.LoadFromStringPositioned(text.c_str(), result)) list.Load(reader);
    return result;
}

}  // namespace

Result EditBehaviourText(std::string_view text, CCommandBehaviourList& before, CCommandBehaviourList& after,
                         std::string& edited) {
    if (!LibraryText(text))
        return Result::Error(ErrorCode::kUnsupported, std::string(kElsewhere) + "its encoding is not UTF-8");
    XmlPiece root;
    if (Result result = FindXmlPieces(text, root); !result.ok())
        return Result::Error(ErrorCode::kUnsupported, kElsewhere + result.text);
    BehaviourEdit edit(text);
    if (Result result = edit.Run(root, before, after); !result.ok()) return result;
    std::string made = edit.Text();
    CCommandBehaviourList again(after.GetHostType());
    const std::string expected = SavedText(after);
    if (expected.empty())
        return Result::Error(ErrorCode::kInvalidArgument, "a text holds a character that XML cannot hold");
    if (Result result = Load(*LibraryText(made), again); !result.ok()) return result;
    if (SavedText(again) != expected)
        return Result::Error(ErrorCode::kUnsupported,
                             std::string(kElsewhere) + "read again it would be something else");
    edited = std::move(made);
    return {};
}

Result SaveBehaviourList(const std::string& path, const HostFileMarks& known, CCommandBehaviourList& list) {
    const auto changed = [&] { return MarksOfHostFile(path) != known; };
    const Result other = Result::Error(ErrorCode::kFailed, "somebody else has changed it meanwhile");
    if (changed()) return other;
    std::string text;
    if (const std::string why = ReadSiteFile(path, text); !why.empty())
        return Result::Error(ErrorCode::kAccess, why);
    CCommandBehaviourList before(list.GetHostType());
    Problems problems;
    if (!ReadBehaviours(path, before, problems))
        return Result::Error(ErrorCode::kNotWellFormed,
                             problems.empty() ? "it cannot be read" : problems[0].text);
    std::string edited;
    if (Result result = EditBehaviourText(text, before, list, edited); !result.ok()) return result;
    if (edited == text) return {};
    if (changed()) return other;
    return WriteHostFile(path, edited);
}

}  // namespace brindle::host

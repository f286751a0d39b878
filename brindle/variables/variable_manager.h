// VariableManager: one scope of variables, with an optional enclosing scope. Its central operation, resolve,
// replaces the references "{name}" of a text by the values of the variables.
//
// A name is any non-empty text; names compare byte by byte and case counts. The enclosing scope ("parent") is
// not owned: it must outlive this scope or be detached with setParent(nullptr), and copies share it.
// When memory runs out (std::bad_alloc, the only exception but for Serialize's) a scope is as it was before the call.
// Thread: const operations may run on several threads as long as nobody changes the scope or one of its
// parents.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"
#include "brindle/variables/variable.h"
#include "brindle/variables/variable_index.h"

class CArchive;
class XMLReader;
class XMLWriter;

class BRINDLE_API VariableManager {
  public:
    static constexpr std::size_t kResolveLimit = 16u << 20;  // bytes

    // Empty, without parent. Copies take the variables and the parent pointer.
    VariableManager();
    VariableManager(const VariableManager& other);
    VariableManager& operator=(const VariableManager& other);
    ~VariableManager();

    // Inserts the variable, or gives the one of that name its value. Ignored when the name is empty.
    void addVariable(const Variable& v);
    // Does nothing when there is no variable of that name.
    void removeVariable(const CStringA& name);
    // Removes all variables; the parent stays.
    void clear();
    // Makes the variables those of `other`; the parent stays. Does nothing without `other`; from itself it
    // leaves the scope empty.
    void copyFrom(VariableManager* other);

    // The value of the variable of exactly that name in this scope alone. False, and `value` unchanged, when
    // there is none.
    bool getValue(const CStringA& name, CStringA& value) const;
    // All variables, ordered by name.
    std::vector<Variable> getVariables() const;

    VariableManager* parent() const noexcept { return m_parent; }
    // Null detaches. Ignored when it would close a cycle (`p` is this scope, or has it among its parents).
    void setParent(VariableManager* p);

    // True when the text has a "{" and a "}" somewhere behind it.
    static bool containsVariable(const CStringA& text);
    // "{" + name + "}"; an empty name, and one that begins with "{" or ends with "}", comes back as it is.
    static CStringA encloseInBrackets(const CStringA& name);

    // Replaces each reference "{name}" by the value of that variable, innermost references first, so that
    // they may build names: with b = "1" and a1 = "x", "{a{b}}" becomes "x". A reference this scope cannot
    // answer stays, and the result is handed to the parent, which resolves on. Values are not searched again
    // by the scope they come from.
    //   Returns true when this scope saw a reference, resolved or not; false leaves the text as it was and
    //   does
    // not ask the parent.
    //   Unbalanced text: a reference still open at the end counts as closed there; a "}" outside any
    //   reference
    // ends the text, and what follows it is dropped. Nesting has no limit and uses no stack. A reference
    // whose value would make the text longer than kResolveLimit stays.
    bool resolve(CStringA& text) const;

    // The scope as an XML document. Empty when the document cannot be made.
    CStringA toXML() const;
    // Clears the scope and reads it from a document's text. False when the text is empty or has no
    // "Variables" (the scope is then empty); a text that cannot be parsed is also reported on standard
    // output.
    bool fromXML(const CStringA& xml);
    // The same to and from a file. save: false when it cannot be written.
    bool save(const CStringA& path) const;
    bool load(const CStringA& path);

    // Stores or loads the XML text as an archive string, "" for no variables. Loading "" changes nothing, any
    // other text goes to fromXML. Throws CArchiveException as the archive does.
    void Serialize(CArchive& ar);

  private:
    struct ByName {
        using is_transparent = void;
        bool operator()(std::string_view a, std::string_view b) const noexcept { return a < b; }
        bool operator()(const CStringA& a, const CStringA& b) const noexcept { return a.view() < b.view(); }
        bool operator()(const CStringA& a, std::string_view b) const noexcept { return a.view() < b; }
        bool operator()(std::string_view a, const CStringA& b) const noexcept { return a < b.view(); }
    };
    using Variables = std::map<CStringA, Variable, ByName>;
    bool read(XMLReader& reader);
    void write(XMLWriter& writer) const;
    bool readDocument(XMLReader& reader, bool loaded, const CStringA& error);
    bool resolveHere(CStringA& text) const;
    const CStringA* valueOf(std::string_view name, std::size_t size) const noexcept;
    void closeReference(std::size_t open, std::size_t rest, std::string& expanded) const;

    void rebuildIndex();
    void replaceBy(Variables variables);

    Variables m_variables;
    brindle::VariableIndex m_index;  // of m_variables
    VariableManager* m_parent = nullptr;
};

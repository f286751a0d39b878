"""What the words of a declaration must tell a host, where a machine can judge it: the words of the declaration itself, of
its class and of the head of its file count together.

  thread      on which thread a function may be called: the word "thread"
  returns     what a bool means ("true", "false", "whether"), when a pointer is null ("null"), what a Result says
  ownership   who owns what is handed over by pointer; texts that are only read (const char*) are the caller's
  units       the unit of a duration or a size

What needs no words (constructors that take nothing, one-line bodies and the like, see tools/reference) is not judged but
for the thread; an override is as what it overrides, "the same" as what was told before; a question (IsEmpty, operator<) says by its name what true means.
"""
import re
import xml.etree.ElementTree

THREAD = re.compile(r"\bthreads?\b", re.I)
TRUTH = re.compile(r"\b(?:true|false|whether)\b", re.I)
NULL = re.compile(r"\b(?:null|never none|nothing)\b", re.I)
FAILURE = re.compile(r"\b(?:fail\w*|error|problem|why)\b", re.I)
OWNER = re.compile(r"\bown(?:s|ed|er|ership)?\b|\bcaller's\b|\bbelongs?\b|\b(?:out)?lives?\b|\bvalid\b|\bgood until\b|\breferences?\b|"
                   r"\bdelet\w+|\breleas\w+|\bcop(?:y|ies|ied)\b|\bkept\b|\bkeeps?\b|\bduring the call\b|\bstays?\b|\bborrow\w*|"
                   r"\b(?:it is|is|are) the \w+'s\b", re.I)
UNIT = re.compile(r"\b(?:milliseconds?|ms|seconds?|minutes?|hours?|days?|months?|years?|ticks?|bytes?|characters?|pixels?|units?|points?|"
                  r"degrees?|nanoseconds?|intervals of 100)\b", re.I)
MEASURED = re.compile(r"(?:time|delay|interval|period|timeout|duration|width|height|size|length|bytes)(?:out)?$", re.I)
NUMBER = re.compile(r"^(?:const |unsigned |long |short |std::)*(?:int|long|double|float|size_t|u?int\d+_t|unsigned|DWORD|UINT|ULONG)$")
REFERS = re.compile(r"\b(?:the same|likewise|these as|as (?:in|its|the|C[A-Z]\w+))\b", re.I)
QUESTION = re.compile(r"^(?:Is|Has|Can|Supports|operator\W)")
# What tools/reference itself says of a declaration that needs no words.
PLAIN = ("In full:", "Takes its arguments over.", "As its name", "Ends the object.", "An empty object", "Not copied.", "A copy.",
         "Takes the other's place", "Becomes as the other.", "Compares the values.", "The class, for its derived ones.",
         "The map of this class")


def text_of(element, *names):
    return " ".join(" ".join("".join(part.itertext()).split()) for name in names for part in element.findall(name))


def words_of(element):
    return text_of(element, "briefdescription", "detaileddescription", "inbodydescription").strip()


class Function:
    """One declaration, as doxygen's XML describes it, with all words that hold for it."""

    def __init__(self, member, around):
        self.name = text_of(member, "name")
        self.type = re.sub(r"\b(?:static|virtual|constexpr|inline|BRINDLE_API|explicit)\b ?", "", text_of(member, "type")).strip()
        self.parameters = [(text_of(one, "type"), text_of(one, "declname")) for one in member.findall("param")]
        self.own = words_of(member)
        self.overrides = "override" in text_of(member, "argsstring")
        self.words = f"{self.own} {around}"
        place = member.find("location")
        self.file, self.line = place.get("declfile") or place.get("file"), int(place.get("declline") or place.get("line"))

    def lacks(self):
        """What is not told, each as a few words."""
        if not THREAD.search(self.words):
            yield "the thread"
        if self.overrides or self.own.startswith(PLAIN) or REFERS.search(self.own):
            return
        if self.type == "bool" and not TRUTH.search(self.own) and not QUESTION.match(self.name):
            yield "what true or false means"
        if self.type.endswith("*") and not NULL.search(self.words):
            yield "when it returns null"
        if self.type.endswith("Result") and not FAILURE.search(self.words):
            yield "what a failure leaves behind"
        if self.hands_over() and not OWNER.search(self.words):
            yield "who owns what"
        for name in self.measured():
            if not UNIT.search(self.words) and not UNIT.search(re.sub(r"(?<=[a-z])(?=[A-Z])", " ", name)):
                yield f"the unit of {name}"

    def hands_over(self):
        taken = [kind for kind, _ in self.parameters if not re.match(r"const (?:signed )?char ?\*$", kind)]
        return any("*" in kind and "(*" not in kind for kind in [self.type, *taken])

    def measured(self):
        for kind, name in self.parameters:
            if NUMBER.match(kind.rstrip("& ")) and MEASURED.search(name):
                yield name
        if NUMBER.match(self.type) and MEASURED.search(self.name):
            yield self.name


def functions(folder):
    """Every function of doxygen's XML that a host can name."""
    roots = [xml.etree.ElementTree.parse(path).getroot() for path in sorted(folder.glob("*.xml"))]
    compounds = [one for root in roots for one in root.iter("compounddef")]
    heads = {one.find("location").get("file"): words_of(one) for one in compounds if one.get("kind") == "file"}
    seen = set()
    for compound in compounds:
        if compound.get("kind") not in ("class", "struct", "file", "namespace") or compound.get("prot") == "private":
            continue
        around = words_of(compound) if compound.get("kind") in ("class", "struct") else ""
        for member in compound.iter("memberdef"):
            if member.get("kind") != "function" or member.get("prot") == "private" or member.get("id") in seen:
                continue
            seen.add(member.get("id"))
            place = member.find("location")
            head = heads.get(place.get("declfile") or place.get("file"), "")
            yield Function(member, f"{around} {head}")


def judge(folder):
    """The lines of what is not told: (file, line, text)."""
    for function in functions(folder):
        missing = list(function.lacks())
        if missing:
            yield function.file, function.line, f"{function.name} does not tell {', '.join(missing)}"

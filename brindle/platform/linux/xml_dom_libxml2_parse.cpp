// See xml_dom_libxml2_parse.h. The parser context is this parse's own: its SAX handlers wrap libxml2's tree
// building ones, so nothing is set for the whole process and nothing is printed.
//
// What libxml2 leaves open and the handlers close:
// - With NOENT it opens external entities, files even with NONET. They are declared as internal and empty
//   instead (OnEntityDecl), refused where one is found all the same (OnGetEntity), and an external subset is
//   never asked for.
// - It compares every attribute of a tag with every other, so tags with too many are found before the parse,
//   and in each entity's text before that is parsed; a start handler would come too late.
// - It counts the depth anew within each entity, and looks a prefix up among all namespaces in scope.
// - An entity text put behind other text costs that text's length each time.
#include "brindle/platform/linux/xml_dom_libxml2_parse.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <unordered_map>

#include "brindle/platform/xml_dom_text.h"

namespace brindle {
namespace {

constexpr int kOptions =
    XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_COMPACT | XML_PARSE_IGNORE_ENC | XML_PARSE_NOXINCNODE;
// What one reference counts beside its text, so that references to nothing end too: libxml2 sets up a parser
// for each of them.
constexpr std::uint64_t kReferenceCost = 64;
// Bytes of text that references may make libxml2 walk over again: a tenth of a second.
constexpr std::uint64_t kMaxRewalkedBytes = 1u << 30;
constexpr unsigned kMaxEntityNesting = 40;  // as libxml2

struct Parse {
    std::string_view text;
    std::vector<XmlPosition>* places = nullptr;
    XmlPlaces cursor;
    const xmlParserCtxt* outer = nullptr;  // entities are parsed in contexts of their own
    Result limit;                          // a limit that was passed: the parse fails whatever libxml2 says
    Result error;                          // libxml2's first error
    bool outOfMemory = false;
    std::uint64_t expandedBytes = 0;
    std::uint64_t rewalkedBytes = 0;
    unsigned attributeDeclarations = 0;
    std::unordered_map<const xmlEntity*, std::uint64_t> entityBytes;  // fully expanded

    explicit Parse(std::string_view utf8) : text(utf8), cursor(utf8) {}

    // How far the outer text has been read.
    std::size_t Offset() const {
        if (!outer || outer->inputNr < 1) return 0;
        const xmlParserInput* input = outer->inputTab[0];
        if (!input || input->cur < input->base) return 0;
        const std::size_t offset = input->consumed + static_cast<std::size_t>(input->cur - input->base);
        return offset < text.size() ? offset : text.size();
    }
};

xmlParserCtxt* Context(void* data) {
    return static_cast<xmlParserCtxt*>(data);
}
Parse& ParseOf(void* data) {
    return *static_cast<Parse*>(Context(data)->_private);
}

// Runs what a handler does. No exception may pass through libxml2, which would leave everything it holds behind.
template <class Work>
void Guarded(void* data, Work work) noexcept {
    try {
        work();
    } catch (const std::bad_alloc&) {
        ParseOf(data).outOfMemory = true;
        xmlStopParser(Context(data));
    }
}

void NoteError(Parse& parse, const xmlError* error) {
    std::string text = error->message ? error->message : "not well-formed";
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    // A text over libxml2's own limit is reported as memory running out.
    const bool huge = text.find("huge") != std::string::npos;
    if (error->code == XML_ERR_NO_MEMORY && !huge) parse.outOfMemory = true;
    if (!parse.error.ok()) return;
    const XmlPosition place = XmlPlaces(parse.text).At(parse.Offset());
    parse.error = Result::Error(huge ? ErrorCode::kLimit : ErrorCode::kNotWellFormed, std::move(text),
                                place.line, place.column);
}

void OnError(void* data, xmlErrorPtr error) {
    if (!data || !Context(data)->_private || error->level < XML_ERR_ERROR) return;
    Guarded(data, [&] { NoteError(ParseOf(data), error); });
}

void Stop(void* data, const char* limit) {
    Guarded(data, [&] {
        Parse& parse = ParseOf(data);
        if (!parse.limit.ok()) return;
        const XmlPosition place = XmlPlaces(parse.text).At(parse.Offset());
        parse.limit = Result::Error(ErrorCode::kLimit, limit, place.line, place.column);
    });
    xmlStopParser(Context(data));
}

// The "<" of the tag that libxml2 has just read: no other stands between it and the end of the tag.
XmlPosition PlaceOfTag(Parse& parse) {
    const std::size_t start = parse.text.rfind('<', parse.Offset());
    return start == std::string_view::npos ? XmlPosition{} : parse.cursor.At(start);
}

void OnStartElement(void* data, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri,
                    int namespaces, const xmlChar** namespaceTable, int attributes, int defaulted,
                    const xmlChar** attributeTable) {
    xmlParserCtxt* context = Context(data);
    const auto depth = static_cast<unsigned>(context->nodeNr);
    if (depth > kXmlMaxDepth || (depth == kXmlMaxDepth && context == ParseOf(data).outer))
        return Stop(data, "elements nested deeper than 256");
    if (static_cast<unsigned>(attributes + namespaces) > kXmlMaxAttributes)
        return Stop(data, "more than 4096 attributes in one element");
    if (static_cast<unsigned>(context->nsNr) > 2 * kXmlMaxNamespaces)  // a prefix and an address each
        return Stop(data, "more than 256 namespace declarations in scope");
    xmlSAX2StartElementNs(data, localName, prefix, uri, namespaces, namespaceTable, attributes, defaulted,
                          attributeTable);
    Parse& parse = ParseOf(data);
    if (!parse.places || context != parse.outer || context->inputNr != 1 || !context->node) return;
    Guarded(data, [&] {
        parse.places->push_back(PlaceOfTag(parse));
        context->node->_private = reinterpret_cast<void*>(parse.places->size());
    });
}

void OnEntityDecl(void* data, const xmlChar* name, int type, const xmlChar* publicId, const xmlChar* systemId,
                  xmlChar* content) {
    xmlChar nothing[] = {0};
    if (type == XML_EXTERNAL_GENERAL_PARSED_ENTITY || type == XML_EXTERNAL_PARAMETER_ENTITY) {
        type = type == XML_EXTERNAL_PARAMETER_ENTITY ? XML_INTERNAL_PARAMETER_ENTITY
                                                     : XML_INTERNAL_GENERAL_ENTITY;
        publicId = systemId = nullptr;
        content = nothing;
    }
    if (content && FindAttributeFlood(reinterpret_cast<const char*>(content)) != std::string_view::npos)
        return Stop(data, "more than 4096 attributes in one element");
    xmlSAX2EntityDecl(data, name, type, publicId, systemId, content);
}

void OnAttributeDecl(void* data, const xmlChar* element, const xmlChar* name, int type, int defaultKind,
                     const xmlChar* defaultValue, xmlEnumerationPtr values) {
    if (++ParseOf(data).attributeDeclarations > kXmlMaxAttributes) {
        xmlFreeEnumeration(values);
        return Stop(data, "more than 4096 declared attributes");
    }
    xmlSAX2AttributeDecl(data, element, name, type, defaultKind, defaultValue, values);
}

// What a reference to the entity puts into the document in all, entities within it included. Deep or circular
// nesting is libxml2's to refuse; here it only must end.
std::uint64_t ExpandedBytes(Parse& parse, xmlDoc* document, const xmlEntity* entity, unsigned nesting) {
    const std::string_view content = entity->content ? reinterpret_cast<const char*>(entity->content) : "";
    const auto [known, isNew] = parse.entityBytes.try_emplace(entity, content.size() + kReferenceCost);
    if (!isNew || nesting >= kMaxEntityNesting) return known->second;
    std::uint64_t bytes = known->second;
    for (std::size_t at = content.find('&'); at != std::string_view::npos; at = content.find('&', at + 1)) {
        const std::size_t end = content.find(';', at);
        if (end == std::string_view::npos) break;
        const std::string name(content.substr(at + 1, end - at - 1));
        const xmlEntity* inner = xmlGetDocEntity(document, reinterpret_cast<const xmlChar*>(name.c_str()));
        if (inner && inner->etype == XML_INTERNAL_GENERAL_ENTITY)
            bytes += ExpandedBytes(parse, document, inner, nesting + 1);
        if (bytes > kXmlMaxBytes) bytes = kXmlMaxBytes + 1;
    }
    return parse.entityBytes[entity] = bytes;
}

bool Spend(void* data, const xmlEntity* entity) {
    Parse& parse = ParseOf(data);
    xmlParserCtxt* context = Context(data);
    Guarded(data, [&] { parse.expandedBytes += ExpandedBytes(parse, context->myDoc, entity, 0); });
    if (parse.outOfMemory) return false;
    const xmlNode* last = context->node ? context->node->last : nullptr;
    if (last && last->type == XML_TEXT_NODE && last->content)
        parse.rewalkedBytes += std::strlen(reinterpret_cast<const char*>(last->content));
    if (parse.expandedBytes <= kXmlMaxBytes && parse.rewalkedBytes <= kMaxRewalkedBytes) return true;
    Stop(data, "entities expand to more than 16 MiB");
    return false;
}

xmlEntityPtr OnGetEntity(void* data, const xmlChar* name) {
    xmlEntity* entity = xmlSAX2GetEntity(data, name);
    if (!entity || entity->etype == XML_INTERNAL_PREDEFINED_ENTITY) return entity;
    if (entity->etype != XML_INTERNAL_GENERAL_ENTITY) return nullptr;
    return Spend(data, entity) ? entity : nullptr;
}

xmlEntityPtr OnGetParameterEntity(void* data, const xmlChar* name) {
    xmlEntity* entity = xmlSAX2GetParameterEntity(data, name);
    if (!entity || entity->etype != XML_INTERNAL_PARAMETER_ENTITY) return nullptr;
    return Spend(data, entity) ? entity : nullptr;
}

void OnExternalSubset(void*, const xmlChar*, const xmlChar*, const xmlChar*) {}
// Called for an entity that may be declared in what is not read: it reads as the empty text too.
void OnReference(void*, const xmlChar*) {}
xmlParserInputPtr OnResolveEntity(void*, const xmlChar*, const xmlChar*) {
    return nullptr;
}

void InstallHandlers(xmlSAXHandler& sax) {
    sax.startElementNs = OnStartElement;
    sax.entityDecl = OnEntityDecl;
    sax.attributeDecl = OnAttributeDecl;
    sax.getEntity = OnGetEntity;
    sax.getParameterEntity = OnGetParameterEntity;
    sax.reference = OnReference;
    sax.externalSubset = OnExternalSubset;
    sax.resolveEntity = OnResolveEntity;
    sax.serror = OnError;
    sax.initialized = XML_SAX2_MAGIC;
}

// Entities may nest elements deeper than any one text does.
bool IsTooDeep(xmlDoc* document) {
    unsigned depth = 0;
    for (const xmlNode* node = document->children; node;) {
        if (node->type == XML_ELEMENT_NODE && depth >= kXmlMaxDepth) return true;
        if (node->type == XML_ELEMENT_NODE && node->children) {
            node = node->children;
            ++depth;
            continue;
        }
        while (node && !node->next) {
            node = depth > 0 ? node->parent : nullptr;
            if (node) --depth;
        }
        if (node) node = node->next;
    }
    return false;
}

Result Checked(std::string_view utf8) {
    if (utf8.size() > kXmlMaxBytes) return Result::Error(ErrorCode::kLimit, "more than 16 MiB of XML");
    std::size_t wrong = utf8.find('\0');
    const char* text = "a zero byte";
    if (wrong == std::string_view::npos) {
        // libxml2 would take other beginnings for other encodings.
        text = "the document does not begin with \"<\"";
        wrong = std::min(utf8.find_first_not_of(" \t\r\n"), utf8.size());
        if (utf8.substr(wrong).starts_with('<') || utf8.starts_with("\xEF\xBB\xBF"))
            wrong = std::string_view::npos;
    }
    if (wrong != std::string_view::npos) {
        const XmlPosition place = XmlPlaces(utf8).At(wrong);
        return Result::Error(ErrorCode::kNotWellFormed, text, place.line, place.column);
    }
    const std::size_t flood = FindAttributeFlood(utf8);
    if (flood == std::string_view::npos) return {};
    const XmlPosition place = XmlPlaces(utf8).At(flood);
    return Result::Error(ErrorCode::kLimit, "more than 4096 attributes in one element", place.line,
                         place.column);
}

Result Verdict(const Parse& parse, const xmlParserCtxt& context, xmlDoc* document) {
    if (!parse.limit.ok()) return parse.limit;
    if (!document || !context.wellFormed || !context.nsWellFormed)
        return parse.error.ok() ? Result::Error(ErrorCode::kNotWellFormed, "not well-formed") : parse.error;
    if (document->intSubset && IsTooDeep(document))
        return Result::Error(ErrorCode::kLimit, "elements nested deeper than 256");
    return {};
}

}  // namespace

Result ParseByLibxml2(std::string_view utf8, std::vector<XmlPosition>* places, xmlDoc*& document) {
    document = nullptr;
    if (Result checked = Checked(utf8); !checked.ok()) return checked;
    const std::unique_ptr<xmlParserCtxt, void (*)(xmlParserCtxt*)> context(xmlNewParserCtxt(),
                                                                           &xmlFreeParserCtxt);
    if (!context) throw std::bad_alloc();
    Parse parse(utf8);
    parse.places = places;
    parse.outer = context.get();
    context->_private = &parse;
    InstallHandlers(*context->sax);
    std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> parsed(
        xmlCtxtReadMemory(context.get(), utf8.data(), static_cast<int>(utf8.size()), nullptr, nullptr,
                          kOptions),
        &xmlFreeDoc);
    if (parse.outOfMemory) throw std::bad_alloc();
    Result result = Verdict(parse, *context, parsed.get());
    if (result.ok()) document = parsed.release();
    return result;
}

}  // namespace brindle

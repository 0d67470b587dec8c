#include "tripkit/json.h"

#include <cmath>
#include <cstring>
#include <type_traits>

namespace tripkit::json {

// What every Value of a document points at.
struct Context {
    std::string source;
    simdjson::dom::element root;
};

namespace {

std::string describe(const std::string& source, const std::string& path,
                     const std::string& message) {
    std::string out = source;
    if (!path.empty()) out += ": " + path;
    return out + ": " + message;
}

// One parser per thread is kept between documents, so reading the nightly
// files does not allocate and first-touch the parser's buffers for each one.
// A document parsed while the spare one is taken gets a parser of its own.
thread_local std::unique_ptr<simdjson::dom::parser> t_spareParser;
// Parsers grown past this (in document bytes) are let go rather than kept.
constexpr std::size_t kKeptCapacity = 16 << 20;

// Where an element sits on its document's tape. simdjson keeps this private;
// an element is its document pointer and this index, which the assertions
// below and the root check in `locate` hold it to.
struct TapeRef {
    const void* document;
    std::size_t index;
};
static_assert(sizeof(simdjson::dom::element) == sizeof(TapeRef));
static_assert(std::is_trivially_copyable_v<simdjson::dom::element>);

std::size_t tapeIndex(const simdjson::dom::element& e) {
    TapeRef ref;
    std::memcpy(&ref, &e, sizeof ref);
    return ref.index;
}

void appendIndex(std::string& path, std::size_t i) {
    path += '[';
    path += std::to_string(i);
    path += ']';
}

void appendKey(std::string& path, std::string_view key) {
    if (!path.empty()) path += '.';
    path += key;
}

// The key path from `node` down to the element at tape index `target`.
// Children sit on the tape after their container and in order, so the one
// holding `target` is the last child starting at or before it.
bool locate(simdjson::dom::element node, std::size_t target, std::string& path) {
    while (tapeIndex(node) != target) {
        simdjson::dom::array array;
        simdjson::dom::object object;
        bool found = false;
        if (node.get(array) == simdjson::SUCCESS) {
            std::size_t i = 0, chosen = 0;
            simdjson::dom::element next;
            for (simdjson::dom::element e : array) {
                if (tapeIndex(e) > target) break;
                next = e;
                chosen = i++;
                found = true;
            }
            if (found) {
                appendIndex(path, chosen);
                node = next;
            }
        } else if (node.get(object) == simdjson::SUCCESS) {
            std::string_view chosen;
            simdjson::dom::element next;
            for (auto [key, e] : object) {
                if (tapeIndex(e) > target) break;
                next = e;
                chosen = key;
                found = true;
            }
            if (found) {
                appendKey(path, chosen);
                node = next;
            }
        }
        if (!found) return false;
    }
    return true;
}

}  // namespace

DecodeError::DecodeError(std::string source_, std::string path_, std::string message_)
    : std::runtime_error(describe(source_, path_, message_)),
      source(std::move(source_)),
      path(std::move(path_)),
      message(std::move(message_)) {}

Document::Document() = default;
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;

Document::~Document() {
    if (m_parser && !t_spareParser && m_parser->capacity() <= kKeptCapacity) {
        t_spareParser = std::move(m_parser);
    }
}

Document parse(const char* data, std::size_t size, bool padded, std::string source) {
    Document doc;
    doc.m_parser = t_spareParser ? std::move(t_spareParser)
                                 : std::make_unique<simdjson::dom::parser>();
    doc.m_context = std::make_unique<Context>();
    doc.m_context->source = std::move(source);
    auto result = doc.m_parser->parse(reinterpret_cast<const std::uint8_t*>(data), size, !padded);
    if (result.error() != simdjson::SUCCESS) {
        throw DecodeError(doc.m_context->source, "",
                          std::string("not valid JSON: ") + simdjson::error_message(result.error()));
    }
    doc.m_context->root = result.value_unsafe();
    return doc;
}

Document parse(std::string_view bytes, std::string source) {
    return parse(bytes.data(), bytes.size(), false, std::move(source));
}

Document parse(const std::string& bytes, std::string source) {
    const bool roomAfter = bytes.capacity() - bytes.size() >= simdjson::SIMDJSON_PADDING;
    return parse(bytes.data(), bytes.size(), roomAfter, std::move(source));
}

Document parse(const char* text, std::string source) {
    return parse(std::string_view(text), std::move(source));
}

std::string padded(std::string bytes) {
    bytes.reserve(bytes.size() + simdjson::SIMDJSON_PADDING);
    return bytes;
}

Value Document::root() const { return Value(m_context->root, m_context.get()); }
const std::string& Document::source() const { return m_context->source; }

std::string_view Value::source() const { return m_context->source; }

std::string Value::path() const {
    std::string out;
    const simdjson::dom::element root = m_context->root;
    // The root is the first element on the tape; anything else means the
    // element layout is not what `tapeIndex` expects, so say nothing wrong.
    if (tapeIndex(root) != 1 || !locate(root, tapeIndex(m_element), out)) return "?";
    return out;
}

void Value::fail(const std::string& message) const {
    throw DecodeError(m_context->source, path(), message);
}

void Value::failAt(std::string_view key, const std::string& message) const {
    std::string at = path();
    appendKey(at, key);
    throw DecodeError(m_context->source, at, message);
}

bool Value::has(std::string_view key) const {
    simdjson::dom::element e;
    return objectOrFail().at_key(key).get(e) == simdjson::SUCCESS;
}

std::size_t Value::size() const {
    if (m_element.is_array()) return arrayOrFail().size();
    if (m_element.is_object()) return objectOrFail().size();
    fail("expected an array or an object");
}

std::pair<std::string, Value> Value::caseKeyed() const {
    auto object = objectOrFail();
    if (object.size() != 1) fail("Invalid number of keys found, expected one.");
    auto [key, e] = *object.begin();
    return {std::string(key), Value(e, m_context)};
}

std::int64_t Value::integerSlow() const {
    if (m_element.is_uint64()) fail("integer out of range");
    // A whole number written as 2.0 is still an integer.
    double d = 0;
    if (m_element.get(d) == simdjson::SUCCESS && std::trunc(d) == d && std::abs(d) < 9.0e15) {
        return static_cast<std::int64_t>(d);
    }
    fail("expected an integer");
}

bool Value::boolean() const {
    bool b = false;
    if (m_element.get(b) != simdjson::SUCCESS) fail("expected a boolean");
    return b;
}

void decode(const Value& v, std::string& out) { out = v.string(); }
void decode(const Value& v, double& out) { out = v.number(); }
void decode(const Value& v, std::int64_t& out) { out = v.integer(); }
void decode(const Value& v, int& out) {
    std::int64_t i = v.integer();
    if (i < INT32_MIN || i > INT32_MAX) v.fail("integer out of range");
    out = static_cast<int>(i);
}
void decode(const Value& v, bool& out) { out = v.boolean(); }
void decode(const Value& v, std::set<std::string>& out) {
    out.clear();
    v.forEach([&](const Value& e) { out.insert(e.string()); });
}

Json number(double value) {
    if (std::isfinite(value) && std::trunc(value) == value && std::abs(value) < 9.0e15) {
        return static_cast<std::int64_t>(value);
    }
    return value;
}

Json array(const std::set<std::string>& items) {
    Json out = Json::array();
    for (const auto& item : items) out.push_back(item);
    return out;
}

Json array(const std::vector<std::string>& items) {
    Json out = Json::array();
    for (const auto& item : items) out.push_back(item);
    return out;
}

}  // namespace tripkit::json

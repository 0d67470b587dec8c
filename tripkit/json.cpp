#include "tripkit/json.h"

#include <cmath>

namespace tripkit::json {

namespace {
std::string describe(const std::string& source, const std::string& path,
                     const std::string& message) {
    std::string out = source;
    if (!path.empty()) out += ": " + path;
    return out + ": " + message;
}
}  // namespace

DecodeError::DecodeError(std::string source_, std::string path_, std::string message_)
    : std::runtime_error(describe(source_, path_, message_)),
      source(std::move(source_)),
      path(std::move(path_)),
      message(std::move(message_)) {}

Document parse(std::string_view bytes, std::string source) {
    return parsePadded(simdjson::padded_string(bytes), std::move(source));
}

Document parsePadded(const simdjson::padded_string& bytes, std::string source) {
    Document doc;
    doc.m_document = std::make_unique<simdjson::dom::document>();
    doc.m_source = std::make_unique<std::string>(std::move(source));
    simdjson::dom::parser parser;
    auto result = parser.parse_into_document(*doc.m_document, bytes);
    if (result.error() != simdjson::SUCCESS) {
        throw DecodeError(*doc.m_source, "",
                          std::string("not valid JSON: ") + simdjson::error_message(result.error()));
    }
    doc.m_root = result.value_unsafe();
    return doc;
}

Value Document::root() const { return Value(m_root, *m_source, ""); }

void Value::fail(const std::string& message) const {
    throw DecodeError(std::string(m_source), m_path, message);
}

std::string Value::childPath(std::string_view key) const {
    if (m_path.empty()) return std::string(key);
    std::string out;
    out.reserve(m_path.size() + 1 + key.size());
    out += m_path;
    out += '.';
    out += key;
    return out;
}

simdjson::dom::object Value::objectOrFail() const {
    simdjson::dom::object object;
    if (m_element.get(object) != simdjson::SUCCESS) fail("expected an object");
    return object;
}

simdjson::dom::array Value::arrayOrFail() const {
    simdjson::dom::array array;
    if (m_element.get(array) != simdjson::SUCCESS) fail("expected an array");
    return array;
}

bool Value::has(std::string_view key) const {
    simdjson::dom::element e;
    return objectOrFail().at_key(key).get(e) == simdjson::SUCCESS;
}

Value Value::field(std::string_view key) const {
    simdjson::dom::element e;
    if (objectOrFail().at_key(key).get(e) != simdjson::SUCCESS) {
        throw DecodeError(std::string(m_source), childPath(key), "required key is missing");
    }
    return Value(e, m_source, childPath(key));
}

std::optional<Value> Value::find(std::string_view key) const {
    simdjson::dom::element e;
    if (objectOrFail().at_key(key).get(e) != simdjson::SUCCESS || e.is_null()) {
        return std::nullopt;
    }
    return Value(e, m_source, childPath(key));
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
    return {std::string(key), Value(e, m_source, childPath(key))};
}

std::string_view Value::stringView() const {
    std::string_view s;
    if (m_element.get(s) != simdjson::SUCCESS) fail("expected a string");
    return s;
}

std::string Value::string() const { return std::string(stringView()); }

double Value::number() const {
    double d = 0;
    // get<double> converts integers too; anything else is a wrong type.
    if (!m_element.is_number() || m_element.get(d) != simdjson::SUCCESS) {
        fail("expected a number");
    }
    return d;
}

std::int64_t Value::integer() const {
    std::int64_t i = 0;
    if (m_element.get(i) == simdjson::SUCCESS) return i;
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

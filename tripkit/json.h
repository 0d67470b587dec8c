// Reading and writing of the JSON records.
//
// Reading goes through simdjson's DOM parser (the whole document is validated
// up front, so a truncated file never half-decodes). `json::Value` wraps one
// element together with the source name and the key path that led to it, so
// that every decode error reads like
//     flights/JFK.json: deals[3].price: expected a number
// Writing goes through nlohmann's ordered_json, which keeps our field order.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>
#include <simdjson.h>

namespace tripkit::json {

using Json = nlohmann::ordered_json;

// The one error every decoder throws. `what()` is "source: path: message"
// (the path part is left out at the document's root).
struct DecodeError : std::runtime_error {
    DecodeError(std::string source, std::string path, std::string message);
    std::string source;
    std::string path;
    std::string message;
};

class Value;

// Decoders of the primitive types, so that `as<T>()` works for them too.
void decode(const Value& v, std::string& out);
void decode(const Value& v, double& out);
void decode(const Value& v, std::int64_t& out);
void decode(const Value& v, int& out);
void decode(const Value& v, bool& out);
void decode(const Value& v, std::set<std::string>& out);
template <class T>
void decode(const Value& v, std::vector<T>& out);

// A parsed document. Values taken from it must not outlive it.
class Document {
public:
    Value root() const;
    const std::string& source() const { return *m_source; }

private:
    friend Document parsePadded(const simdjson::padded_string& bytes, std::string source);
    // Only the parsed document: the parser's working memory (as large again
    // as the input) is freed once parsing ends.
    std::unique_ptr<simdjson::dom::document> m_document;
    std::unique_ptr<std::string> m_source;  // stable address: values point at it
    simdjson::dom::element m_root;
};

// Parses `bytes` (throws DecodeError naming `source` when it is not JSON).
Document parse(std::string_view bytes, std::string source);
// The same for bytes that carry simdjson's padding already (as
// FileReader::read gives them): parsed where they lie, without a copy.
Document parsePadded(const simdjson::padded_string& bytes, std::string source);

// One element of a document with its location.
class Value {
public:
    Value(simdjson::dom::element element, std::string_view source, std::string path)
        : m_element(element), m_source(source), m_path(std::move(path)) {}

    const std::string& path() const { return m_path; }
    std::string_view source() const { return m_source; }

    bool isNull() const { return m_element.is_null(); }
    bool isObject() const { return m_element.is_object(); }
    bool isArray() const { return m_element.is_array(); }
    bool isString() const { return m_element.is_string(); }
    bool isNumber() const { return m_element.is_number(); }

    // Throws a DecodeError at this value's location.
    [[noreturn]] void fail(const std::string& message) const;

    // Object access. `field` requires the key; `find` gives nothing when the
    // key is absent or null (the absent value of an optional field).
    bool has(std::string_view key) const;
    Value field(std::string_view key) const;
    std::optional<Value> find(std::string_view key) const;

    template <class T>
    T get(std::string_view key) const { return field(key).as<T>(); }
    template <class T>
    std::optional<T> getOptional(std::string_view key) const {
        auto v = find(key);
        if (!v) return std::nullopt;
        return v->as<T>();
    }

    // This value decoded as T, through the `decode(const Value&, T&)`
    // overload for T (found by argument-dependent lookup).
    template <class T>
    T as() const {
        T out{};
        decode(*this, out);
        return out;
    }

    // Arrays and objects.
    std::size_t size() const;
    template <class F>
    void forEach(F&& visit) const {  // visit(const Value& element)
        auto array = arrayOrFail();
        std::size_t i = 0;
        for (simdjson::dom::element e : array) {
            visit(Value(e, m_source, m_path + "[" + std::to_string(i) + "]"));
            ++i;
        }
    }
    template <class F>
    void forEachMember(F&& visit) const {  // visit(std::string_view key, const Value& v)
        auto object = objectOrFail();
        for (auto [key, e] : object) visit(key, Value(e, m_source, childPath(key)));
    }
    template <class T>
    std::vector<T> asVector() const {
        std::vector<T> out;
        out.reserve(size());
        forEach([&](const Value& e) { out.push_back(e.as<T>()); });
        return out;
    }

    // An enumeration in its case-keyed form: {"caseName": {fields}}.
    // Fails with "Invalid number of keys found, expected one." otherwise.
    std::pair<std::string, Value> caseKeyed() const;

    // Primitive readers (fail with "expected a ..." on a wrong type).
    std::string string() const;
    std::string_view stringView() const;
    double number() const;
    std::int64_t integer() const;
    bool boolean() const;

private:
    std::string childPath(std::string_view key) const;
    simdjson::dom::array arrayOrFail() const;
    simdjson::dom::object objectOrFail() const;

    simdjson::dom::element m_element;
    std::string_view m_source;
    std::string m_path;
};


template <class T>
void decode(const Value& v, std::vector<T>& out) {
    out = v.asVector<T>();
}

// Decodes a whole document as T.
template <class T>
T decodeDocument(std::string_view bytes, std::string source) {
    Document doc = parse(bytes, std::move(source));
    return doc.root().as<T>();
}
// Takes the bytes and frees them once parsed, so that a large file is not
// held twice while it is decoded.
template <class T>
T decodePadded(simdjson::padded_string bytes, std::string source) {
    Document doc = parsePadded(bytes, std::move(source));
    bytes = simdjson::padded_string();
    return doc.root().as<T>();
}

// Writing helpers.

// A money or measure value written the way people read it: 199 rather than
// 199.0 when it is whole.
Json number(double value);

inline Json encode(const std::string& s) { return s; }
inline Json encode(double d) { return number(d); }
inline Json encode(int i) { return i; }
inline Json encode(std::int64_t i) { return i; }
inline Json encode(bool b) { return b; }

template <class T>
Json array(const std::vector<T>& items) {
    Json out = Json::array();
    for (const auto& item : items) out.push_back(encode(item));
    return out;
}
Json array(const std::set<std::string>& items);
Json array(const std::vector<std::string>& items);

// Sets `key` only when the optional holds a value (absent keys, not null).
template <class T>
void putOptional(Json& object, const char* key, const std::optional<T>& value) {
    if (value) object[key] = encode(*value);
}

}  // namespace tripkit::json

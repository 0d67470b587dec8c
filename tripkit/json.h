// Reading and writing of the JSON records.
//
// Reading goes through simdjson's DOM parser (the whole document is validated
// up front, so a truncated file never half-decodes, and decoders may read
// keys in any order). `json::Value` wraps one element; the source name and
// key path are only put together when an error is reported, which reads like
//     flights/JFK.json: deals[3].price: expected a number
// Writing goes through nlohmann's ordered_json, which keeps our field order.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <simdjson.h>
#include <nlohmann/json.hpp>

#include "tripkit/json_windows.h"

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

struct Context;

// A parsed document. Values taken from it must not outlive it.
class Document {
public:
    Document(Document&&) noexcept;
    Document& operator=(Document&&) noexcept;
    ~Document();

    Value root() const;
    const std::string& source() const;

private:
    friend Document parse(const char* data, std::size_t size, bool padded, std::string source);
    Document();
    std::unique_ptr<simdjson::dom::parser> m_parser;
    std::unique_ptr<Context> m_context;  // stable address: values point at it
};

// Parses `bytes` (throws DecodeError naming `source` when it is not JSON).
// A std::string with SIMDJSON_PADDING spare bytes of capacity (see `padded`)
// is parsed where it stands; other bytes are first copied.
Document parse(std::string_view bytes, std::string source);
Document parse(const std::string& bytes, std::string source);
// `padded`: SIMDJSON_PADDING bytes after `data + size` may be read.
Document parse(const char* data, std::size_t size, bool padded, std::string source);
Document parse(const char* text, std::string source);
// `bytes` with room reserved after them for the parser to read past the end.
std::string padded(std::string bytes);

// Bytes that carry simdjson's padding already (as FileReader::read gives
// them): parsed where they lie, without a copy.
inline Document parsePadded(const simdjson::padded_string& bytes, std::string source) {
    return parse(bytes.data(), bytes.size(), true, std::move(source));
}

// One element of a document. A Value is two pointers wide and carries no
// path: the key path of an error is found, only when one is reported, by
// looking the element up from the document's root. So a Value may be copied
// and kept freely (children do not point at their parents), as long as its
// Document lives.
class Value {
public:
    // The key path from the root ("deals[3].price"; "" at the root), worked
    // out from the document: meant for error reports, not for hot loops.
    std::string path() const;
    std::string_view source() const;

    bool isNull() const { return m_element.is_null(); }
    bool isObject() const { return m_element.is_object(); }
    bool isArray() const { return m_element.is_array(); }
    bool isString() const { return m_element.is_string(); }
    bool isNumber() const { return m_element.is_number(); }

    // Throws a DecodeError at this value's location.
    [[noreturn]] void fail(const std::string& message) const;
    // Throws a DecodeError at the location of this object's key `key`.
    [[noreturn]] void failAt(std::string_view key, const std::string& message) const;

    // Object access. `field` requires the key; `find` gives nothing when the
    // key is absent or null (the absent value of an optional field).
    bool has(std::string_view key) const;
    Value field(std::string_view key) const {
        simdjson::dom::element e;
        if (objectOrFail().at_key(key).get(e) != simdjson::SUCCESS) {
            failAt(key, "required key is missing");
        }
        return Value(e, m_context);
    }
    std::optional<Value> find(std::string_view key) const {
        simdjson::dom::element e;
        if (objectOrFail().at_key(key).get(e) != simdjson::SUCCESS || e.is_null()) {
            return std::nullopt;
        }
        return Value(e, m_context);
    }

    template <class T>
    T get(std::string_view key) const {
        return field(key).as<T>();
    }
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
        for (simdjson::dom::element e : arrayOrFail()) visit(Value(e, m_context));
    }
    template <class F>
    void forEachMember(F&& visit) const {  // visit(std::string_view key, const Value& v)
        for (auto [key, e] : objectOrFail()) visit(key, Value(e, m_context));
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
    std::string string() const { return std::string(stringView()); }
    std::string_view stringView() const {
        std::string_view s;
        if (m_element.get(s) != simdjson::SUCCESS) fail("expected a string");
        return s;
    }
    double number() const {
        double d = 0;
        // get<double> converts integers too; anything else is a wrong type.
        if (m_element.get(d) != simdjson::SUCCESS) fail("expected a number");
        return d;
    }
    std::int64_t integer() const {
        std::int64_t i = 0;
        if (m_element.get(i) == simdjson::SUCCESS) return i;
        return integerSlow();
    }
    bool boolean() const;

private:
    friend class Document;
    Value(simdjson::dom::element element, const Context* context)
        : m_element(element), m_context(context) {}

    std::int64_t integerSlow() const;
    simdjson::dom::array arrayOrFail() const {
        simdjson::dom::array array;
        if (m_element.get(array) != simdjson::SUCCESS) fail("expected an array");
        return array;
    }
    simdjson::dom::object objectOrFail() const {
        simdjson::dom::object object;
        if (m_element.get(object) != simdjson::SUCCESS) fail("expected an object");
        return object;
    }

    simdjson::dom::element m_element;
    const Context* m_context = nullptr;
};

template <class T>
void decode(const Value& v, std::vector<T>& out) {
    out = v.asVector<T>();
}

// A record may offer a fast reader of a whole document (simdjson On-Demand)
// that gives nothing for anything but a plainly written file; the DOM decoder
// then runs, so what is accepted and every error message stay its own.
template <class T>
concept ReadsFast = requires(const char* data, std::size_t size) {
    { T::readFast(data, size) } -> std::same_as<std::optional<T>>;
};

// Decodes a whole document as T with the DOM decoder alone.
template <class T>
T decodeTree(std::string_view bytes, std::string source) {
    return parse(bytes, std::move(source)).root().template as<T>();
}

// Decodes a whole document as T.
template <class T>
T decodeDocument(std::string_view bytes, std::string source) {
    if constexpr (ReadsFast<T>) {
        const simdjson::padded_string padded(bytes);
        if (std::optional<T> fast = T::readFast(padded.data(), padded.size()))
            return std::move(*fast);
    }
    return parse(bytes, std::move(source)).root().template as<T>();
}
template <class T>
T decodeDocument(const std::string& bytes, std::string source) {
    if constexpr (ReadsFast<T>) {
        if (bytes.capacity() - bytes.size() >= simdjson::SIMDJSON_PADDING) {
            if (std::optional<T> fast = T::readFast(bytes.data(), bytes.size()))
                return std::move(*fast);
        } else {
            return decodeDocument<T>(std::string_view(bytes), std::move(source));
        }
    }
    return parse(bytes, std::move(source)).root().template as<T>();
}
template <class T>
T decodeDocument(const char* text, std::string source) {
    return decodeDocument<T>(std::string_view(text), std::move(source));
}

// A fast reader that can give back the pages of its input as it reads them
// (see fast::GiveBack), asked to for files above `giveBackBytes`. It may take
// a record's needs too (as FareBook takes FareNeeds): what the caller will
// use of the file, which the DOM decoder's value is then narrowed to.
template <class T, class... Needs>
concept GivesBackInput = requires(const char* data, std::size_t size, const Needs&... needs) {
    {
        T::readFast(data, size, fast::kWindowBytes, true, needs...)
        } -> std::same_as<std::optional<T>>;
};
inline constexpr std::size_t giveBackBytes = 8 * 1024 * 1024;  // above any real feed file

// Takes the bytes and frees them once parsed, so that a large file is not
// held twice while it is decoded. With `again`, which reads the same bytes
// anew, a large file's pages may be given back as they are read; they are
// read again only if the fast reader leaves the file to the DOM decoder.
template <class T, class... Needs>
T decodePadded(simdjson::padded_string bytes, std::string source,
               const std::function<simdjson::padded_string()>& again = {}, const Needs&... needs) {
    static_assert(sizeof...(Needs) == 0 || GivesBackInput<T, Needs...>);
    const auto tree = [&] {
        Document doc = parsePadded(bytes, std::move(source));
        bytes = simdjson::padded_string();
        T value = doc.root().template as<T>();
        if constexpr (sizeof...(Needs) > 0) narrow(value, needs...);
        return value;
    };
    if constexpr (GivesBackInput<T, Needs...>) {
        const bool giveBack = again && bytes.size() > giveBackBytes;
        if (giveBack || sizeof...(Needs) > 0) {
            if (std::optional<T> fast = T::readFast(bytes.data(), bytes.size(), fast::kWindowBytes,
                                                    giveBack, needs...)) {
                return std::move(*fast);
            }
            if (giveBack) bytes = again();
            return tree();
        }
    }
    if constexpr (ReadsFast<T>) {
        if (std::optional<T> fast = T::readFast(bytes.data(), bytes.size()))
            return std::move(*fast);
    }
    return tree();
}

// Writing helpers.

// A money or measure value written the way people read it: 199 rather than
// 199.0 when it is whole.
Json number(double value);

inline Json encode(const std::string& s) {
    return s;
}
inline Json encode(double d) {
    return number(d);
}
inline Json encode(int i) {
    return i;
}
inline Json encode(std::int64_t i) {
    return i;
}
inline Json encode(bool b) {
    return b;
}

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

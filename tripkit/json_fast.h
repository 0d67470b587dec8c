// Pieces of the fast readers (a record's `readFast`, see json.h): values and
// whole field-listed records read through simdjson's On-Demand API. Each
// gives false for anything the DOM decoder would refuse or read otherwise,
// and the caller then leaves the whole file to the DOM decoder, so these
// never need to say what is wrong.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "tripkit/days.h"
#include "tripkit/json_fields.h"

namespace tripkit::json::fast {

namespace ondemand = simdjson::ondemand;

// Characters of a number token (with the spaces after it) from which the
// DOM decoder reads it: no real price or measure is written that long.
inline constexpr std::size_t kLongNumber = 19;

inline bool read(ondemand::value& v, std::string_view& out) {
    return v.get_string().get(out) == simdjson::SUCCESS;
}
inline bool read(ondemand::value& v, std::string& out) {
    std::string_view text;
    if (!read(v, text)) return false;
    out.assign(text);
    return true;
}
// An integer too long for 64 bits is refused by the DOM decoder but read by
// get_double, and a decimal of a hundred digits can round otherwise on the
// two paths (found by fuzzing): long numbers are left to the DOM decoder.
inline bool read(ondemand::value& v, double& out) {
    if (v.raw_json_token().size() >= kLongNumber) return false;
    return v.get_double().get(out) == simdjson::SUCCESS;
}
// Whole numbers written as such; 2.0 is left to the DOM decoder.
inline bool read(ondemand::value& v, int& out) {
    std::int64_t i = 0;
    if (v.get_int64().get(i) != simdjson::SUCCESS || i < INT32_MIN || i > INT32_MAX) return false;
    out = static_cast<int>(i);
    return true;
}
inline bool read(ondemand::value& v, Day& out) {
    std::string_view text;
    if (!read(v, text)) return false;
    const std::optional<Day> day = Day::parse(text);
    if (!day) return false;
    out = *day;
    return true;
}
// Absent (see readFields) or null is nothing, as for the DOM decoder.
template <class T>
bool read(ondemand::value& v, std::optional<T>& out) {
    bool null = false;
    if (v.is_null().get(null) != simdjson::SUCCESS) return false;
    if (null) {
        out.reset();
        return true;
    }
    T x;
    if (!read(v, x)) return false;
    out = std::move(x);
    return true;
}

// The thread's parser, kept for the next file while its buffers are small;
// those of a large file are given back when the reader is done, so that they
// are not held beside the records read from it. Declare it before the
// document, which must go first.
class ThreadParser {
public:
    static constexpr std::size_t keptBytes = 8 * 1024 * 1024;  // above any real feed file
    ThreadParser() : m_parser(local()) {}
    ~ThreadParser() {
        if (m_parser.capacity() > keptBytes) m_parser = ondemand::parser{};
    }
    ThreadParser(const ThreadParser&) = delete;
    ThreadParser& operator=(const ThreadParser&) = delete;
    ondemand::parser& get() { return m_parser; }

private:
    static ondemand::parser& local() {
        thread_local ondemand::parser parser;
        return parser;
    }
    ondemand::parser& m_parser;
};

// The document's root object, or false; `data` is padded for simdjson.
inline bool start(ondemand::parser& parser, const char* data, std::size_t size,
                  ondemand::document& doc, ondemand::object& root) {
    return parser.iterate(data, size, size + simdjson::SIMDJSON_PADDING).get(doc) ==
               simdjson::SUCCESS &&
           doc.get_object().get(root) == simdjson::SUCCESS;
}

// On-Demand reads forward only: a truncated or trailing document shows here.
inline bool atEnd(ondemand::document& doc) {
    return doc.current_location().error() == simdjson::OUT_OF_BOUNDS;
}

namespace detail {

template <class F>
struct IsPlainField : std::false_type {};
template <class C, class M>
struct IsPlainField<Field<C, M, Unchecked>> : std::true_type {};

template <class T, std::size_t... I>
constexpr std::array<std::string_view, sizeof...(I)> keysOf(std::index_sequence<I...>) {
    return {std::string_view(std::get<I>(Fields<T>::list).key)...};
}

// Reads the value of field `index` into `out`.
template <class T, std::size_t... I>
bool readField(std::size_t index, ondemand::value& value, T& out, std::index_sequence<I...>) {
    bool ok = false;
    static_cast<void>((
        (index == I && (ok = read(value, out.*std::get<I>(Fields<T>::list).member), true)) || ...));
    return ok;
}

template <class T, std::size_t... I>
bool finish(T& out, const std::bitset<sizeof...(I)>& seen, std::index_sequence<I...>) {
    bool ok = true;
    const auto one = [&](std::size_t index, const auto& f) {
        if (seen[index]) return;
        using M = std::remove_cvref_t<decltype(out.*f.member)>;
        if constexpr (json::detail::IsOptional<M>::value) {
            out.*f.member = std::nullopt;
        } else {
            ok = false;  // a required key is missing
        }
    };
    (one(I, std::get<I>(Fields<T>::list)), ...);
    return ok;
}

}  // namespace detail

// A record said by its field list, each key once, none unknown. Only for
// lists without checks and rules: those speak through the DOM decoder.
template <Described T>
bool readFields(ondemand::value value, T& out) {
    using List = std::remove_cvref_t<decltype(Fields<T>::list)>;
    constexpr std::size_t n = std::tuple_size_v<List>;
    static_assert(
        []<std::size_t... I>(std::index_sequence<I...>) {
            return (detail::IsPlainField<std::tuple_element_t<I, List>>::value && ...);
        }(std::make_index_sequence<n>{}),
        "a field with a check is read by the DOM decoder only");
    static_assert(!requires(const Value& v, T& t) { Fields<T>::check(v, t); });

    static constexpr auto keys = detail::keysOf<T>(std::make_index_sequence<n>{});
    ondemand::object object;
    if (value.get_object().get(object) != simdjson::SUCCESS) return false;
    std::bitset<n> seen;
    std::size_t next = 0;  // files list keys in the list's order: look there first
    for (auto result : object) {
        ondemand::field field;
        if (std::move(result).get(field) != simdjson::SUCCESS) return false;
        // Compared as written: a key spelt with escapes matches none, and the
        // DOM decoder reads the file.
        const ondemand::raw_json_string key = field.key();
        std::size_t index = next;
        std::size_t tried = 0;
        while (tried < n && !key.unsafe_is_equal(keys[index])) {
            index = index + 1 == n ? 0 : index + 1;
            ++tried;
        }
        if (tried == n || seen[index] ||
            !detail::readField(index, field.value(), out, std::make_index_sequence<n>{})) {
            return false;  // unknown, repeated or of another type
        }
        seen[index] = true;
        next = index + 1 == n ? 0 : index + 1;
    }
    return detail::finish(out, seen, std::make_index_sequence<n>{});
}

}  // namespace tripkit::json::fast

// Records whose JSON form is their fields one to one say their fields once,
// in a field list, and one decoder and one encoder serve them all:
//
//     template <>
//     struct json::Fields<Mears> {
//         static constexpr auto list = std::tuple{
//             json::field("adult", &Mears::adult, json::amount),
//             json::field("child", &Mears::child, json::amount)};
//     };
//     TRIPKIT_JSON_CODEC(Mears)  // the decode and encode its header declares
//
// An optional field is absent or null when it has no value and is left out
// when written. A field may carry a check of its decoded value (a price above
// 0, a count of at least 1); a record may add `static void check(const
// json::Value&, T&)` to its Fields for rules across fields, run once every
// field is read, or put a `json::rule` in the list where a rule must run
// before the fields after it are read (so that of two faults in a file the
// same one is reported first). Positional and case-keyed forms stay
// hand-written.
#pragma once

#include <cmath>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "tripkit/json.h"

namespace tripkit::json {

// Specialised for each record that is its fields one to one.
template <class T>
struct Fields;

template <class T>
concept Described = requires {
    Fields<T>::list;
};

// No check: any value of the field's type is a fact.
struct Unchecked {
    template <class M>
    void operator()(const Value&, const M&) const {}
};

template <class C, class M, class Check = Unchecked>
struct Field {
    const char* key;
    M C::*member;
    Check check{};
};

template <class C, class M, class Check = Unchecked>
constexpr Field<C, M, Check> field(const char* key, M C::*member, Check check = {}) {
    return {key, member, check};
}

// Money and measures that cannot be negative (a tax, a fee, a budget).
struct Amount {
    void operator()(const Value& v, double x) const {
        if (!(x >= 0) || !std::isfinite(x)) v.fail("expected an amount of 0 or more");
    }
};
inline constexpr Amount amount{};

// A price that something is sold for: never 0.
struct Price {
    void operator()(const Value& v, double x) const {
        if (!(x > 0) || !std::isfinite(x)) v.fail("expected a price above 0");
    }
};
inline constexpr Price price{};

// A whole count of at least `min`; `message` says so in words.
struct AtLeast {
    int min;
    const char* message;
    void operator()(const Value& v, int x) const {
        if (x < min) v.fail(message);
    }
};

// A whole number from `min` to `max`, both included.
struct Between {
    int min;
    int max;
    const char* message;
    void operator()(const Value& v, int x) const {
        if (x < min || x > max) v.fail(message);
    }
};

// Each element of an array field read and checked in turn (at the element's
// own path), then the whole container by `whole`.
template <class Check, class Whole = Unchecked>
struct Each {
    Check check;
    Whole whole{};
};
template <class Check, class Whole = Unchecked>
constexpr Each<Check, Whole> each(Check check, Whole whole = {}) {
    return {check, whole};
}

// A double written as it is held (40.0 stays 40.0), for the fields that
// were always written so; json::number is the rule for money and measures.
struct AsDouble {
    void operator()(const Value&, double) const {}
    Json write(double x) const { return x; }
};
inline constexpr AsDouble asDouble{};

// A rule across fields, run at its place in the list while decoding; it
// writes nothing.
template <class F>
struct Rule {
    F check;
};
template <class F>
constexpr Rule<F> rule(F check) {
    return {check};
}

namespace detail {

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};

template <class T>
struct IsVector : std::false_type {};
template <class T>
struct IsVector<std::vector<T>> : std::true_type {};

template <class T>
struct IsSet : std::false_type {};
template <class T>
struct IsSet<std::set<T>> : std::true_type {};

template <class T>
struct IsEach : std::false_type {};
template <class Check, class Whole>
struct IsEach<Each<Check, Whole>> : std::true_type {};

template <class M, class Check>
M decodeChecked(const Value& value, const Check& check) {
    if constexpr (IsEach<Check>::value) {
        M out;  // no reserve: size() would fail a non-array with another message
        value.forEach([&](const Value& e) {
            auto x = e.as<typename M::value_type>();
            check.check(e, x);
            if constexpr (IsVector<M>::value) {
                out.push_back(std::move(x));
            } else {
                out.insert(std::move(x));
            }
        });
        check.whole(value, out);
        return out;
    } else {
        M x = value.as<M>();
        check(value, x);
        return x;
    }
}

template <class C, class M, class Check>
void decodeField(const Value& v, C& out, const Field<C, M, Check>& f) {
    if constexpr (IsOptional<M>::value) {
        const std::optional<Value> value = v.find(f.key);
        if (!value) {
            out.*f.member = std::nullopt;
            return;
        }
        out.*f.member = decodeChecked<typename M::value_type>(*value, f.check);
    } else {
        out.*f.member = decodeChecked<M>(v.field(f.key), f.check);
    }
}

template <class C, class F>
void decodeField(const Value& v, C& out, const Rule<F>& r) {
    r.check(v, out);
}

template <class M>
Json encodeValue(const M& x) {
    if constexpr (IsVector<M>::value || IsSet<M>::value) {
        Json out = Json::array();
        for (const auto& item : x) out.push_back(encodeValue(item));
        return out;
    } else {
        return encode(x);  // the record's own encoder, found by argument-dependent lookup
    }
}

template <class Check, class M>
Json encodeChecked(const Check& check, const M& x) {
    if constexpr (requires { check.write(x); }) {
        return check.write(x);
    } else {
        return encodeValue(x);
    }
}

template <class C, class M, class Check>
void encodeField(Json& out, const C& record, const Field<C, M, Check>& f) {
    const M& x = record.*f.member;
    if constexpr (IsOptional<M>::value) {
        if (x) out[f.key] = encodeChecked(f.check, *x);
    } else {
        out[f.key] = encodeChecked(f.check, x);
    }
}

template <class C, class F>
void encodeField(Json&, const C&, const Rule<F>&) {}

}  // namespace detail

template <Described T>
void decodeFields(const Value& v, T& out) {
    std::apply([&](const auto&... f) { (detail::decodeField(v, out, f), ...); }, Fields<T>::list);
    if constexpr (requires { Fields<T>::check(v, out); }) Fields<T>::check(v, out);
}

template <Described T>
Json encodeFields(const T& record) {
    Json out = Json::object();
    std::apply([&](const auto&... f) { (detail::encodeField(out, record, f), ...); },
               Fields<T>::list);
    return out;
}

}  // namespace tripkit::json

// The decoder and encoder a record's header declares, served by its field
// list; written inside the record's namespace, after the list.
#define TRIPKIT_JSON_DECODER(Type)                            \
    void decode(const ::tripkit::json::Value& v, Type& out) { \
        ::tripkit::json::decodeFields(v, out);                \
    }
#define TRIPKIT_JSON_ENCODER(Type)                     \
    ::tripkit::json::Json encode(const Type& record) { \
        return ::tripkit::json::encodeFields(record);  \
    }
#define TRIPKIT_JSON_CODEC(Type) \
    TRIPKIT_JSON_DECODER(Type)   \
    TRIPKIT_JSON_ENCODER(Type)

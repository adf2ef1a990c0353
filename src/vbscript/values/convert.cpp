// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/convert.h"

#include "vbscript/surroundings/errors.h"
#include "vbscript/values/calendar.h"
#include "vbscript/values/number_text.h"
#include "vbscript/values/object.h"
#include "vbscript/values/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace vbscript {

namespace {

constexpr double currencyScale = 10000.0;

std::u16string textOf(Runtime& rt, const Value& v) {
    switch (v.type) {
    case Type::Empty:
        return {};
    case Type::Boolean:
        return std::u16string(v.i ? rt.locale->yes : rt.locale->no);
    case Type::Single:
        return numberText(v.d, 7, rt.locale->decimal);
    case Type::Double:
        return numberText(v.d, 15, rt.locale->decimal);
    case Type::Currency:
        return currencyText(v.i, rt.locale->decimal);
    case Type::Date:
        return dateText(v.d, *rt.locale);
    case Type::Error:
        return u"Error " + wide(std::to_string(v.i));
    case Type::Null:
        throw Fault(errors::invalidNull);
    default:
        throw Fault(errors::typeMismatch);
    }
}

Value textOfWhole(std::int64_t n) {
    std::array<char, 20> digits{};
    const char* const end = std::to_chars(digits.begin(), digits.end(), n).ptr;
    const auto length = static_cast<std::size_t>(end - digits.data());
    Value text = Value::room(length, length);
    std::copy_n(digits.data(), length, text.s->chars());
    return text;
}

bool boolWord(const Value& v, const Locale& l, bool& b) {
    const auto t = v.chars();
    for (bool candidate : {true, false}) {
        const auto own = candidate ? l.yes : l.no;
        const auto english =
            candidate ? std::u16string_view(u"True") : std::u16string_view(u"False");
        // "#TRUE#" is how files that were written with Write # say it.
        const auto marked = candidate ? std::u16string_view(u"#TRUE#") : u"#FALSE#";
        if (compare(t, own, true) == 0 || compare(t, english, true) == 0 || t == marked) {
            b = candidate;
            return true;
        }
    }
    return false;
}

} // namespace

double roundEven(double v) { return std::nearbyint(v); }

std::int64_t fitLong(double v) {
    const double r = roundEven(v);
    if (!(r >= -2147483648.0 && r <= 2147483647.0)) throw Fault(errors::overflow);
    return static_cast<std::int64_t>(r);
}

double checkedDate(double days) {
    if (!(days >= firstDate && days < lastDate)) throw Fault(errors::overflow);
    return days;
}

Value plain(Runtime& rt, const Value& v) {
    if (v.is(Type::Object)) return rt.defaultOf(v);
    if (v.is(Type::Ref)) return *v.ref;
    return v;
}

bool isNumericType(Type t) {
    return t == Type::Integer || t == Type::Long || t == Type::Byte || t == Type::Single ||
           t == Type::Double || t == Type::Currency || t == Type::Boolean;
}

bool numberIn(Runtime& rt, const Value& v, double& n) {
    return v.is(Type::String) && parseNumber(v.chars(), *rt.locale, n);
}

bool dateIn(Runtime& rt, const Value& v, double& date) {
    return v.is(Type::String) && parseDate(v.chars(), *rt.locale, rt.world.wallClock().year, date);
}

double toDouble(Runtime& rt, const Value& v) {
    switch (v.type) {
    case Type::Empty:
        return 0;
    case Type::Integer:
    case Type::Long:
    case Type::Byte:
    case Type::Boolean:
        return static_cast<double>(v.i);
    case Type::Single:
    case Type::Double:
    case Type::Date:
        return v.d;
    case Type::Currency:
        return static_cast<double>(v.i) / currencyScale;
    case Type::Null:
        throw Fault(errors::invalidNull);
    case Type::String: {
        double n = 0;
        if (!parseNumber(v.chars(), *rt.locale, n)) throw Fault(errors::typeMismatch);
        return n;
    }
    case Type::Ref:
        return toDouble(rt, *v.ref);
    case Type::Object:
        return toDouble(rt, rt.defaultOf(v));
    default:
        throw Fault(errors::typeMismatch);
    }
}

std::int64_t toLong(Runtime& rt, const Value& v) {
    if (v.isInt()) return v.i;
    return fitLong(toDouble(rt, v));
}

std::int64_t toInteger(Runtime& rt, const Value& v) {
    const std::int64_t n = toLong(rt, v);
    if (n < -32768 || n > 32767) throw Fault(errors::overflow);
    return n;
}

std::int64_t toCurrency(Runtime& rt, const Value& v) {
    if (v.is(Type::Currency)) return v.i;
    const double scaled = roundEven(toDouble(rt, v) * currencyScale);
    if (!(std::fabs(scaled) < 9.2233720368547e18)) throw Fault(errors::overflow);
    return static_cast<std::int64_t>(scaled);
}

double toDate(Runtime& rt, const Value& v) {
    double date = 0;
    if (v.is(Type::Object)) return toDate(rt, rt.defaultOf(v));
    if (dateIn(rt, v, date)) return date;
    return checkedDate(toDouble(rt, v));
}

bool toBool(Runtime& rt, const Value& v) {
    if (v.is(Type::Boolean) || v.isInt() || v.is(Type::Byte)) return v.i != 0;
    bool b = false;
    if (v.is(Type::String) && boolWord(v, *rt.locale, b)) return b;
    if (v.is(Type::Object)) return toBool(rt, rt.defaultOf(v));
    return toDouble(rt, v) != 0;
}

bool isTrue(Runtime& rt, const Value& v) {
    if (v.is(Type::Boolean)) return v.i != 0;
    if (v.is(Type::Null)) return false;
    return toBool(rt, v);
}

Value toText(Runtime& rt, const Value& v) {
    if (v.is(Type::String)) return v;
    if (v.is(Type::Object)) return toText(rt, rt.defaultOf(v));
    if (v.is(Type::Ref)) return toText(rt, *v.ref);
    if (v.isInt() || v.is(Type::Byte)) return textOfWhole(v.i);
    return Value::string(textOf(rt, v));
}

Value joinable(Runtime& rt, const Value& v) {
    if (v.is(Type::Null)) return Value::string({});
    if (v.is(Type::Object)) return joinable(rt, rt.defaultOf(v));
    return toText(rt, v);
}

std::string typeNameOf(const Value& v) {
    switch (v.type) {
    case Type::Empty:
        return "Empty";
    case Type::Null:
        return "Null";
    case Type::Integer:
        return "Integer";
    case Type::Long:
        return "Long";
    case Type::Byte:
        return "Byte";
    case Type::Boolean:
        return "Boolean";
    case Type::Single:
        return "Single";
    case Type::Double:
        return "Double";
    case Type::Currency:
        return "Currency";
    case Type::Date:
        return "Date";
    case Type::Error:
        return "Error";
    case Type::String:
        return "String";
    case Type::Array:
        return "Variant()";
    case Type::Object:
        return v.o ? v.o->typeName() : "Nothing";
    default:
        return "Unknown";
    }
}

int varTypeOf(const Value& v) {
    switch (v.type) {
    case Type::Empty:
        return 0;
    case Type::Null:
        return 1;
    case Type::Integer:
        return 2;
    case Type::Long:
        return 3;
    case Type::Single:
        return 4;
    case Type::Double:
        return 5;
    case Type::Currency:
        return 6;
    case Type::Date:
        return 7;
    case Type::String:
        return 8;
    case Type::Object:
        return 9;
    case Type::Error:
        return 10;
    case Type::Boolean:
        return 11;
    case Type::Byte:
        return 17;
    default:
        return 8192 + 12;
    }
}

} // namespace vbscript

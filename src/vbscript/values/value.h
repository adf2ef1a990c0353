// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/surroundings/memory.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vbscript {

class Object;
struct ArrayData;

/// The subtypes of a value, plus the ones that never leave the engine (Ref, Lock). From String on a
/// value owns a share of what lies on the heap. The three that formulas are mostly made of come
/// first and 3 is unused, so that the bits of two types show at once whether both are among them.
enum class Type : std::uint8_t {
    Integer,
    Long,
    Double,
    Empty = 4,
    Null,
    Byte,
    Boolean,
    Single,
    Currency,
    Date,
    Error,
    Ref,
    String,
    Array,
    Object,
    Lock
};

/// Characters of a string, UTF-16 as scripts count them; shared, changed in place only by the sole
/// owner. Capacity doubles, so that appending one by one is linear.
struct StringData {
    std::uint32_t refs;
    std::uint32_t length;
    std::uint32_t capacity;
    Memory* account;
    char16_t* chars() { return reinterpret_cast<char16_t*>(this + 1); }
    static StringData* make(std::size_t length, std::size_t capacity);
    static void free(StringData* s);
};

/// One value of the language: 16 bytes, copied by counting references.
class Value {
  public:
    Type type = Type::Empty;
    union {
        std::int64_t
            i;    ///< Integer, Long, Byte, Boolean (-1, 0), Error; Currency in ten-thousandths
        double d; ///< Single, Double, Date (days since 1899-12-30)
        StringData* s;
        ArrayData* a;
        Object* o; ///< Null is Nothing
        Value* ref;
    };

    Value() noexcept : i(0) {}
    Value(const Value& v) noexcept : type(v.type), i(v.i) { share(); }
    Value(Value&& v) noexcept : type(v.type), i(v.i) { v.type = Type::Empty; }
    Value& operator=(const Value& v) noexcept {
        if (this != &v) {
            Value copy(v);
            swap(copy);
        }
        return *this;
    }
    Value& operator=(Value&& v) noexcept {
        if (this != &v) {
            Value taken(std::move(v));
            swap(taken);
        }
        return *this;
    }
    ~Value() {
        if (owns()) drop();
    }
    void swap(Value& v) noexcept {
        std::swap(type, v.type);
        std::swap(i, v.i);
    }
    void clear() noexcept {
        if (owns()) {
            Value gone(std::move(*this));
        } else {
            type = Type::Empty;
        }
    }

    static Value null() { return raw(Type::Null, 0); }
    static Value boolean(bool b) { return raw(Type::Boolean, b ? -1 : 0); }
    static Value integer(std::int64_t n) { return raw(Type::Integer, n); }
    static Value longint(std::int64_t n) { return raw(Type::Long, n); }
    static Value byte(std::int64_t n) { return raw(Type::Byte, n); }
    static Value currency(std::int64_t tenThousandths) {
        return raw(Type::Currency, tenThousandths);
    }
    static Value error(std::int64_t code) { return raw(Type::Error, code); }
    static Value missing();
    static Value real(double v) { return rawReal(Type::Double, v); }
    static Value single(double v) { return rawReal(Type::Single, static_cast<float>(v)); }
    static Value date(double days) { return rawReal(Type::Date, days); }
    static Value nothing() { return object(nullptr); }
    static Value object(Object* o); ///< Takes a further share of `o`.
    static Value array(ArrayData* a);
    static Value reference(Value* v);
    static Value string(std::u16string_view chars);
    static Value text(std::string_view utf8);
    /// A string whose characters the caller fills in; its only owner.
    static Value room(std::size_t length, std::size_t capacity);
    /// As a literal of this value in source: Integer, Long or Double, whichever is enough.
    static Value number(double v);
    static Value smallest(std::int64_t n); ///< Integer or Long; beyond, Double.

    [[nodiscard]] bool is(Type t) const { return type == t; }
    [[nodiscard]] bool owns() const { return type >= Type::String; }
    [[nodiscard]] bool isInt() const { return type <= Type::Long; }
    [[nodiscard]] bool isReal() const { return type == Type::Double; }
    [[nodiscard]] bool isMissing() const;
    /// The characters of a String; nothing else may be asked.
    [[nodiscard]] std::u16string_view chars() const { return {s->chars(), s->length}; }
    /// UTF-8 of a String ("" for other subtypes).
    [[nodiscard]] std::string utf8() const;

  private:
    static Value raw(Type t, std::int64_t n) {
        Value v;
        v.type = t;
        v.i = n;
        return v;
    }
    static Value rawReal(Type t, double n) {
        Value v;
        v.type = t;
        v.d = n;
        return v;
    }
    void share() const noexcept {
        if (type == Type::String)
            ++s->refs;
        else if (owns())
            shareHeap();
    }
    void shareHeap() const noexcept;
    void drop() noexcept;
};

static_assert(sizeof(Value) == 16);

/// An array: elements with the first dimension fastest. Shared between values until one of them
/// writes. A locked one has an element passed by reference and keeps its size.
struct ArrayData {
    std::uint32_t refs = 0;
    std::uint32_t locks = 0;
    bool fixed = false;
    Memory* account = nullptr;
    std::vector<std::uint32_t> extents; ///< Elements per dimension; empty: not dimensioned yet.
    std::vector<Value> items;
    std::size_t line = 0; ///< How many items, when there is one dimension; else 0.

    /// Throws Fault 7 or BudgetFault before allocating what does not fit.
    static ArrayData* make(std::vector<std::uint32_t> extents, bool fixed);
    static ArrayData* copyOf(const ArrayData& from);
    static void free(ArrayData* a);
    /// Changes the last extent and keeps the rest.
    void resizeLast(std::uint32_t extent);
    [[nodiscard]] static std::size_t bytesFor(const std::vector<std::uint32_t>& extents);
};

/// Gives the value in `v` (an Array) elements of its own before it is written to.
void makeUnique(Value& v);
/// A one-dimensional array of `items`.
Value arrayOf(std::vector<Value> items);
/// Appends in place when `target` is the only owner of a string; else makes a new one. How many
/// characters were copied.
std::size_t appendTo(Value& target, std::u16string_view more);
/// The same with the characters of several strings, at once.
std::size_t appendAll(Value& target, std::span<const Value> strings);

} // namespace vbscript

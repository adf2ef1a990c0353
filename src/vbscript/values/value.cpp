// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/value.h"

#include "vbscript/surroundings/errors.h"
#include "vbscript/surroundings/fault.h"
#include "vbscript/values/object.h"
#include "vbscript/values/text.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>

namespace vbscript {

namespace {

constexpr std::int64_t missingCode = -2147352572; // DISP_E_PARAMNOTFOUND, as scripts may see it

constexpr std::size_t overhead = 8; // of a piece of memory, by which short strings weigh more

// A long chain of objects is freed in a loop from this depth on, not by recursion.
constexpr int freeDepth = 50;
thread_local int freeing = 0;
thread_local std::vector<Value>* waiting = nullptr;

/// A charge to the current account that goes back unless what it is for gets made.
class Charge {
  public:
    explicit Charge(std::size_t bytes, int tooBig = errors::outOfMemory) : bytes_(bytes) {
        account_.take(bytes, tooBig);
    }
    ~Charge() {
        if (open_) account_.giveBack(bytes_);
    }
    Charge(const Charge&) = delete;
    Charge& operator=(const Charge&) = delete;
    Memory* settle() {
        open_ = false;
        return &account_;
    }

  private:
    Memory& account_ = Memory::current();
    std::size_t bytes_;
    bool open_ = true;
};

/// How many characters a string that has just grown to `length` gets room for: half as much again.
/// Near the budget half of what is left must do, so that others get some too and the string is
/// still not copied anew for every character; a last small rest it gets whole.
std::size_t roomToGrow(std::size_t length) {
    const std::size_t wanted = length + length / 2 + 8;
    const Memory& account = Memory::current();
    const std::size_t taken = account.used() + sizeof(StringData) + length * sizeof(char16_t);
    if (taken >= account.limit()) return length; // will not be granted
    const std::size_t left = (account.limit() - taken) / sizeof(char16_t);
    return std::min(wanted, length + (left < length / 16 ? left : left / 2));
}

} // namespace

StringData* StringData::make(std::size_t length, std::size_t capacity) {
    if (capacity > 0x7FFFFFF0U) throw Fault(errors::outOfStringSpace);
    const std::size_t bytes = sizeof(StringData) + capacity * sizeof(char16_t);
    Charge charge(bytes + overhead, errors::outOfStringSpace);
    auto* s = static_cast<StringData*>(::operator new(bytes));
    s->refs = 0;
    s->length = static_cast<std::uint32_t>(length);
    s->capacity = static_cast<std::uint32_t>(capacity);
    s->account = charge.settle();
    return s;
}

void StringData::free(StringData* s) {
    s->account->giveBack(sizeof(StringData) + s->capacity * sizeof(char16_t) + overhead);
    ::operator delete(s);
}

std::size_t ArrayData::bytesFor(const std::vector<std::uint32_t>& extents) {
    double count = extents.empty() ? 0 : 1;
    for (auto e : extents)
        count *= e;
    const double bytes = count * sizeof(Value) + sizeof(ArrayData);
    if (bytes > 1e15) throw Fault(errors::outOfMemory);
    return static_cast<std::size_t>(bytes);
}

ArrayData* ArrayData::make(std::vector<std::uint32_t> extents, bool fixed) {
    const std::size_t bytes = bytesFor(extents);
    Charge charge(bytes);
    auto a = std::make_unique<ArrayData>();
    a->fixed = fixed;
    a->items.resize((bytes - sizeof(ArrayData)) / sizeof(Value));
    a->extents = std::move(extents);
    if (a->extents.size() == 1) a->line = a->extents[0];
    a->account = charge.settle();
    return a.release();
}

ArrayData* ArrayData::copyOf(const ArrayData& from) {
    std::unique_ptr<ArrayData, void (*)(ArrayData*)> a(make(from.extents, from.fixed), free);
    a->items = from.items;
    for (auto& v : a->items) {
        if (v.is(Type::Array) && v.a->locks != 0) makeUnique(v);
    }
    return a.release();
}

void ArrayData::free(ArrayData* a) {
    const std::size_t bytes = bytesFor(a->extents);
    Memory* account = a->account;
    delete a;
    account->giveBack(bytes);
}

void ArrayData::resizeLast(std::uint32_t extent) {
    auto changed = extents;
    changed.back() = extent;
    const std::size_t before = bytesFor(extents);
    const std::size_t after = bytesFor(changed);
    const std::size_t count = (after - sizeof(ArrayData)) / sizeof(Value);
    // What goes may run code that looks at this array: it goes when the array is whole again.
    std::vector<Value> gone;
    if (count < items.size()) gone.reserve(items.size() - count);
    if (after > before) {
        account->grow(after - before);
        try {
            items.resize(count);
        } catch (...) {
            account->shrink(after - before);
            throw;
        }
    }
    for (std::size_t k = count; k < items.size(); ++k)
        gone.push_back(std::move(items[k]));
    items.resize(count);
    if (after < before) account->shrink(before - after);
    extents = std::move(changed);
    if (extents.size() == 1) line = extent;
}

Value Value::missing() { return error(missingCode); }
bool Value::isMissing() const { return type == Type::Error && i == missingCode; }

Value Value::object(Object* o) {
    Value v;
    v.type = Type::Object;
    v.o = o;
    v.share();
    return v;
}

Value Value::array(ArrayData* a) {
    Value v;
    v.type = Type::Array;
    v.a = a;
    v.share();
    return v;
}

Value Value::reference(Value* target) {
    Value v;
    v.type = Type::Ref;
    v.ref = target;
    return v;
}

// NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks): counted, not lost
Value Value::room(std::size_t length, std::size_t capacity) {
    StringData* s = StringData::make(length, capacity);
    s->refs = 1;
    Value v;
    v.type = Type::String;
    v.s = s;
    return v;
}
// NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)

Value Value::string(std::u16string_view chars) {
    Value v = Value::room(chars.size(), chars.size());
    if (!chars.empty()) std::memcpy(v.s->chars(), chars.data(), chars.size() * sizeof(char16_t));
    return v;
}

Value Value::text(std::string_view utf8) { return string(utf16(utf8)); }

Value Value::smallest(std::int64_t n) {
    if (n >= -32767 && n <= 32767) return integer(n);
    if (n >= -2147483647 && n <= 2147483647) return longint(n);
    return real(static_cast<double>(n));
}

Value Value::number(double v) {
    if (std::fabs(v) <= 2147483647.0 && v == std::trunc(v)) {
        return smallest(static_cast<std::int64_t>(v));
    }
    return real(v);
}

std::string Value::utf8() const {
    return is(Type::String) ? vbscript::utf8(chars()) : std::string();
}

void Value::shareHeap() const noexcept {
    switch (type) {
    case Type::Array:
        ++a->refs;
        break;
    case Type::Lock:
        ++a->refs;
        ++a->locks;
        break;
    default:
        if (o) o->share();
    }
}

void Value::drop() noexcept {
    if (type == Type::String) {
        if (--s->refs == 0) StringData::free(s);
        return;
    }
    if (type == Type::Lock) {
        --a->locks;
        type = Type::Array;
    }
    if (type == Type::Array ? a->refs != 1 : (!o || !o->last())) {
        if (type == Type::Array)
            --a->refs;
        else if (o)
            o->unshare();
        return;
    }
    if (freeing >= freeDepth && waiting) {
        try {
            waiting->emplace_back();
            waiting->back().swap(*this); // still one share: freed by the loop below
            return;
        } catch (const std::bad_alloc&) { // then by recursion
        }
    }
    std::vector<Value> later;
    const bool outermost = !waiting;
    if (outermost) waiting = &later;
    ++freeing;
    if (type == Type::Array)
        ArrayData::free(a);
    else
        Object::free(o);
    --freeing;
    if (!outermost) return;
    while (!later.empty()) {
        Value next(std::move(later.back()));
        later.pop_back();
    }
    waiting = nullptr;
}

void makeUnique(Value& v) {
    if (v.a->refs - v.a->locks > 1) v = Value::array(ArrayData::copyOf(*v.a));
}

Value arrayOf(std::vector<Value> items) {
    if (items.empty()) return Value::array(ArrayData::make({0}, false));
    Value v = Value::array(ArrayData::make({static_cast<std::uint32_t>(items.size())}, false));
    v.a->items = std::move(items);
    return v;
}

namespace {

// The old characters stay until `write` has put the new ones where they go: they may be the same.
template <class Write>
std::size_t grow(Value& target, std::size_t more, Write write) {
    if (more == 0) return 0;
    StringData* s = target.s;
    const std::size_t length = std::size_t{s->length} + more;
    if (s->refs == 1 && length <= s->capacity && s->account == &Memory::current()) {
        write(s->chars() + s->length);
        s->length = static_cast<std::uint32_t>(length);
        return more;
    }
    Value grown = Value::room(length, roomToGrow(length));
    if (s->length) std::memcpy(grown.s->chars(), s->chars(), s->length * sizeof(char16_t));
    write(grown.s->chars() + s->length);
    target.swap(grown);
    return length;
}

} // namespace

std::size_t appendTo(Value& target, std::u16string_view more) {
    return grow(target, more.size(), [more](char16_t* to) {
        std::memcpy(to, more.data(), more.size() * sizeof(char16_t));
    });
}

std::size_t appendAll(Value& target, std::span<const Value> strings) {
    std::size_t more = 0;
    for (const Value& v : strings)
        more += v.s->length;
    return grow(target, more, [strings](char16_t* to) {
        for (const Value& v : strings)
            to = std::copy_n(v.s->chars(), v.s->length, to);
    });
}

} // namespace vbscript

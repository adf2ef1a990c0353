// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/dictionary.h"

#include "vbscript/library/members.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/linked.h"
#include "vbscript/values/text.h"

#include <cstring>
#include <functional>

namespace vbscript {

namespace {

/// Keys in the order in which they came, found by hashing. Removed ones leave a gap until there
/// are more gaps than keys.
class Dictionary : public Native<Dictionary>, public Linked {
  public:
    explicit Dictionary(Linked& ring) : Linked(ring), account_(Memory::current()) {
        account_.grow(smallest);
    }
    ~Dictionary() override { account_.shrink(charged_ + smallest); }

    [[nodiscard]] std::string typeName() const override { return "Dictionary"; }
    static Members<Dictionary> members();
    bool elements(Runtime& rt, Value& list) override {
        list = listOf(rt, true);
        return true;
    }
    void breakUp() override { clear(); }

  private:
    struct Entry {
        Value key, item;
        std::size_t hash = 0;
        bool there = true;
    };
    static constexpr std::uint32_t free = UINT32_MAX;
    // Tables grow by doubling: on the average half as much again is set aside.
    static constexpr std::size_t cost = sizeof(Entry) * 3 / 2 + 6 * sizeof(std::uint32_t);
    static constexpr std::size_t smallest = 250;   // an empty one, beyond what every object weighs
    static constexpr std::size_t costOfEntry = 10; // of going over one, in the units of spend

    [[nodiscard]] std::size_t hashOf(const Value& key) const;
    [[nodiscard]] bool same(const Value& a, const Value& b) const;
    [[nodiscard]] std::uint32_t find(const Value& key, std::size_t hash) const;
    Entry& insert(Value key, std::size_t hash);
    void erase(std::uint32_t at);
    void rebuild(std::size_t slots);
    void clear();
    [[nodiscard]] Value listOf(Runtime& rt, bool keys) const;
    /// Where the key is that comes first, and its hash for when it has to be put there.
    struct Sought {
        std::uint32_t at;
        std::size_t hash;
    };
    [[nodiscard]] Sought sought(Arguments args) const;

    Value item(Runtime& rt, Arguments args);
    void letItem(Runtime& rt, Arguments args);
    void setItem(Runtime& rt, Arguments args);
    Value exists(Runtime& /*rt*/, Arguments args) {
        return Value::boolean(sought(args).at != free);
    }
    Value add(Runtime& rt, Arguments args);
    Value remove(Runtime& rt, Arguments args);
    Value removeAll(Runtime& /*rt*/, Arguments /*none*/) {
        clear();
        return {};
    }
    Value count(Runtime& /*rt*/, Arguments /*none*/) {
        return Value::longint(static_cast<std::int64_t>(count_));
    }
    Value keys(Runtime& rt, Arguments /*none*/) { return listOf(rt, true); }
    Value items(Runtime& rt, Arguments /*none*/) { return listOf(rt, false); }
    Value compareMode(Runtime& /*rt*/, Arguments /*none*/) {
        return Value::longint(asText_ ? 1 : 0);
    }
    void setCompareMode(Runtime& rt, Arguments args);
    void rename(Runtime& rt, Arguments args);

    std::vector<Entry> entries_;
    std::vector<std::uint32_t> slots_;
    std::size_t count_ = 0;
    bool asText_ = false;
    Memory& account_;
    std::size_t charged_ = 0;
};

Members<Dictionary> Dictionary::members() {
    using D = Dictionary;
    static constexpr MemberOf<D> all[] = {
        {Word::Item, {1, 1}, &D::item, &D::letItem, &D::setItem},
        {Word::Exists, {1, 1}, &D::exists},
        {Word::Add, {2, 2}, &D::add},
        {Word::Remove, {1, 1}, &D::remove},
        {Word::Count, {0, 0}, &D::count},
        {Word::Keys, {0, 0}, &D::keys},
        {Word::Items, {0, 0}, &D::items},
        {Word::RemoveAll, {0, 0}, &D::removeAll},
        {Word::Key, {1, 1}, nullptr, &D::rename, &D::rename},
        {Word::CompareMode, {0, 0}, &D::compareMode, &D::setCompareMode},
    };
    return {Word::Item, all};
}

bool isNumber(const Value& v) { return isNumericType(v.type) || v.is(Type::Date); }

double numberOf(const Value& v) {
    if (v.is(Type::Currency)) return static_cast<double>(v.i) / 10000.0;
    const bool whole = v.isInt() || v.is(Type::Byte) || v.is(Type::Boolean);
    return whole ? static_cast<double>(v.i) : v.d;
}

std::size_t Dictionary::hashOf(const Value& key) const {
    if (key.is(Type::String)) {
        if (asText_) return std::hash<std::u16string_view>()(lowered(key.chars()));
        return std::hash<std::u16string_view>()(key.chars());
    }
    if (isNumber(key)) return std::hash<double>()(numberOf(key));
    if (key.is(Type::Object)) return std::hash<const void*>()(key.o);
    return static_cast<std::size_t>(key.type);
}

bool Dictionary::same(const Value& a, const Value& b) const {
    if (a.is(Type::String) || b.is(Type::String)) {
        return a.type == b.type && compare(a.chars(), b.chars(), asText_) == 0;
    }
    if (isNumber(a) || isNumber(b)) return isNumber(a) && isNumber(b) && numberOf(a) == numberOf(b);
    return a.type == b.type && (!a.is(Type::Object) || a.o == b.o);
}

std::uint32_t Dictionary::find(const Value& key, std::size_t hash) const {
    if (slots_.empty()) return free;
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t k = hash & mask;; k = (k + 1) & mask) {
        const std::uint32_t at = slots_[k];
        if (at == free) return free;
        const Entry& e = entries_[at];
        if (e.there && e.hash == hash && same(e.key, key)) return at;
    }
}

void Dictionary::rebuild(std::size_t slots) {
    std::vector<std::uint32_t> fresh(slots, free);
    std::vector<Entry> kept;
    kept.reserve(count_);
    for (Entry& e : entries_) {
        if (e.there) kept.push_back(std::move(e));
    }
    entries_ = std::move(kept);
    slots_ = std::move(fresh);
    for (std::size_t n = 0; n < entries_.size(); ++n) {
        std::size_t k = entries_[n].hash & (slots - 1);
        while (slots_[k] != free)
            k = (k + 1) & (slots - 1);
        slots_[k] = static_cast<std::uint32_t>(n);
    }
    // What was removed weighs no more.
    account_.shrink(charged_ - entries_.size() * cost);
    charged_ = entries_.size() * cost;
}

Dictionary::Entry& Dictionary::insert(Value key, std::size_t hash) {
    if ((entries_.size() + 1) * 2 > slots_.size()) {
        std::size_t slots = 16;
        while (slots < (count_ + 1) * 4)
            slots *= 2;
        rebuild(slots);
    }
    account_.grow(cost);
    charged_ += cost;
    std::size_t k = hash & (slots_.size() - 1);
    while (slots_[k] != free)
        k = (k + 1) & (slots_.size() - 1);
    Entry& e = entries_.emplace_back();
    slots_[k] = static_cast<std::uint32_t>(entries_.size() - 1);
    ++count_;
    e.key = std::move(key);
    e.hash = hash;
    return e;
}

void Dictionary::erase(std::uint32_t at) {
    Entry& e = entries_[at];
    e.there = false;
    --count_;
    // What goes may run code that comes back here.
    const Value key = std::move(e.key);
    const Value item = std::move(e.item);
}

void Dictionary::clear() {
    std::vector<Entry> gone;
    gone.swap(entries_);
    slots_.clear();
    count_ = 0;
    account_.shrink(charged_);
    charged_ = 0;
}

Value Dictionary::listOf(Runtime& rt, bool keys) const {
    rt.spend(entries_.size() * costOfEntry);
    std::vector<Value> all;
    all.reserve(count_);
    for (const Entry& e : entries_) {
        if (e.there) all.push_back(keys ? e.key : e.item);
    }
    return arrayOf(std::move(all));
}

void Dictionary::rename(Runtime& rt, Arguments args) {
    rt.spend(entries_.size() * costOfEntry);
    if (args[0].is(Type::Array)) throw Fault(errors::invalidCall);
    const std::uint32_t from = find(args[0], hashOf(args[0]));
    if (from == free) throw Fault(errors::elementNotFound);
    const std::size_t hash = hashOf(args[1]);
    if (find(args[1], hash) != free) throw Fault(errors::keyExists);
    if (args[1].is(Type::Array)) throw Fault(errors::invalidCall);
    entries_[from].key = args[1];
    entries_[from].hash = hash;
    rebuild(slots_.size());
}

Dictionary::Sought Dictionary::sought(Arguments args) const {
    if (args[0].is(Type::Array)) throw Fault(errors::invalidCall);
    const std::size_t hash = hashOf(args[0]);
    return {find(args[0], hash), hash};
}

Value Dictionary::item(Runtime& /*rt*/, Arguments args) {
    const auto [at, hash] = sought(args);
    return at == free ? insert(args[0], hash).item : entries_[at].item;
}

void Dictionary::setItem(Runtime& /*rt*/, Arguments args) {
    const auto [at, hash] = sought(args);
    Value item = args[1];
    Entry& e = at == free ? insert(args[0], hash) : entries_[at];
    e.item.swap(item); // so that what goes, which may run code that comes back here, goes last
}

void Dictionary::letItem(Runtime& rt, Arguments args) {
    if (args[1].is(Type::Object)) {
        Value item = rt.defaultOf(args[1]);
        args[1].swap(item);
    }
    setItem(rt, args);
}

Value Dictionary::add(Runtime& /*rt*/, Arguments args) {
    const auto [at, hash] = sought(args);
    if (at != free) throw Fault(errors::keyExists);
    insert(args[0], hash).item = args[1];
    return {};
}

Value Dictionary::remove(Runtime& /*rt*/, Arguments args) {
    const std::uint32_t at = sought(args).at;
    if (at == free) throw Fault(errors::elementNotFound);
    erase(at);
    return {};
}

void Dictionary::setCompareMode(Runtime& rt, Arguments args) {
    const std::int64_t mode = toLong(rt, args[0]);
    if (count_ != 0 || mode < 0 || mode > 2) throw Fault(errors::invalidCall);
    asText_ = mode != 0;
    clear();
}

} // namespace

Value makeDictionary(Runtime& rt) { return Value::object(new Dictionary(rt.ring())); }

} // namespace vbscript

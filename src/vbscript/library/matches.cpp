// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/matches.h"

#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"

namespace vbscript {

namespace {

/// A read-only list: Count, Item (default), For Each.
class List : public Object {
  public:
    List(const char* name, Value items) : name_(name), items_(std::move(items)) {}
    [[nodiscard]] std::string typeName() const override { return name_; }
    void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                Value& result) override {
        if (how == Access::Let || how == Access::Set) throw Fault(errors::noSuchMember);
        const auto& all = items_.a->items;
        if (wordOf(member) == Word::Count) {
            result = Value::longint(static_cast<std::int64_t>(all.size()));
        } else if (member == 0 || wordOf(member) == Word::Item) {
            if (args.size() != 1) throw Fault(errors::wrongArguments);
            const std::int64_t k = toLong(rt, args[0]);
            if (k < 0 || k >= static_cast<std::int64_t>(all.size()))
                throw Fault(errors::invalidCall);
            result = all[static_cast<std::size_t>(k)];
        } else {
            throw Fault(errors::noSuchMember);
        }
    }
    bool elements(Runtime&, Value& list) override {
        list = items_;
        return true;
    }

  private:
    const char* name_;
    Value items_;
};

class Match : public Object {
  public:
    Match(Value text, std::size_t at, Value groups)
        : text_(std::move(text)), at_(at), groups_(std::move(groups)) {}
    [[nodiscard]] std::string typeName() const override { return "IMatch2"; }
    void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                Value& result) override {
        if (how == Access::Let || how == Access::Set) throw Fault(errors::noSuchMember);
        if (!args.empty() && wordOf(member) == Word::SubMatches) {
            groups_.o->access(rt, 0, how, args, result);
            return;
        }
        if (!args.empty()) throw Fault(errors::wrongArguments);
        switch (member == 0 ? Word::Value : wordOf(member)) {
        case Word::Value:
            result = text_;
            return;
        case Word::FirstIndex:
            result = Value::longint(static_cast<std::int64_t>(at_));
            return;
        case Word::Length:
            result = Value::longint(static_cast<std::int64_t>(text_.chars().size()));
            return;
        case Word::SubMatches:
            result = groups_;
            return;
        default:
            throw Fault(errors::noSuchMember);
        }
    }

  private:
    Value text_;
    std::size_t at_;
    Value groups_;
};

std::u16string_view groupText(std::u16string_view text, const Found& f, std::size_t n) {
    const auto& [at, length] = f.groups[n - 1];
    return at == Found::unset ? std::u16string_view() : text.substr(at, length);
}

bool isDigit(char16_t c) { return c >= '0' && c <= '9'; }

} // namespace

Value makeMatch(const Value& text, const Found& f) {
    std::vector<Value> groups;
    for (const auto& [at, length] : f.groups) {
        groups.push_back(at == Found::unset ? Value()
                                            : Value::string(text.chars().substr(at, length)));
    }
    Value list = Value::object(new List("ISubMatches", arrayOf(std::move(groups))));
    return Value::object(
        new Match(Value::string(text.chars().substr(f.at, f.length)), f.at, std::move(list)));
}

Value makeMatches(std::vector<Value> all) {
    return Value::object(new List("IMatchCollection2", arrayOf(std::move(all))));
}

void appendReplacement(Value& out, std::u16string_view text, const Found& f,
                       std::u16string_view with) {
    std::size_t k = 0;
    while (k < with.size()) {
        const std::size_t dollar = with.find(u'$', k);
        appendTo(out, with.substr(k, dollar == std::u16string_view::npos ? dollar : dollar - k));
        if (dollar == std::u16string_view::npos) return;
        const char16_t c = dollar + 1 < with.size() ? with[dollar + 1] : u'\0';
        k = dollar + 2;
        if (c == '&') {
            appendTo(out, text.substr(f.at, f.length));
        } else if (c == '`') {
            appendTo(out, text.substr(0, f.at));
        } else if (c == '\'') {
            appendTo(out, text.substr(f.at + f.length));
        } else if (c == '$') {
            appendTo(out, u"$");
        } else {
            std::size_t n = isDigit(c) ? static_cast<std::size_t>(c - '0') : 0;
            if (n != 0 && k < with.size() && isDigit(with[k]) &&
                n * 10 + (with[k] - u'0') <= f.groups.size()) {
                n = n * 10 + (with[k++] - u'0');
            }
            if (n != 0 && n <= f.groups.size()) {
                appendTo(out, groupText(text, f, n));
            } else {
                appendTo(out, u"$");
                k = dollar + 1;
            }
        }
    }
}

} // namespace vbscript

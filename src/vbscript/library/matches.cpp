// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/matches.h"

#include "vbscript/library/members.h"
#include "vbscript/values/convert.h"

namespace vbscript {

namespace {

/// A read-only list: Count, Item (default), For Each.
class List : public Native<List> {
  public:
    List(const char* name, Value items) : name_(name), items_(std::move(items)) {}
    [[nodiscard]] std::string typeName() const override { return name_; }
    bool elements(Runtime&, Value& list) override {
        list = items_;
        return true;
    }
    static Members<List> members() {
        static constexpr MemberOf<List> all[] = {
            {Word::Item, {1, 1}, &List::item},
            {Word::Count, {0, 0}, &List::count},
        };
        return {Word::Item, all};
    }

  private:
    Value item(Runtime& rt, Arguments args) {
        const auto& all = items_.a->items;
        const std::int64_t k = toLong(rt, args[0]);
        if (k < 0 || k >= static_cast<std::int64_t>(all.size())) throw Fault(errors::invalidCall);
        return all[static_cast<std::size_t>(k)];
    }
    Value count(Runtime& /*rt*/, Arguments /*none*/) {
        return Value::longint(static_cast<std::int64_t>(items_.a->items.size()));
    }

    const char* name_;
    Value items_;
};

class Match : public Native<Match> {
  public:
    Match(Value text, std::size_t at, Value groups)
        : text_(std::move(text)), at_(at), groups_(std::move(groups)) {}
    [[nodiscard]] std::string typeName() const override { return "IMatch2"; }
    static Members<Match> members() {
        static constexpr MemberOf<Match> all[] = {
            {Word::Value, {0, 0}, &Match::value},
            {Word::SubMatches, {0, 1}, &Match::subMatches},
            {Word::FirstIndex, {0, 0}, &Match::firstIndex},
            {Word::Length, {0, 0}, &Match::length},
        };
        return {Word::Value, all};
    }

  private:
    Value value(Runtime& /*rt*/, Arguments /*none*/) { return text_; }
    Value firstIndex(Runtime& /*rt*/, Arguments /*none*/) {
        return Value::longint(static_cast<std::int64_t>(at_));
    }
    Value length(Runtime& /*rt*/, Arguments /*none*/) {
        return Value::longint(static_cast<std::int64_t>(text_.chars().size()));
    }
    Value subMatches(Runtime& rt, Arguments args) {
        Value result = groups_;
        if (!args.empty()) groups_.o->access(rt, 0, Access::Get, args, result);
        return result;
    }

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

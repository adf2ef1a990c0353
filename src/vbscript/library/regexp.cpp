// SPDX-License-Identifier: Apache-2.0
#define PCRE2_CODE_UNIT_WIDTH 8
#include "vbscript/library/regexp.h"

#include "vbscript/library/matches.h"
#include "vbscript/library/members.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <pcre2.h>
#include <utility>

namespace vbscript {

namespace {

constexpr std::uint32_t mostSteps = 2'000'000; // from one place in the text: a fraction of a second
constexpr std::size_t bytesPerLook =
    16'000'000;                        // gone over between two looks at the clock, at most
constexpr std::size_t costOfStep = 10; // in the units of Runtime::spend
constexpr std::size_t costOfPattern = 100;
constexpr std::size_t costOfByte = 4;
constexpr std::size_t costOfMatch = 200;
constexpr std::size_t costOfGroup = 100;
constexpr std::uint32_t mostHeapKib = 16 * 1024;
constexpr std::size_t longestPattern = std::size_t{32} << 10;

struct FreeCode {
    void operator()(pcre2_code* c) const { pcre2_code_free(c); }
};
struct FreeData {
    void operator()(pcre2_match_data* d) const { pcre2_match_data_free(d); }
};
struct FreeContext {
    void operator()(pcre2_match_context* c) const { pcre2_match_context_free(c); }
};
struct FreeCompile {
    void operator()(pcre2_compile_context* c) const { pcre2_compile_context_free(c); }
};

int faultOf(int error) {
    switch (error) {
    case 106:
        return errors::patternBracketExpected; // missing terminating ]
    case 108:
        return errors::invalidCharacterRange; // range out of order in a class
    case 109:
        return errors::unexpectedQuantifier; // quantifier does not follow a repeatable item
    case 114:
        return errors::patternParenExpected; // missing closing parenthesis
    default:
        return errors::patternSyntax;
    }
}

/// Offsets in UTF-8 as offsets in characters: known every so many bytes, counted in between.
class Subject {
  public:
    Subject(Runtime& rt, std::u16string_view text)
        : bytes_(utf8(text)), ascii_(bytes_.size() == text.size()) {
        rt.spend(bytes_.size() * costOfByte);
        if (ascii_) return;
        std::uint32_t chars = 0;
        for (std::size_t k = 0; k < bytes_.size(); ++k) {
            if (k % stride == 0) marks_.push_back(chars);
            chars += units(bytes_[k]);
        }
        marks_.push_back(chars);
    }
    [[nodiscard]] const std::string& bytes() const { return bytes_; }
    [[nodiscard]] std::size_t charAt(std::size_t byte) const {
        if (ascii_) return byte;
        std::size_t chars = marks_[byte / stride];
        for (std::size_t k = byte / stride * stride; k < byte; ++k)
            chars += units(bytes_[k]);
        return chars;
    }
    [[nodiscard]] std::size_t next(std::size_t byte) const {
        ++byte;
        while (byte < bytes_.size() && units(bytes_[byte]) == 0)
            ++byte;
        return byte;
    }

  private:
    static constexpr std::size_t stride = 64;
    static std::uint32_t units(char c) {
        const auto b = static_cast<unsigned char>(c);
        return b >= 0xF0 ? 2 : (b & 0xC0) == 0x80 ? 0 : 1;
    }
    std::string bytes_;
    bool ascii_;
    std::vector<std::uint32_t> marks_;
};

class RegExp : public Native<RegExp> {
  public:
    ~RegExp() override { forget(); }
    [[nodiscard]] std::string typeName() const override { return "IRegExp2"; }
    static Members<RegExp> members();

  private:
    void compile(Runtime& rt);
    void forget();
    bool match(Runtime& rt, const Subject& subject, std::size_t from);
    [[nodiscard]] Found found(const Subject& subject) const;
    template <class Each>
    void every(Runtime& rt, const Subject& subject, Each each);

    Value test(Runtime& rt, Arguments args);
    Value execute(Runtime& rt, Arguments args);
    Value replace(Runtime& rt, Arguments args);
    Value pattern(Runtime& /*rt*/, Arguments /*none*/) { return Value::string(pattern_); }
    void setPattern(Runtime& rt, Arguments args) {
        pattern_ = std::u16string(toText(rt, args[0]).chars());
        forget();
    }
    template <bool RegExp::*Option>
    Value option(Runtime& /*rt*/, Arguments /*none*/) {
        return Value::boolean(this->*Option);
    }
    void setGlobal(Runtime& rt, Arguments args) { global_ = toBool(rt, args[0]); }
    /// One that the compiled pattern depends on.
    template <bool RegExp::*Option>
    void setOption(Runtime& rt, Arguments args) {
        this->*Option = toBool(rt, args[0]);
        forget();
    }

    std::u16string pattern_;
    bool global_ = false, ignoreCase_ = false, multiline_ = false;
    std::unique_ptr<pcre2_code, FreeCode> code_;
    std::unique_ptr<pcre2_match_data, FreeData> data_;
    std::unique_ptr<pcre2_match_context, FreeContext> context_;
    std::uint32_t groups_ = 0;
    Memory& account_ = Memory::current();
    std::size_t charged_ = 0;
};

Members<RegExp> RegExp::members() {
    using R = RegExp;
    static constexpr MemberOf<R> all[] = {
        {Word::Test, {1, 1}, &R::test},
        {Word::Execute, {1, 1}, &R::execute},
        {Word::Replace, {2, 2}, &R::replace},
        {Word::Pattern, {0, 0}, &R::pattern, &R::setPattern},
        {Word::Global, {0, 0}, &R::option<&R::global_>, &R::setGlobal},
        {Word::IgnoreCase, {0, 0}, &R::option<&R::ignoreCase_>, &R::setOption<&R::ignoreCase_>},
        {Word::Multiline, {0, 0}, &R::option<&R::multiline_>, &R::setOption<&R::multiline_>},
    };
    return {Word::None, all};
}

void RegExp::forget() {
    code_.reset();
    account_.shrink(charged_);
    charged_ = 0;
}

void RegExp::compile(Runtime& rt) {
    if (code_) return;
    if (pattern_.size() > longestPattern) throw Fault(errors::outOfMemory);
    rt.spend(pattern_.size() * costOfPattern);
    const std::string pattern = translatePattern(pattern_);
    const std::unique_ptr<pcre2_compile_context, FreeCompile> context(
        pcre2_compile_context_create(nullptr));
    if (!context) throw Fault(errors::outOfMemory);
    pcre2_set_newline(context.get(), PCRE2_NEWLINE_LF);
    std::uint32_t options = PCRE2_UTF | PCRE2_ALT_BSUX | PCRE2_MATCH_UNSET_BACKREF |
                            PCRE2_ALLOW_EMPTY_CLASS | PCRE2_NEVER_BACKSLASH_C;
    if (ignoreCase_) options |= PCRE2_CASELESS;
    options |= multiline_ ? PCRE2_MULTILINE : PCRE2_DOLLAR_ENDONLY;
    int error = 0;
    PCRE2_SIZE at = 0;
    code_.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), options,
                              &error, &at, context.get()));
    if (!code_) throw Fault(faultOf(error));
    data_.reset(pcre2_match_data_create_from_pattern(code_.get(), nullptr));
    context_.reset(pcre2_match_context_create(nullptr));
    if (!data_ || !context_) {
        code_.reset();
        throw Fault(errors::outOfMemory);
    }
    pcre2_set_match_limit(context_.get(), mostSteps);
    pcre2_set_heap_limit(context_.get(), mostHeapKib);
    pcre2_pattern_info(code_.get(), PCRE2_INFO_CAPTURECOUNT, &groups_);
    std::size_t size = 0;
    pcre2_pattern_info(code_.get(), PCRE2_INFO_SIZE, &size);
    try {
        account_.grow(size);
    } catch (...) {
        code_.reset();
        throw;
    }
    charged_ = size;
}

/// Asked at the marks that the translated pattern has wherever much may begin anew. What lies
/// between two of them goes over all of the text or all of the pattern at most, so that after so
/// many the clock is due.
class Watch {
  public:
    Watch(Runtime& rt, std::size_t text, std::size_t pattern)
        : rt_(rt), most_(text + pattern + 1), every_(bytesPerLook / most_ + 1), left_(every_) {}
    static int mark(pcre2_callout_block* block, void* self) {
        return static_cast<Watch*>(self)->passed(block->current_position);
    }
    /// The attempt is over. Throws what made it end.
    void ended() {
        if (thrown_) std::rethrow_exception(thrown_);
        rt_.spend(units_);
        if ((every_ - left_) * most_ > bytesPerLook / 10) rt_.checkTime();
    }

  private:
    int passed(std::size_t at) noexcept {
        units_ += costOfStep + (at > at_ ? at - at_ : 0);
        at_ = at;
        if (--left_ > 0) return 0;
        left_ = every_;
        try {
            rt_.spend(std::exchange(units_, 0));
            rt_.checkTime();
            return 0;
        } catch (...) { // must not pass through the matcher
            thrown_ = std::current_exception();
            return PCRE2_ERROR_CALLOUT;
        }
    }

    Runtime& rt_;
    std::size_t most_;
    std::size_t every_, left_;
    std::size_t units_ = 0, at_ = 0;
    std::exception_ptr thrown_;
};

bool RegExp::match(Runtime& rt, const Subject& subject, std::size_t from) {
    const std::string& bytes = subject.bytes();
    Watch watch(rt, bytes.size(), pattern_.size());
    pcre2_set_callout(context_.get(), Watch::mark, &watch);
    const int r = pcre2_match(code_.get(), reinterpret_cast<PCRE2_SPTR>(bytes.data()), bytes.size(),
                              from, PCRE2_NO_UTF_CHECK, data_.get(), context_.get());
    watch.ended();
    if (r >= 0) return true;
    if (r == PCRE2_ERROR_NOMATCH) return false;
    throw Fault(errors::outOfMemory, "Out of memory: regular expression too complex");
}

Found RegExp::found(const Subject& subject) const {
    const PCRE2_SIZE* at = pcre2_get_ovector_pointer(data_.get());
    Found f;
    f.at = subject.charAt(at[0]);
    f.length = subject.charAt(std::max(at[0], at[1])) - f.at;
    for (std::size_t g = 1; g <= groups_; ++g) {
        if (at[2 * g] == PCRE2_UNSET) {
            f.groups.push_back({Found::unset, 0});
        } else {
            const std::size_t start = subject.charAt(at[2 * g]);
            f.groups.push_back({start, subject.charAt(at[2 * g + 1]) - start});
        }
    }
    return f;
}

template <class Each>
void RegExp::every(Runtime& rt, const Subject& subject, Each each) {
    compile(rt);
    std::size_t from = 0;
    while (from <= subject.bytes().size() && match(rt, subject, from)) {
        const PCRE2_SIZE* at = pcre2_get_ovector_pointer(data_.get());
        const std::size_t start = at[0];
        const std::size_t end = std::max(at[0], at[1]);
        each(found(subject));
        rt.spend(costOfMatch + costOfGroup * groups_);
        if (!global_) return;
        from = end > start ? end : subject.next(end);
    }
}

// Here and below: arguments become texts first, which may run code that changes the pattern.
Value RegExp::test(Runtime& rt, Arguments args) {
    const Subject subject(rt, toText(rt, args[0]).chars());
    compile(rt);
    return Value::boolean(match(rt, subject, 0));
}

Value RegExp::execute(Runtime& rt, Arguments args) {
    const Value text = toText(rt, args[0]);
    const Subject subject(rt, text.chars());
    std::vector<Value> all;
    every(rt, subject, [&](const Found& f) { all.push_back(makeMatch(text, f)); });
    return makeMatches(std::move(all));
}

Value RegExp::replace(Runtime& rt, Arguments args) {
    const Value text = toText(rt, args[0]);
    const Value with = toText(rt, args[1]);
    const Subject subject(rt, text.chars());
    Value out = Value::string({});
    std::size_t done = 0;
    every(rt, subject, [&](const Found& f) {
        appendTo(out, text.chars().substr(done, f.at - done));
        appendReplacement(out, text.chars(), f, with.chars());
        done = f.at + f.length;
    });
    appendTo(out, text.chars().substr(done));
    return out;
}

} // namespace

Value makeRegExp() { return Value::object(new RegExp); }

} // namespace vbscript

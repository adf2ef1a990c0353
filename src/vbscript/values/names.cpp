// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/names.h"

#include "vbscript/values/text.h"

#include <algorithm>
#include <array>

namespace vbscript {

namespace {

#define VBS_WORD(w) #w,
constexpr std::array words{VBS_KEYWORDS(VBS_WORD) VBS_NAMES(VBS_WORD)};
#undef VBS_WORD

constexpr std::size_t keywords = static_cast<std::size_t>(Word::LastKeyword);

bool isLetter(char c) { return lowerAscii(c) >= 'a' && lowerAscii(c) <= 'z'; }

bool sameText(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return lowerAscii(x) == lowerAscii(y);
           });
}

} // namespace

Names::Names() {
    constexpr std::size_t usual = 1024; // the language's own and those of a script
    atoms_.reserve(usual);
    texts_.emplace_back();
    for (const char* w : words)
        of(w);
}

std::size_t Names::Hash::operator()(std::string_view s) const {
    std::size_t h = 1469598103934665603ULL;
    for (char c : s)
        h = (h ^ static_cast<unsigned char>(lowerAscii(c))) * 1099511628211ULL;
    return h;
}

bool Names::Same::operator()(std::string_view a, std::string_view b) const {
    return sameText(a, b);
}

Atom Names::of(std::string_view name) {
    const auto at = atoms_.find(name);
    if (at != atoms_.end()) return at->second;
    // Names are never given up: a script that makes new ones without end has to run into its
    // budget.
    constexpr std::size_t bookkeeping = 120;
    Memory::current().grow(name.size() + bookkeeping);
    const auto a = static_cast<Atom>(texts_.size());
    texts_.emplace_back(name);
    atoms_.emplace(texts_.back(), a);
    return a;
}

Atom Names::known(std::string_view name) const {
    const auto at = atoms_.find(name);
    return at == atoms_.end() ? 0 : at->second;
}

bool isIdentifier(std::string_view name) {
    if (name.empty() || name.size() > longestName || !isLetter(name[0])) return false;
    const bool shaped = std::all_of(name.begin(), name.end(), [](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '_';
    });
    return shaped && std::none_of(words.begin(), words.begin() + keywords,
                                  [&](const char* w) { return sameText(name, w); });
}

} // namespace vbscript

// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/object.h"
#include "vbscript/values/words.h"

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

namespace vbscript {

/// Gives every name a number, the same for all letter cases (ASCII only: other letters are not
/// allowed in names, except in [brackets]). Numbers are never taken back.
class Names {
  public:
    Names();
    Atom of(std::string_view name);
    /// The number of a name that was used before; 0 otherwise.
    [[nodiscard]] Atom known(std::string_view name) const;
    /// As it was first written.
    [[nodiscard]] const std::string& text(Atom a) const { return texts_[a]; }
    [[nodiscard]] std::size_t count() const { return texts_.size(); }

  private:
    struct Hash {
        std::size_t operator()(std::string_view s) const;
    };
    struct Same {
        bool operator()(std::string_view a, std::string_view b) const;
    };
    std::deque<std::string> texts_;
    std::unordered_map<std::string_view, Atom, Hash, Same> atoms_;
};

constexpr Atom atomOf(Word w) { return static_cast<Atom>(w); }
constexpr Word wordOf(Atom a) { return static_cast<Word>(a); } ///< Meaningful for the known words.
constexpr bool isKeyword(Atom a) { return a >= 1 && a <= atomOf(Word::LastKeyword); }

/// A letter, then letters, digits and "_"; at most 255 characters; no reserved word.
bool isIdentifier(std::string_view name);
inline constexpr std::size_t longestName = 255;

} // namespace vbscript

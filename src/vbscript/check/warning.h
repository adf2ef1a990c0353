// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vbscript {

/// What compiles and is hardly meant.
struct Warning {
    enum class Kind : std::uint8_t {
        NeverAssigned, ///< `name` is read and gets no value anywhere
        UnknownMember, ///< `object` has no member `name`
        DeclaredTwice, ///< `name` is declared here and on line `firstLine`
        Unreachable    ///< nothing comes to here: an Exit stands before it
    };
    Kind kind = Kind::NeverAssigned;
    int line = 0; ///< counted from 1, like `column`
    int column = 0;
    std::string name;
    std::string object;
    std::string nearest; ///< the known name that it looks like; empty if no name does
    int firstLine = 0;
};

/// A text literal, for a host that knows what it may name.
struct LiteralUse {
    std::string text; ///< UTF-8, at most `longestUse` bytes: longer ones are left out
    int line = 0;
    int column = 0;
    /// Where it is the first argument of a known object's member: both as the host writes them.
    std::string object, member;
};
inline constexpr std::size_t longestUse = 255;

/// What a script may use beside what it and the language bring.
struct Known {
    std::vector<std::string> names;
    /// Whether a name that is not listed is known all the same; may be empty.
    std::function<bool(std::string_view)> also;
    struct Object {
        std::string name;
        std::vector<std::string> members;
    };
    std::vector<Object> objects;
};

struct Findings {
    std::vector<Warning> warnings;    ///< by place; the first `mostWarnings`
    std::vector<LiteralUse> literals; ///< in no promised order; at most `mostLiterals`
};
inline constexpr std::size_t mostWarnings = 200;
inline constexpr std::size_t mostLiterals = 50'000;

} // namespace vbscript

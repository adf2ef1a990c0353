// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/object.h"
#include "vbscript/values/value.h"

#include <cstdint>
#include <vector>

namespace vbscript {

enum class Tok : std::uint8_t {
    End,
    Newline,
    Colon,
    Name,
    Keyword,
    Literal,
    LParen,
    RParen,
    Comma,
    Dot,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessEqual,
    GreaterEqual,
    Plus,
    Minus,
    Star,
    Slash,
    Backslash,
    Caret,
    Ampersand
};

struct Position {
    std::uint32_t line = 1;
    std::uint32_t column = 1;
};

struct Token {
    Tok kind = Tok::End;
    bool spaceBefore = false;
    bool bracketed = false; ///< [name]: never a contextual word.
    Atom atom = 0;          ///< Name and Keyword.
    std::uint32_t literal = 0;
    Position at;
};

/// The words of a text, with its literals beside them.
struct TokenList {
    std::vector<Token> tokens; ///< Ends with a Newline and an End.
    std::vector<Value> literals;
};

} // namespace vbscript

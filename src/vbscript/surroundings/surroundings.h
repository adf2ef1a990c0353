// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/surroundings/disk.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vbscript {

/// What went wrong in a text or in a run. Line and column count from 1; 0: unknown. They are those
/// of the host's text; where a text that this one ran (Execute, ExecuteGlobal, Eval) is at fault,
/// its first words and the place in it are given, too.
struct ScriptError {
    int number = 0;
    std::string description;
    std::string source;
    int line = 0, column = 0;
    std::string ranText;
    int ranLine = 0, ranColumn = 0;
    bool compileTime = false;
    bool budget = false; ///< Stopped by a budget: trying again at once would end the same.
};

/// No script of people has more bytes; what is longer is refused before it takes memory (1001).
inline constexpr std::size_t longestSource = std::size_t{2} << 20;

/// What a run may use. Depth counts calls of procedures; bytes what all values hold together. Steps
/// stop a run at the same place every time, whatever the clock does; they are counted where the
/// clock is looked at, about every thousand, and 0 sets no limit.
struct Limits {
    std::int64_t maxMilliseconds = 10000;
    int maxDepth = 2000;
    std::size_t maxBytes = std::size_t{64} << 20;
    std::int64_t maxSteps = 0;
};

struct LocalTime {
    int year = 2000, month = 1, day = 1, hour = 0, minute = 0, second = 0, millisecond = 0;
};

/// All that the language asks of the world. The engine reads no clock and no chance of its own.
class Surroundings {
  public:
    virtual ~Surroundings() = default;
    virtual std::int64_t monotonicMs() = 0;
    virtual LocalTime wallClock() = 0;
    /// Must not block; answers what the operator would have pressed (1 is OK). UTF-8.
    virtual int messageBox(std::string_view text, int buttons, std::string_view title) = 0;
    /// Must not block; "" is what Cancel answers.
    virtual std::string inputBox(std::string_view prompt, std::string_view title,
                                 std::string_view proposed) = 0;
    /// What a Scripting.FileSystemObject works on; null: there is no such object.
    virtual std::shared_ptr<Disk> disk() { return nullptr; }
};

} // namespace vbscript

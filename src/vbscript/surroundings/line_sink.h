// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace vbscript {

/// Called before each step that a text takes from line to line.
class LineSink {
  public:
    virtual ~LineSink() = default;
    virtual void at(int line) = 0;
};

} // namespace vbscript

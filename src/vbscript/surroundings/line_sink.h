// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace vbscript {

/// Told of each step that a text takes from line to line, before it is taken.
class LineSink {
  public:
    virtual ~LineSink() = default;
    virtual void at(int line) = 0;
};

} // namespace vbscript

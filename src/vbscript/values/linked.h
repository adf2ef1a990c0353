// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace vbscript {

/// Objects that may hold other objects, in a ring: what is left of them when the engine ends lets
/// go of the rest, so circles are freed too.
class Linked {
  public:
    Linked() = default;
    explicit Linked(Linked& ring);
    virtual ~Linked();
    Linked(const Linked&) = delete;
    Linked& operator=(const Linked&) = delete;
    virtual void breakUp() {}
    /// Breaks up all members of this ring.
    void breakUpAll();

  private:
    Linked* next_ = this;
    Linked* before_ = this;
};

} // namespace vbscript

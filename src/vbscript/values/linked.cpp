// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/linked.h"

namespace vbscript {

Linked::Linked(Linked& ring) : next_(ring.next_), before_(&ring) {
    next_->before_ = this;
    ring.next_ = this;
}

Linked::~Linked() {
    next_->before_ = before_;
    before_->next_ = next_;
}

void Linked::breakUpAll() {
    // Each one moves behind the head when it has been seen: those freed on the way unlink
    // themselves.
    Linked seen;
    while (next_ != this) {
        Linked* one = next_;
        one->next_->before_ = one->before_;
        one->before_->next_ = one->next_;
        one->next_ = seen.next_;
        one->before_ = &seen;
        one->next_->before_ = one;
        seen.next_ = one;
        one->breakUp();
    }
    while (seen.next_ != &seen) {
        Linked* one = seen.next_;
        one->next_->before_ = one->before_;
        one->before_->next_ = one->next_;
        one->next_ = one->before_ = one;
    }
}

} // namespace vbscript

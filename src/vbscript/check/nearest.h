// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vbscript {

/// Collects candidates for what a misspelt name was meant to be, whatever the case of letters.
class Nearest {
  public:
    explicit Nearest(std::string_view name);
    /// Of equally near ones the first stays.
    void offer(std::string_view candidate);
    /// Empty: no candidate looks like it.
    [[nodiscard]] const std::string& best() const { return best_; }
    /// How many candidates were near enough in length to be looked at, which is what costs.
    [[nodiscard]] std::size_t compared() const { return compared_; }

  private:
    [[nodiscard]] int distance(std::string_view candidate);

    std::string name_;
    int limit_; ///< a candidate must be nearer than this
    std::string best_;
    std::size_t compared_ = 0;
    std::vector<int> rows_[3];
};

} // namespace vbscript

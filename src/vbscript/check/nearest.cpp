// SPDX-License-Identifier: Apache-2.0
#include "vbscript/check/nearest.h"

#include <algorithm>
#include <cstdlib>

namespace vbscript {

namespace {

constexpr std::size_t longestCompared = 40; // names that people mistype are short

std::string lower(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    }
    return out;
}

/// How many slips of the keyboard a name of that length may hold, and one more.
int limitFor(std::size_t length) {
    if (length < 3 || length > longestCompared) return 0;
    return length < 5 ? 2 : length < 9 ? 3 : 4;
}

} // namespace

Nearest::Nearest(std::string_view name) : name_(lower(name)), limit_(limitFor(name.size())) {}

void Nearest::offer(std::string_view candidate) {
    const auto apart = static_cast<int>(candidate.size()) - static_cast<int>(name_.size());
    if (std::abs(apart) >= limit_) return;
    ++compared_;
    const int d = distance(lower(candidate));
    if (d == 0 || d >= limit_) return;
    limit_ = d;
    best_ = candidate;
}

// Letters put in, left out, changed, or two of them swapped.
int Nearest::distance(std::string_view other) {
    const std::size_t width = other.size() + 1;
    for (auto& row : rows_)
        row.assign(width, 0);
    for (std::size_t k = 0; k < width; ++k)
        rows_[0][k] = static_cast<int>(k);
    for (std::size_t i = 1; i <= name_.size(); ++i) {
        auto& now = rows_[i % 3];
        const auto& before = rows_[(i + 2) % 3];
        const auto& earlier = rows_[(i + 1) % 3];
        now[0] = static_cast<int>(i);
        for (std::size_t k = 1; k < width; ++k) {
            const bool same = name_[i - 1] == other[k - 1];
            now[k] = std::min({before[k] + 1, now[k - 1] + 1, before[k - 1] + (same ? 0 : 1)});
            if (i > 1 && k > 1 && name_[i - 1] == other[k - 2] && name_[i - 2] == other[k - 1])
                now[k] = std::min(now[k], earlier[k - 2] + 1);
        }
        if (*std::min_element(now.begin(), now.end()) > limit_) return limit_;
    }
    return rows_[name_.size() % 3][width - 1];
}

} // namespace vbscript

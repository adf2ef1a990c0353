// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/calendar.h"

#include "vbscript/values/text.h"

#include <algorithm>
#include <vector>

namespace vbscript {

namespace {

bool isDigit(char16_t c) { return c >= '0' && c <= '9'; }

/// A text in numbers, words and single marks.
struct Part {
    enum Kind { Number, Word, Mark } kind;
    int number = 0;
    std::size_t digits = 0;
    std::u16string word;
    char16_t mark = 0;
};

bool split(std::u16string_view t, std::vector<Part>& parts) {
    for (std::size_t k = 0; k < t.size();) {
        const char16_t c = t[k];
        const std::size_t start = k;
        Part p{};
        if (c == ' ' || c == '\t') {
            ++k;
            continue;
        }
        if (isDigit(c)) {
            p.kind = Part::Number;
            for (; k < t.size() && isDigit(t[k]); ++k) {
                if (k - start >= 5) return false;
                p.number = p.number * 10 + (t[k] - '0');
            }
            p.digits = k - start;
        } else if (lower(c) != upper(c)) {
            p.kind = Part::Word;
            while (k < t.size() && (lower(t[k]) != upper(t[k]) || (t[k] == '.' && k > start)))
                ++k;
            p.word = lowered(t.substr(start, k - start));
            std::erase(p.word, u'.');
        } else {
            p.kind = Part::Mark;
            p.mark = c;
            ++k;
        }
        parts.push_back(std::move(p));
    }
    return !parts.empty();
}

int monthIn(const Locale& l, std::u16string_view word) {
    for (int m = 0; m < 12; ++m) {
        const auto k = static_cast<std::size_t>(m);
        if (compare(word, l.months[k], true) == 0 || compare(word, l.monthsShort[k], true) == 0)
            return m + 1;
    }
    return 0;
}

int monthNamed(const Locale& l, std::u16string_view word) {
    const int m = monthIn(l, word);
    return m != 0 ? m : monthIn(english(), word);
}

bool isDayName(const Locale& l, std::u16string_view word) {
    for (std::size_t k = 0; k < 7; ++k) {
        if (compare(word, l.days[k], true) == 0 || compare(word, l.daysShort[k], true) == 0)
            return true;
    }
    return false;
}

int fullYear(const Part& p) {
    if (p.digits > 2) return p.number;
    return p.number < 30 ? 2000 + p.number : 1900 + p.number;
}

class Reader {
  public:
    Reader(const Locale& l, int yearNow, std::vector<Part> parts)
        : locale_(l), yearNow_(yearNow), parts_(std::move(parts)) {}

    bool read(double& date) {
        if (!takeTime()) return false;
        if (rest_.empty()) {
            date = joinTime(0, seconds_);
            return hasTime_;
        }
        int y = 0;
        int m = 0;
        int d = 0;
        if (!takeDate(y, m, d)) return false;
        if (y < 100 || y > 9999 || m < 1 || m > 12 || d < 1 || d > daysInMonth(y, m)) return false;
        date = joinTime(dayNumber(y, m, d), seconds_);
        return true;
    }

  private:
    bool isMark(std::size_t k, char16_t c) const {
        return k < parts_.size() && parts_[k].kind == Part::Mark && parts_[k].mark == c;
    }
    bool isNumber(std::size_t k) const {
        return k < parts_.size() && parts_[k].kind == Part::Number;
    }
    /// 1: a.m., 2: p.m.
    int half(std::size_t k) const {
        if (k >= parts_.size() || parts_[k].kind != Part::Word) return 0;
        const auto& w = parts_[k].word;
        return w == u"am" || w == u"a" ? 1 : w == u"pm" || w == u"p" ? 2 : 0;
    }

    // "14:30", "2:30:00 PM", "2 PM" are taken out; the rest is the date.
    bool takeTime() {
        for (std::size_t k = 0; k < parts_.size();) {
            const bool clock = isNumber(k) && (isMark(k + 1, ':') || half(k + 1) != 0);
            if (!clock) {
                rest_.push_back(parts_[k++]);
                continue;
            }
            if (hasTime_) return false;
            hasTime_ = true;
            int h = parts_[k++].number;
            int n = 0;
            int s = 0;
            if (isMark(k, ':')) {
                if (!isNumber(k + 1)) return false;
                n = parts_[k + 1].number;
                k += 2;
            }
            if (isMark(k, ':')) {
                if (!isNumber(k + 1)) return false;
                s = parts_[k + 1].number;
                k += 2;
            }
            if (const int ampm = half(k)) {
                if (h > 12 || h < 1) return false;
                h = h % 12 + (ampm == 2 ? 12 : 0);
                ++k;
            }
            if (h > 23 || n > 59 || s > 59) return false;
            seconds_ = (h * 60 + n) * 60 + s;
        }
        return true;
    }

    bool takeDate(int& y, int& m, int& d) {
        std::vector<Part> numbers;
        int named = 0;
        bool separated = true;
        for (const Part& p : rest_) {
            if (p.kind == Part::Mark) {
                if (separated || (p.mark != '/' && p.mark != '-' && p.mark != '.' && p.mark != ','))
                    return false;
                separated = true;
                continue;
            }
            separated = false;
            if (p.kind == Part::Number) {
                numbers.push_back(p);
            } else if (p.word != u"de") {
                // "mar" is a Tuesday only where another word says the month.
                const int month = monthNamed(locale_, p.word);
                if (month == 0 && !isDayName(locale_, p.word)) return false;
                if (month != 0 && named != 0) return false;
                if (month != 0) named = month;
            }
        }
        if (separated && rest_.back().kind == Part::Mark) return false;
        return named != 0 ? namedDate(numbers, named, y, m, d) : plainDate(numbers, y, m, d);
    }

    bool namedDate(const std::vector<Part>& n, int named, int& y, int& m, int& d) const {
        m = named;
        if (n.empty() || n.size() > 2) return false;
        if (n.size() == 1) {
            const bool year = n[0].digits > 2 || n[0].number > 31;
            y = year ? fullYear(n[0]) : yearNow_;
            d = year ? 1 : n[0].number;
            return true;
        }
        const bool yearFirst = n[0].digits > 2 || n[0].number > 31;
        y = fullYear(n[yearFirst ? 0 : 1]);
        d = n[yearFirst ? 1 : 0].number;
        return true;
    }

    bool plainDate(const std::vector<Part>& n, int& y, int& m, int& d) const {
        if (n.size() < 2 || n.size() > 3) return false;
        if (n.size() == 3 && n[0].digits > 2) {
            y = n[0].number;
            m = n[1].number;
            d = n[2].number;
            return true;
        }
        y = n.size() == 3 ? fullYear(n[2]) : yearNow_;
        m = n[locale_.dayFirst ? 1 : 0].number;
        d = n[locale_.dayFirst ? 0 : 1].number;
        if (m > 12 && d <= 12) std::swap(m, d);
        return true;
    }

    const Locale& locale_;
    int yearNow_;
    std::vector<Part> parts_;
    std::vector<Part> rest_;
    std::int64_t seconds_ = 0;
    bool hasTime_ = false;
};

} // namespace

bool parseDate(std::u16string_view text, const Locale& locale, int yearNow, double& date) {
    std::vector<Part> parts;
    if (text.size() > 100 || !split(text, parts)) return false;
    return Reader(locale, yearNow, std::move(parts)).read(date);
}

bool parseDateLiteral(std::u16string_view text, double& date) {
    return parseDate(text, english(), 0, date);
}

} // namespace vbscript

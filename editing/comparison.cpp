#include "editing/comparison.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <utility>

#include "editing/block_words.h"
#include "platform/lines.h"

namespace kelvane {

namespace {

constexpr std::size_t lines_a_breath = 64;
/// Lines that may be added and removed between two lines that are the same; time grows with its
/// square.
constexpr std::ptrdiff_t most_edits = 500;

/// The bytes of a line that count, one by one.
class Significant_bytes {
  public:
    Significant_bytes(std::string_view line, Compare_options options)
        : rest_(line), ignore_blanks_(options.ignore_blanks) {
        if (options.ignore_numbers) {
            leave_number_out(line);
        }
    }

    /// -1 at the end.
    int next() {
        for (;;) {
            if (rest_.empty()) {
                std::swap(rest_, behind_number_);
            }
            if (rest_.empty()) {
                return -1;
            }
            const char byte = rest_[0];
            rest_.remove_prefix(1);
            if (!ignore_blanks_ || (byte != ' ' && byte != '\t')) {
                return static_cast<unsigned char>(byte);
            }
        }
    }

  private:
    void leave_number_out(std::string_view line) {
        if (const auto number = block_number(line)) {
            const auto end =
                static_cast<std::size_t>(number->data() - line.data()) + number->size();
            rest_ = line.substr(0, line.find_first_of("Nn"));
            behind_number_ = line.substr(end);
            behind_number_.remove_prefix(
                std::min(behind_number_.find_first_not_of(" \t"), behind_number_.size()));
        }
    }

    std::string_view rest_, behind_number_;
    bool ignore_blanks_;
};

std::uint64_t hash_of(Significant_bytes bytes) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (int byte = bytes.next(); byte >= 0; byte = bytes.next()) {
        hash = (hash ^ static_cast<std::uint64_t>(byte)) * 0x100000001B3U;
    }
    return hash ^ (hash >> 29);
}

bool are_equal(Significant_bytes one, Significant_bytes other) {
    int byte = 0;
    do {
        byte = one.next();
        if (byte != other.next()) {
            return false;
        }
    } while (byte >= 0);
    return true;
}

/// One program's lines.
struct Side {
    std::string_view text;
    std::vector<std::size_t> starts;
    std::vector<std::uint64_t> hashes;

    [[nodiscard]] std::size_t size() const { return starts.size(); }
    [[nodiscard]] std::string_view line(std::size_t number) const {
        return Lines(text, starts[number]).take();
    }
};

/// A line of each side.
struct Pair {
    std::size_t left, right;
};

/// How often a line stands on each side, and where.
struct Places {
    std::uint32_t left_count = 0, right_count = 0;
    std::size_t left = 0, right = 0;
};

/// For each diagonal, that is lines of the left less lines of the right side, how many lines of the
/// left side so many edits pass at most.
class Reach {
  public:
    explicit Reach(std::ptrdiff_t most)
        : most_(most), lines_(static_cast<std::size_t>(2 * most + 3)) {}

    std::ptrdiff_t& operator[](std::ptrdiff_t diagonal) {
        return lines_[static_cast<std::size_t>(diagonal + most_ + 1)];
    }
    std::ptrdiff_t operator[](std::ptrdiff_t diagonal) const {
        return lines_[static_cast<std::size_t>(diagonal + most_ + 1)];
    }
    /// The diagonals around those that `edits` edits can reach.
    [[nodiscard]] Reach narrowed(std::ptrdiff_t edits) const {
        Reach part(edits);
        const auto first = lines_.begin() + (most_ - edits);
        part.lines_.assign(first, first + (2 * edits + 3));
        return part;
    }
    /// Which neighbour the farthest way to `diagonal` with `edits` edits comes from: with a line of
    /// the right side the one above, else the one below.
    [[nodiscard]] std::ptrdiff_t origin(std::ptrdiff_t diagonal, std::ptrdiff_t edits) const {
        const bool from_above =
            diagonal == -edits ||
            (diagonal != edits && (*this)[diagonal - 1] < (*this)[diagonal + 1]);
        return from_above ? diagonal + 1 : diagonal - 1;
    }

  private:
    std::ptrdiff_t most_;
    std::vector<std::ptrdiff_t> lines_;
};

/// The work of one comparison.
class Comparer {
  public:
    Comparer(Event_loop& loop, std::string_view left, std::string_view right,
             Compare_options options)
        : loop_(loop), options_(options), left_{left, {}, {}}, right_{right, {}, {}} {}

    Task<Comparison> run() {
        co_await read(left_);
        co_await read(right_);
        const std::vector<Pair> once = co_await lines_held_once();
        const std::vector<Pair> anchors = co_await common_order(once);
        for (const Pair& anchor : anchors) {
            if (anchor.left >= next_.left && anchor.right >= next_.right) {
                co_await compare_gap(anchor);
                match(anchor);
            }
        }
        const Pair end{left_.size(), right_.size()};
        co_await compare_gap(end);
        note_difference(end);
        co_return Comparison(std::move(differences_), left_.size());
    }

  private:
    Task<> read(Side& side);
    Task<std::vector<Pair>> lines_held_once();
    Task<std::vector<Pair>> common_order(const std::vector<Pair>& pairs);
    Task<> compare_gap(Pair end);
    Task<> match_shortest(Pair end);
    void match_way_back(const std::vector<Reach>& trace, std::ptrdiff_t x, std::ptrdiff_t y);
    void match(Pair lines);
    void note_difference(Pair end);
    /// So many lines behind the first that are not dealt with.
    [[nodiscard]] Pair ahead(std::ptrdiff_t left, std::ptrdiff_t right) const {
        return {next_.left + static_cast<std::size_t>(left),
                next_.right + static_cast<std::size_t>(right)};
    }
    [[nodiscard]] bool look_equal(Pair lines) const {
        return left_.hashes[lines.left] == right_.hashes[lines.right];
    }

    Event_loop& loop_;
    Compare_options options_;
    Side left_, right_;
    Pair next_{0, 0};  ///< the first lines that are not dealt with yet
    std::vector<Difference> differences_;
};

Task<> Comparer::read(Side& side) {
    Lines lines(side.text);
    bool ended = true;  // an empty text is an empty line, and so is what follows a last line end
    while (ended) {
        if (side.size() % lines_a_breath == 0) {
            co_await loop_.breath();
        }
        side.starts.push_back(lines.position());
        const std::string_view line = lines.take();
        ended = side.starts.back() + line.size() < side.text.size();
        side.hashes.push_back(hash_of({line, options_}));
    }
}

/// Lines that stand once on each side, in the order of the left one.
Task<std::vector<Pair>> Comparer::lines_held_once() {
    std::unordered_map<std::uint64_t, Places> all;
    all.reserve(left_.size());
    for (std::size_t i = 0; i < left_.size(); ++i) {
        if (i % lines_a_breath == 0) {
            co_await loop_.breath();
        }
        Places& places = all[left_.hashes[i]];
        ++places.left_count;
        places.left = i;
    }
    for (std::size_t i = 0; i < right_.size(); ++i) {
        if (i % lines_a_breath == 0) {
            co_await loop_.breath();
        }
        if (const auto found = all.find(right_.hashes[i]); found != all.end()) {
            ++found->second.right_count;
            found->second.right = i;
        }
    }
    std::vector<Pair> once;
    for (std::size_t i = 0; i < left_.size(); ++i) {
        if (i % lines_a_breath == 0) {
            co_await loop_.breath();
        }
        const Places& places = all.at(left_.hashes[i]);
        if (places.left_count == 1 && places.right_count == 1) {
            once.push_back({i, places.right});
        }
    }
    co_return once;
}

/// The longest selection of pairs that ascends on the right side too.
Task<std::vector<Pair>> Comparer::common_order(const std::vector<Pair>& pairs) {
    std::vector<std::size_t> tops;                  // of piles: the pair with the lowest right line
    std::vector<std::size_t> before(pairs.size());  // the pair in front of each, on the pile before
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        if (i % lines_a_breath == 0) {
            co_await loop_.breath();
        }
        const auto pile = std::lower_bound(
            tops.begin(), tops.end(), pairs[i].right,
            [&pairs](std::size_t top, std::size_t right) { return pairs[top].right < right; });
        before[i] = pile == tops.begin() ? i : *(pile - 1);
        if (pile == tops.end()) {
            tops.push_back(i);
        } else {
            *pile = i;
        }
    }
    std::vector<Pair> selected(tops.size());
    std::size_t at = tops.empty() ? 0 : tops.back();
    for (std::size_t place = selected.size(); place > 0; --place) {
        selected[place - 1] = pairs[at];
        at = before[at];
    }
    co_return selected;
}

/// Two lines stand beside each other.
void Comparer::match(Pair lines) {
    if (!are_equal({left_.line(lines.left), options_}, {right_.line(lines.right), options_})) {
        return;  // they only have the same hash
    }
    note_difference(lines);
    next_ = {lines.left + 1, lines.right + 1};
}

/// What has no counterpart before `end` differs.
void Comparer::note_difference(Pair end) {
    if (end.left > next_.left || end.right > next_.right) {
        differences_.push_back({next_.left, end.left, next_.right, end.right});
    }
}

/// Compares all lines up to `end`.
Task<> Comparer::compare_gap(Pair end) {
    while (next_.left < end.left && next_.right < end.right && look_equal(next_)) {
        const std::size_t before = next_.left;
        match(next_);
        if (next_.left == before) {
            break;
        }
        if (before % lines_a_breath == 0) {
            co_await loop_.breath();
        }
    }
    std::size_t same_end = 0;
    while (next_.left < end.left && next_.right < end.right &&
           look_equal({end.left - 1, end.right - 1})) {
        --end.left;
        --end.right;
        ++same_end;
    }
    if (next_.left < end.left && next_.right < end.right) {
        co_await match_shortest(end);
    }
    for (; same_end > 0; --same_end, ++end.left, ++end.right) {
        match(end);
        if (same_end % lines_a_breath == 0) {
            co_await loop_.breath();
        }
    }
}

/// Finds the fewest edits that lead from one side to the other, after Myers, and matches the lines
/// that they leave alone. Beyond `most_edits` nothing is matched.
Task<> Comparer::match_shortest(Pair end) {
    const auto height = static_cast<std::ptrdiff_t>(end.left - next_.left);
    const auto width = static_cast<std::ptrdiff_t>(end.right - next_.right);
    const std::ptrdiff_t most = std::min(most_edits, height + width);
    Reach reach(most);
    std::vector<Reach> trace;
    for (std::ptrdiff_t edits = 0; edits <= most; ++edits) {
        trace.push_back(reach.narrowed(edits));
        for (std::ptrdiff_t diagonal = -edits; diagonal <= edits; diagonal += 2) {
            co_await loop_.breath();
            const std::ptrdiff_t origin = reach.origin(diagonal, edits);
            std::ptrdiff_t x = reach[origin] + (origin < diagonal ? 1 : 0);
            while (x < height && x - diagonal < width && look_equal(ahead(x, x - diagonal))) {
                ++x;
            }
            reach[diagonal] = x;
            if (x >= height && x - diagonal >= width) {
                match_way_back(trace, height, width);
                co_return;
            }
        }
    }
}

/// Follows the edits back from the end, and matches what stands between them from the front.
void Comparer::match_way_back(const std::vector<Reach>& trace, std::ptrdiff_t x, std::ptrdiff_t y) {
    std::vector<Pair> same;
    for (auto edits = static_cast<std::ptrdiff_t>(trace.size()) - 1; edits >= 0; --edits) {
        const Reach& reach = trace[static_cast<std::size_t>(edits)];
        const std::ptrdiff_t origin = reach.origin(x - y, edits);
        const std::ptrdiff_t before = reach[origin];
        while (x > before && y > before - origin) {
            same.push_back(ahead(--x, --y));
        }
        x = before;
        y = before - origin;
    }
    std::for_each(same.rbegin(), same.rend(), [this](const Pair& lines) { match(lines); });
}

}  // namespace

Comparison::Comparison(std::vector<Difference> differences, std::size_t left_lines)
    : differences_(std::move(differences)), row_count_(left_lines) {
    std::size_t added = 0;  // rows that are no line of the left side
    for (const Difference& difference : differences_) {
        rows_.push_back(difference.left + added);
        const std::size_t left = difference.left_end - difference.left;
        const std::size_t right = difference.right_end - difference.right;
        added += right > left ? right - left : 0;
    }
    row_count_ += added;
}

Compared_row Comparison::row(std::size_t row) const {
    const auto behind = std::upper_bound(rows_.begin(), rows_.end(), row);
    if (behind == rows_.begin()) {
        return {row, row, false};
    }
    const auto number = static_cast<std::size_t>(behind - rows_.begin()) - 1;
    const Difference& difference = differences_[number];
    const std::size_t within = row - rows_[number];
    const std::size_t left = difference.left_end - difference.left;
    const std::size_t right = difference.right_end - difference.right;
    if (const std::size_t rows = std::max(left, right); within >= rows) {
        return {difference.left_end + within - rows, difference.right_end + within - rows, false};
    }
    Compared_row compared{{}, {}, true};
    if (within < left) {
        compared.left = difference.left + within;
    }
    if (within < right) {
        compared.right = difference.right + within;
    }
    return compared;
}

std::optional<std::size_t> Comparison::next(std::size_t row) const {
    const auto found = std::upper_bound(rows_.begin(), rows_.end(), row);
    return found == rows_.end() ? std::nullopt
                                : std::optional(static_cast<std::size_t>(found - rows_.begin()));
}

std::optional<std::size_t> Comparison::previous(std::size_t row) const {
    const auto found = std::lower_bound(rows_.begin(), rows_.end(), row);
    return found == rows_.begin()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(found - rows_.begin()) - 1);
}

Task<Comparison> compare_programs(Event_loop& loop, std::string_view left, std::string_view right,
                                  Compare_options options) {
    Comparer comparer(loop, left, right, options);
    Comparison comparison = co_await comparer.run();
    co_return comparison;
}

}  // namespace kelvane

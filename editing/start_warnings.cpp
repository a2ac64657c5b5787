#include "editing/start_warnings.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

constexpr std::array<std::string_view, 19> warning_texts = {
    "Cutter radius compensation is on since",
    "A canned cycle is on since",
    "The block belongs to a contour that a cycle reads:",
    "The contour that is not sent is read by a cycle, last at",
    "The cycle may take numbers from the block before it:",
    "The block is an arc, its start must be met exactly:",
    "The block may move by a distance from where the tool stands:",
    "Coordinates are shifted, turned, scaled, mirrored or polar since",
    "A rotary axis has been turned at",
    "Where the tool should stand is not known since",
    "The program jumps, first at",
    "The program calculates with variables, first at",
    "Sub-programs or macros run, first at",
    "Other files are called, first at",
    "What the block skip switch decides stands at",
    "A program ends at",
    "This cannot be read:",
    "A code that only the machine's maker knows stands at",
    "It is not clear whether this is for a mill or a lathe:",
};

bool is_arc(const Setting& motion) {
    return motion.code == 20 || motion.code == 30;
}

bool is_at_zero(const Setting& axis) {
    return axis.known() && Val(std::string_view(axis.word).substr(1)) == 0;
}

/// Collects the warnings of one reading.
class Warning_writer {
  public:
    explicit Warning_writer(const Start_reading& reading)
        : reading_(reading),
          state_(reading.before()),
          block_(reading.block()),
          milling_(reading.machining() == Machining::milling) {}

    std::vector<Warning> written() {
        warn();
        return std::move(warnings_);
    }

  private:
    void warn();
    void warn_of_block();
    void warn_of_transformations();
    void warn_of_program();
    void warn_of_doubts();
    void warn_when(bool condition, Start_warning kind, std::size_t line);
    [[nodiscard]] bool has_arc() const;
    [[nodiscard]] bool has_distance() const;

    const Start_reading& reading_;
    const Modal_state& state_;
    Block_words block_;
    bool milling_;
    std::vector<Warning> warnings_;
};

void Warning_writer::warn_when(bool condition, Start_warning kind, std::size_t line) {
    if (condition) {
        warnings_.push_back({kind, line});
    }
}

bool Warning_writer::has_arc() const {
    const bool moves = block_.has_axes() || block_['I'] || block_['J'] || block_['K'];
    return moves && is_arc(reading_.after()[Modal::motion]);
}

bool Warning_writer::has_distance() const {
    const Setting& distance = reading_.after()[Modal::distance];
    const bool absolute =
        distance.known() ? distance.code == 900 : !milling_ && distance.word.empty();
    const bool lathe_distance = !milling_ && (block_['U'] || block_['W']);
    return lathe_distance || (block_.has_axes() && !absolute);
}

void Warning_writer::warn() {
    warn_when(state_.on(Modal::radius_comp), Start_warning::radius_compensation,
              state_[Modal::radius_comp].line);
    warn_when(state_.on(Modal::cycle), Start_warning::cycle, state_[Modal::cycle].line);
    warn_of_block();
    warn_of_transformations();
    if (!block_.program_number) {
        warn_of_doubts();
    }
    warn_of_program();
}

void Warning_writer::warn_of_transformations() {
    for (const Modal modal : transformations) {
        warn_when(state_.on(modal), Start_warning::transformed, state_[modal].line);
    }
    std::optional<std::size_t> turned = reading_.survey().first_turn;
    for (const Modal axis : rotary_axes) {
        if (!state_[axis].word.empty() && !is_at_zero(state_[axis])) {
            turned = state_[axis].line;
        }
    }
    warn_when(turned && *turned < reading_.line(), Start_warning::rotary_axis, turned.value_or(0));
}

void Warning_writer::warn_of_block() {
    const std::size_t line = reading_.block_line();
    warn_when(state_.in_contour || reading_.after().in_contour, Start_warning::contour, line);
    const auto& contours = reading_.survey().contours;
    const auto above = std::find_if(contours.begin(), contours.end(), [this](const auto& contour) {
        return contour.begin < reading_.line() && reading_.line() <= contour.last_use;
    });
    warn_when(above != contours.end(), Start_warning::contour_above,
              above != contours.end() ? above->last_use : 0);
    warn_when(state_.after_contour_cycle && reading_.after().after_contour_cycle,
              Start_warning::half_cycle, line);
    warn_when(has_arc(), Start_warning::arc, line);
    warn_when(has_distance(), Start_warning::incremental, line);
    warn_when(block_.skip, Start_warning::block_skip, line);
}

void Warning_writer::warn_of_program() {
    const Program_survey& survey = reading_.survey();
    const std::pair<std::optional<std::size_t>, Start_warning> findings[] = {
        {survey.first_jump, Start_warning::jumps},
        {survey.first_variable, Start_warning::variables},
        {survey.first_call, Start_warning::sub_programs},
        {survey.first_called_file, Start_warning::called_files}};
    for (const auto& [line, kind] : findings) {
        warn_when(line.has_value(), kind, line.value_or(0));
    }
    if (!state_.others.empty()) {
        warn_when(true, Start_warning::other_codes, state_.others.front().line);
    }
    warn_when(!reading_.machining_sure(), Start_warning::mill_or_lathe, reading_.block_line());
}

void Warning_writer::warn_of_doubts() {
    for (const Modal axis : {Modal::x, Modal::y, Modal::z}) {
        const Setting& place = state_[axis];
        if ((milling_ || axis != Modal::y) && !place.known()) {
            warn_when(true, Start_warning::position,
                      place.word.empty() ? reading_.block_line() : place.doubt_line);
            break;
        }
    }
    const std::pair<Doubt, Start_warning> kinds[] = {
        {Doubt::block_skip, Start_warning::block_skip},
        {Doubt::program_end, Start_warning::program_end},
        {Doubt::unread, Start_warning::unread}};
    for (const auto& [doubt, kind] : kinds) {
        const auto* const found = std::find_if(
            state_.settings.begin(), state_.settings.end(),
            [doubt = doubt](const Setting& setting) { return setting.doubt == doubt; });
        if (found != state_.settings.end()) {
            warn_when(true, kind, found->doubt_line);
        }
    }
}

}  // namespace

std::string warning_text(const Warning& warning) {
    return std::string(warning_texts[static_cast<std::size_t>(warning.kind)]) + " line " +
           decimal(static_cast<std::int64_t>(warning.line) + 1) + '.';
}

std::vector<Warning> start_warnings(const Start_reading& reading) {
    return Warning_writer(reading).written();
}

}  // namespace kelvane

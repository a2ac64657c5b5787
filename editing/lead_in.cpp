#include "editing/lead_in.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

#include "platform/basic_text.h"

namespace kelvane {

namespace {

std::string line_text(std::size_t line) {
    return "LINE " + decimal(static_cast<std::int64_t>(line) + 1);
}

/// True when two axis words are written alike, so that their numbers can be compared, and `one` is
/// not below `other`.
bool is_not_below(const Setting& one, const Setting& other) {
    const auto has_point = [](const Setting& axis) {
        return axis.word.find('.') != std::string::npos;
    };
    const auto value = [](const Setting& axis) {
        return Val(std::string_view(axis.word).substr(1));
    };
    return one.known() && other.known() && has_point(one) == has_point(other) &&
           value(one) >= value(other);
}

/// Writes the proposal for one reading.
class Proposal_writer {
  public:
    explicit Proposal_writer(const Start_reading& reading)
        : reading_(reading),
          state_(reading.before()),
          block_(reading.block()),
          milling_(reading.machining() == Machining::milling) {}

    Start_proposal written() {
        proposal_.warnings = start_warnings(reading_);
        if (reading_.line() == 0) {
            return std::move(proposal_);  // nothing goes before the whole program
        }
        write_tape_mark();
        if (block_.program_number) {
            return std::move(proposal_);
        }
        find_hindrances();
        comment("START AT " + line_text(reading_.block_line()) + " - READ AND EDIT BEFORE SENDING");
        write_modes();
        write_compensations();
        write_tool();
        write_rotary_axes();
        write_stop();
        write_spindle();
        if (changes_tool() || !hindrances_.empty()) {
            write_coolant();
        } else {
            write_moves();
        }
        write_return_to_program();
        return std::move(proposal_);
    }

  private:
    void find_hindrances();
    void hinder_when(bool condition, std::string_view why);
    void write_tape_mark();
    void write_modes();
    void write_compensations();
    void write_length_compensation();
    void write_tool();
    void write_rotary_axes();
    void write_stop();
    void write_spindle();
    void write_moves();
    void write_coolant();
    void write_return_to_program();
    void write_motion();
    std::string motion_word();
    std::string feed_word();
    void comment(std::string_view text);
    void check(Modal modal);
    void put(std::string block) { proposal_.blocks.push_back(std::move(block)); }

    [[nodiscard]] bool changes_tool() const {
        return reading_.after().tool_change && reading_.after().tool_change != state_.tool_change;
    }
    /// Mills know G80; of lathes those that have used one of the cycles that it ends.
    [[nodiscard]] bool ends_cycle() const {
        const Setting& cycle = state_[Modal::cycle];
        return !cycle.word.empty() && (milling_ || (state_.on(Modal::cycle) && cycle.code < 900));
    }
    [[nodiscard]] bool stops_to_change() const { return milling_ && changes_tool(); }
    [[nodiscard]] bool spindle_turns() const {
        const Setting& spindle = state_[Modal::spindle];
        return spindle.known() && (spindle.code == 3 || spindle.code == 4);
    }
    [[nodiscard]] std::string last_position() const;

    const Start_reading& reading_;
    const Modal_state& state_;
    Block_words block_;
    bool milling_;
    std::vector<std::string> hindrances_;  ///< why no move is proposed
    bool feed_given_ = false;
    Start_proposal proposal_;
};

void Proposal_writer::comment(std::string_view text) {
    std::string plain = upper_case(text);
    plain.erase(std::remove_if(plain.begin(), plain.end(),
                               [](char c) {
                                   return (c < 'A' || c > 'Z') && !is_digit(c) &&
                                          std::string_view(" .,-+/").find(c) ==
                                              std::string_view::npos;
                               }),
                plain.end());
    put('(' + plain + ')');
}

/// A comment in place of a word that is not known.
void Proposal_writer::check(Modal modal) {
    comment("CHECK " + std::string(modal_name(modal)) + ", " + setting_text(state_[modal]));
}

void Proposal_writer::hinder_when(bool condition, std::string_view why) {
    if (condition) {
        hindrances_.emplace_back(why);
    }
}

/// All that must be sure before a move is proposed: the way to the block is known to be the
/// program's own, along X and Y above the part and then straight down.
void Proposal_writer::find_hindrances() {
    const auto unknown = [this](std::initializer_list<Modal> all) {
        return std::any_of(all.begin(), all.end(),
                           [this](Modal modal) { return !state_[modal].known(); });
    };
    if (!milling_) {
        hinder_when(true, "the way in depends on inside or outside");
        return;
    }
    hinder_when(!reading_.machining_sure(), "mill or lathe is not clear");
    hinder_when(state_.active(Modal::radius_comp), "radius compensation may be on");
    hinder_when(state_.active(Modal::cycle), "a cycle may be on");
    hinder_when(unknown({Modal::x, Modal::y, Modal::z}), "the position is not known");
    hinder_when(unknown({Modal::work_offset, Modal::units}), "offset or units are not known");
    hinder_when(unknown({Modal::plane}) || state_[Modal::plane].code != 170,
                "the tool axis may not be Z");
    const Setting& feed_mode = state_[Modal::feed_mode];
    hinder_when(unknown({Modal::feed}) || feed_mode.code == 930 || feed_mode.doubt != Doubt::none,
                "the feed is not known");
    hinder_when(!spindle_turns() || !state_[Modal::speed].known(),
                "the spindle is not known to turn");
    const bool moved = std::any_of(transformations.begin(), transformations.end(),
                                   [this](Modal modal) { return state_.active(modal); });
    hinder_when(moved || state_.active(Modal::macro_call), "coordinates may be transformed");
    const bool turned = std::any_of(
        proposal_.warnings.begin(), proposal_.warnings.end(),
        [](const Warning& warning) { return warning.kind == Start_warning::rotary_axis; });
    // Where in the program the tool broke is not known: what it turns may not have been turned
    // back.
    hinder_when(turned || reading_.survey().first_turn, "a rotary axis may stand elsewhere");
    hinder_when(state_.unknown_code, "a code is not known");
    const bool compensated = state_.active(Modal::length_comp);
    hinder_when(!compensated && state_.lone_number, "the tool length may be on");
    hinder_when(compensated &&
                    !(state_[Modal::length_comp].known() && state_[Modal::length_number].known() &&
                      is_not_below(state_.clearance, state_[Modal::z])),
                "no safe height for the tool length is known");
}

void Proposal_writer::write_tape_mark() {
    if (reading_.has_tape_mark()) {
        put("%");
    }
}

void Proposal_writer::write_modes() {
    std::string words;
    std::vector<Modal> to_check;
    for (const Modal modal :
         {Modal::plane, Modal::units, Modal::feed_mode, Modal::cycle_return, Modal::work_offset}) {
        if (state_[modal].known()) {
            words += state_[modal].word + ' ';
        } else if (modal != Modal::cycle_return || !state_[modal].word.empty()) {
            to_check.push_back(modal);
        }
    }
    words += state_[Modal::radius_comp].word.empty() ? "" : "G40 ";
    words += ends_cycle() ? "G80 " : "";
    const bool moves = hindrances_.empty() && !changes_tool();
    words += milling_ && (moves || state_[Modal::distance].known()) ? "G90 " : "";
    if (!words.empty()) {
        words.pop_back();
        put(words);
    }
    for (const Modal modal : to_check) {
        check(modal);
    }
    for (const Modal modal :
         {Modal::cycle, Modal::local_shift, Modal::scaling, Modal::mirror, Modal::rotation,
          Modal::polar, Modal::interpolation, Modal::macro_call, Modal::path_mode}) {
        if (state_.active(modal)) {
            check(modal);
        }
    }
    for (const Other_code& other : state_.others) {
        comment("CHECK " + other.word + " OF " + line_text(other.line));
    }
    if (state_.others.size() == Modal_state::max_others) {
        comment("CHECK WHAT OTHER CODES STAND ABOVE");
    }
}

/// Those that no block of the proposal switches on or off: a block that goes to the part without
/// its tool length goes too deep.
void Proposal_writer::write_compensations() {
    if (state_.active(Modal::radius_comp)) {
        check(Modal::radius_comp);
    }
    const Setting& number = state_[Modal::radius_number];
    const bool of_this_tool = number.line >= state_.tool_change.value_or(0) && !changes_tool();
    if (milling_ && (state_.active(Modal::radius_comp) || (!number.word.empty() && of_this_tool))) {
        check(Modal::radius_number);  // on some controls D is the tool's length too
    }
    write_length_compensation();
}

/// Behind a change of the tool the blocks may give a length's number alone.
void Proposal_writer::write_length_compensation() {
    const bool on = state_.active(Modal::length_comp);
    const bool hindered = on && !changes_tool() && !hindrances_.empty();
    const bool lone_number = state_.lone_number && !changes_tool();
    const bool was_on = !on && !state_[Modal::length_comp].word.empty() && !lone_number;
    if (hindered || was_on || (on && changes_tool())) {
        check(Modal::length_comp);
    }
    if (hindered || lone_number) {
        check(Modal::length_number);
    }
}

void Proposal_writer::write_tool() {
    if (changes_tool()) {
        comment("THE BLOCK CHOSEN CHANGES THE TOOL");
        if (!block_['T']) {
            check(Modal::next_tool);
        }
        return;
    }
    check(Modal::tool);
    if (state_[Modal::next_tool].word != state_[Modal::tool].word) {
        check(Modal::next_tool);
    }
}

void Proposal_writer::write_rotary_axes() {
    for (const Modal axis : rotary_axes) {
        if (state_.active(axis)) {
            check(axis);
        }
    }
}

void Proposal_writer::write_stop() {
    if (hindrances_.empty() || changes_tool()) {
        comment("RETRACT THE TOOL, CLEAR OF PART AND CLAMPS, THEN CYCLE START");
    } else {
        for (const std::string& why : hindrances_) {
            comment("NO MOVE IS PROPOSED, " + why);
        }
        comment("LAST POSITION" + last_position());
        if (state_.tool_change) {
            comment("A START AT THE TOOL CHANGE IS SAFER, " + line_text(*state_.tool_change));
        }
        comment("BRING THE TOOL TO WHERE THE BLOCK MAY START, THEN CYCLE START");
    }
    put("M0");
}

/// The greatest speed comes first, and a speed without it never where it depends on the diameter. A
/// mill stops its spindle to change the tool.
void Proposal_writer::write_spindle() {
    const Setting& mode = state_[Modal::speed_mode];
    const Setting& limit = state_[Modal::speed_limit];
    const bool constant_surface = !mode.word.empty() && (!mode.known() || mode.code == 960);
    if (limit.known()) {
        put(limit.word);
    } else if (!limit.word.empty() || constant_surface) {
        check(Modal::speed_limit);
    }
    const bool sure =
        state_[Modal::speed].known() && (!constant_surface || (mode.known() && limit.known()));
    std::string words;
    if (sure) {
        words = (mode.known() ? mode.word + ' ' : "") + state_[Modal::speed].word;
    } else if (spindle_turns() || !state_[Modal::speed].word.empty()) {
        check(Modal::speed);
        check(Modal::speed_mode);
    }
    if (sure && spindle_turns() && !stops_to_change()) {
        words += ' ' + state_[Modal::spindle].word;
    } else if (!changes_tool() || state_.active(Modal::spindle)) {
        check(Modal::spindle);
    }
    if (!words.empty()) {
        put(words);
    }
}

std::string Proposal_writer::last_position() const {
    std::string words;
    for (const auto& [letter, axis] : axis_letters) {
        const Setting& place = state_[axis];
        if (place.known()) {
            words += ' ' + place.word;
        } else if (!place.word.empty()) {
            words += ' ' + std::string(1, letter) + " NOT SURE";
        }
    }
    return words.empty() ? " NOT KNOWN" : words;
}

/// X and Y at the height where the operator has put the tool, then down: in rapid no lower than the
/// program itself went with this tool, from there in feed.
void Proposal_writer::write_moves() {
    put("G0 " + state_[Modal::x].word + ' ' + state_[Modal::y].word);
    if (state_.active(Modal::length_comp)) {
        put(state_[Modal::length_comp].word + ' ' + state_[Modal::length_number].word + ' ' +
            state_.clearance.word);
    }
    write_coolant();
    if (state_.clearance.known() && state_.clearance.word == state_[Modal::z].word) {
        return;  // the tool is there already
    }
    comment("FEED DOWN TO WHERE THE PROGRAM WAS - CHECK THAT THE TOOL CAN ENTER");
    put("G1 " + state_[Modal::z].word + ' ' + state_[Modal::feed].word);
    feed_given_ = true;
}

void Proposal_writer::write_coolant() {
    for (const Modal modal : {Modal::mist, Modal::flood}) {
        const Setting& coolant = state_[modal];
        if (state_.on(modal) && coolant.known() && !stops_to_change()) {
            put(coolant.word);
        } else if (state_.active(modal)) {
            check(modal);
        }
    }
}

/// What the block chosen takes for granted.
void Proposal_writer::write_return_to_program() {
    const Setting& distance = state_[Modal::distance];
    const bool has_one = milling_ || !distance.word.empty();
    if (distance.known() && (distance.code != 900 || !milling_)) {
        put(distance.word);
    } else if (has_one && !distance.known()) {
        check(Modal::distance);
    }
    write_motion();
}

void Proposal_writer::write_motion() {
    if (state_.on(Modal::cycle)) {
        comment("THE CYCLE IS NOT CALLED AGAIN, " + line_text(state_[Modal::cycle].line));
    }
    const Setting& own = reading_.after()[Modal::motion];
    const bool given = !own.word.empty() && own.line >= reading_.block_line() && !block_.skip;
    const bool needed = block_.has_axes() || !state_[Modal::motion].word.empty();
    const bool runs_cycle = state_.on(Modal::cycle) && state_[Modal::cycle].known();
    std::string words;
    if (!given && needed && runs_cycle) {
        check(Modal::motion);
    } else if (!given && needed) {
        words = motion_word();
    }
    const std::string feed = feed_word();
    words += (words.empty() || feed.empty() ? "" : " ") + feed;
    if (!words.empty()) {
        put(words);
    }
}

/// Nothing where the blocks give one before they need it.
std::string Proposal_writer::feed_word() {
    if (feed_given_ || (block_['F'] && !block_.skip)) {
        return {};
    }
    const Setting& feed = state_[Modal::feed];
    if (feed.known() && state_[Modal::feed_mode].code != 930) {
        return feed.word;
    }
    check(Modal::feed);
    return {};
}

/// The straight motion that a block without one of its own takes for granted, or one of those that
/// follow it. An arc's G2 says nothing without the arc.
std::string Proposal_writer::motion_word() {
    const Setting& motion = state_[Modal::motion];
    if (motion.known() && (motion.code == 0 || motion.code == 10)) {
        return motion.code == 10 && feed_given_ ? "" : motion.word;
    }
    check(Modal::motion);
    return {};
}

}  // namespace

Start_proposal propose_start(const Start_reading& reading) {
    return Proposal_writer(reading).written();
}

}  // namespace kelvane

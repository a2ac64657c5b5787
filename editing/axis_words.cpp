#include "editing/axis_words.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kelvane {

namespace {

constexpr std::array<std::pair<char, Modal>, 3> secondary_axes = {
    {{'U', Modal::x}, {'V', Modal::y}, {'W', Modal::z}}};

/// Reads one block's axis words.
class Axis_words {
  public:
    Axis_words(Axes axes, Machining machining, Modal_memory& memory)
        : axes_(axes), machining_(machining), memory_(memory) {}

    void read(const Block_words& block);

  private:
    void run_cycle(const Block_words& block);
    void read_axis(Modal axis, const Block_word& word);
    void set_place(Modal axis, const Block_word& word);
    void read_incremental(Modal axis, const Block_word* word);

    Axes axes_;
    Machining machining_;
    Modal_memory& memory_;
};

void Axis_words::read(const Block_words& block) {
    const bool draws = machining_ == Machining::turning && (block['X'] || block['Z']);
    for (const auto& [letter, axis] : axis_letters) {
        // Beside X or Z a lathe's A is an angle and its C a chamfer.
        const bool of_drawing = draws && (axis == Modal::a || axis == Modal::c);
        if (block[letter] && !of_drawing) {
            read_axis(axis, *block[letter]);
        }
    }
    for (const auto& [letter, axis] : secondary_axes) {
        read_incremental(axis, block[letter]);
    }
    if (block.has_axes() && memory_.state().active(Modal::cycle) && axes_ == Axes::positions) {
        run_cycle(block);
    }
}

/// A cycle runs along its own axis, which its block need not name.
void Axis_words::run_cycle(const Block_words& block) {
    const int plane = memory_.state()[Modal::plane].code;
    memory_.doubt(plane == 180 ? Modal::y : plane == 190 ? Modal::x : Modal::z, Doubt::cycle);
    if (is_given_as_zero(block['K']) || is_given_as_zero(block['L'])) {
        memory_.doubt_positions(Doubt::cycle);  // done no times: nothing needs to move
    }
}

void Axis_words::read_axis(Modal axis, const Block_word& word) {
    const Setting before = memory_.state()[axis];
    set_place(axis, word);
    const Setting& now = memory_.state()[axis];
    const bool is_rotary =
        std::find(rotary_axes.begin(), rotary_axes.end(), axis) != rotary_axes.end();
    if (is_rotary && (!now.known() || (!before.word.empty() && before.word != now.word))) {
        memory_.note_line(&Program_survey::first_turn);
    }
}

void Axis_words::set_place(Modal axis, const Block_word& word) {
    if (axes_ == Axes::reference) {
        memory_.doubt(axis, Doubt::reference);
        return;
    }
    const Doubt why = word.computed            ? Doubt::variable
                      : word.number.empty()    ? Doubt::unread
                      : axes_ == Axes::unknown ? Doubt::maker_differs
                                               : position_doubt(memory_.state(), machining_);
    if (why == Doubt::incremental) {
        memory_.doubt(axis, why);  // what it was before is worth showing
        return;
    }
    memory_.set(axis, word_text(word));
    if (why != Doubt::none) {
        memory_.doubt(axis, why);
    }
}

/// U, V and W: on lathes X, Y and Z by a distance, on mills axes of their own on some.
void Axis_words::read_incremental(Modal axis, const Block_word* word) {
    if (!word) {
        return;
    }
    const bool turning = machining_ == Machining::turning;
    memory_.doubt(axis, axes_ == Axes::reference ? Doubt::reference
                        : turning                ? Doubt::incremental
                                                 : Doubt::maker_differs);
}

}  // namespace

void read_axes(const Block_words& block, Axes axes, Machining machining, Modal_memory& memory) {
    if (axes != Axes::nothing && axes != Axes::shift) {
        Axis_words(axes, machining, memory).read(block);
    }
}

void read_shift(const Block_words& block, std::string_view g_word, Modal_memory& memory) {
    std::string text(g_word);
    if (const Block_word* const limit = block['S']) {
        memory.set(Modal::speed_limit, text + ' ' + word_text(*limit));
        if (limit->computed) {
            memory.doubt(Modal::speed_limit, Doubt::variable);
        }
        if (!block.has_axes()) {
            return;
        }
    }
    const std::string& shifted = memory.state()[Modal::local_shift].word;
    const bool stays = g_word == "G52" && !shifted.empty() && !shifted.starts_with("G52");
    if (stays) {  // what has set the zero point itself
        text.insert(0, shifted.substr(0, shifted.find(" G52")) + ' ');
    }
    bool ends = g_word == "G52" && !stays;
    for (const auto& [letter, axis] : axis_letters) {
        const Block_word* const word = block[letter];
        if (word != nullptr) {
            text += ' ' + word_text(*word);
        }
        const bool to_zero = is_given_as_zero(word);
        const bool named = word != nullptr || shifted.find(letter) != std::string::npos;
        ends = ends && (to_zero || !named);
    }
    memory.set(Modal::local_shift, text, ends ? no_shift : -1);
    memory.doubt_positions(Doubt::offset_change);
}

}  // namespace kelvane

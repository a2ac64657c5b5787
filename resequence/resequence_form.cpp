#include "resequence/resequence_form.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/basic_text.h"
#include "session/file_names.h"

namespace kelvane {

namespace {

/// As `whole_number`, for numbers longer than an `int`.
std::int64_t block_number(const Text_box& box) {
    constexpr double greatest = 1e15;
    return std::llrint(std::clamp(Val(box.text()), -greatest, greatest));
}

/// The next field into a control, which keeps its value when there is none.
void read(Text_reader& reader, Check_box& box) {
    int value = box.value();
    reader.field_number(value);
    box.set_value(value);
}

void read(Text_reader& reader, Text_box& box) {
    std::string text = box.text();
    reader.text_field(text);
    box.set_text(std::move(text));
}

void read(Text_reader& reader, Scroll_bar& bar) {
    int value = bar.value();
    reader.field_number(value);
    bar.set_value(value);
}

}  // namespace

resequence_form_lite::resequence_form_lite(Platform& platform, Transfer_control& control)
    : Form(platform.windows, "resequence_form_lite", "Resequence"),
      tasks(platform.loop),
      loop_(platform.loop),
      files_(platform.files),
      control_(control),
      looking_(platform.loop) {
    preview_note.plain = true;
    attach_handlers();
}

void resequence_form_lite::attach_handlers() {
    for (Text_box* box : {&start_txt, &increment_txt, &Maximum_txt, &digits_txt}) {
        box->accepts_key = is_digit;
    }
    for (Text_box* box :
         {&start_txt, &increment_txt, &Maximum_txt, &N_character_txt, &Add_to_txt}) {
        box->on_change = [this] { update_preview(); };
    }
    for (Check_box* box :
         {&chk_leading_zeros, &chk_add_space, &Chk_Ns_only, &chk_t_codes, &chk_IDline, &chk_blanks,
          &chk_comments, &chk_comments2, &Chk_Dynapath, &Chk_OsameasN, &Chk_HwithW, &chk_Add_to}) {
        box->on_click = [this] { update_preview(); };
    }
    chk_gotos.on_click = [this] {
        if (chk_gotos.checked()) {
            Maximum_txt.set_text({});
        }
        update_preview();
    };
    VScroll1.on_change = [this] {
        if (!settling_) {
            digits_txt.set_text(decimal(VScroll1.value()));
        }
    };
    digits_txt.on_change = [this] {
        if (!settling_) {
            settling_ = true;
            VScroll1.set_value(whole_number(digits_txt.text()));
            settling_ = false;
            update_preview();
        }
    };
    Cancel_button.on_click = [this] { close(); };
}

void resequence_form_lite::close() {
    if (running == 1) {
        control_.give_up();
    } else {
        unload();
    }
}

void resequence_form_lite::on_load() {
    renumbered = false;
    settling_ = true;
    set_defaults();
    read_options_file();
    settling_ = false;
    const std::string copy = files_.program_path(file_names::scratch);
    program_ = files_.read(copy).value_or(std::string());
    update_preview();
}

void resequence_form_lite::on_unload() {
    tasks.end_all();
    write_options_file();
    looking_.end_all();
    program_ = std::string();
}

void resequence_form_lite::set_defaults() {
    for (Check_box* box : {&chk_t_codes, &chk_blanks, &chk_comments, &chk_comments2, &Chk_Dynapath,
                           &Chk_OsameasN, &Chk_HwithW, &chk_Add_to}) {
        box->set_checked(false);
    }
    Add_to_txt.set_text({});
    VScroll1.set_value(3);
    digits_txt.set_text("3");
    chk_leading_zeros.set_checked(true);
    increment_txt.set_text("10");
    start_txt.set_text("10");
    chk_IDline.set_checked(true);
    chk_gotos.set_checked(false);
    chk_add_space.set_checked(true);
    chk_gotos.set_checked(true);
    Maximum_txt.set_text({});
    Chk_Ns_only.set_checked(false);
    N_character_txt.set_text("N");
}

void resequence_form_lite::read_options_file() {
    auto content = files_.read(files_.program_path(file_names::resequence_options));
    unread_ = content.unreadable();
    Text_reader reader(std::move(content));
    std::string reserved;
    reader.field(reserved);
    reader.field(reserved);
    for (Check_box* box : {&chk_t_codes, &chk_comments, &chk_comments2, &chk_blanks, &chk_IDline,
                           &chk_gotos, &chk_add_space}) {
        read(reader, *box);
    }
    read(reader, increment_txt);
    read(reader, start_txt);
    read(reader, chk_leading_zeros);
    read(reader, digits_txt);
    read(reader, VScroll1);
    read(reader, chk_Add_to);
    read(reader, Add_to_txt);
    // Older files hold a check box's value in the place of the character.
    std::string character = N_character_txt.text();
    reader.text_field(character);
    if (trimmed(character) != "1" && trimmed(character) != "0") {
        N_character_txt.set_text(character);
    }
    for (Check_box* box : {&Chk_OsameasN, &Chk_HwithW, &Chk_Ns_only, &Chk_Dynapath}) {
        read(reader, *box);
    }
}

void resequence_form_lite::write_options_file() {
    if (unread_) {
        return;
    }
    Text_writer writer;
    writer.line("0").line("0");
    for (const Check_box* box : {&chk_t_codes, &chk_comments, &chk_comments2, &chk_blanks,
                                 &chk_IDline, &chk_gotos, &chk_add_space}) {
        writer.number_line(box->value());
    }
    writer.line(increment_txt.text()).line(start_txt.text());
    writer.number_line(chk_leading_zeros.value()).line(digits_txt.text());
    writer.number_line(VScroll1.value()).number_line(chk_Add_to.value());
    writer.line(Add_to_txt.text()).line(N_character_txt.text());
    for (const Check_box* box : {&Chk_OsameasN, &Chk_HwithW, &Chk_Ns_only, &Chk_Dynapath}) {
        writer.number_line(box->value());
    }
    // Options that cannot be kept are the defaults next time; nothing is lost that matters.
    static_cast<void>(
        files_.replace(files_.program_path(file_names::resequence_options), writer.text()));
}

Resequence_options resequence_form_lite::options() const {
    Resequence_options options;
    options.start = block_number(start_txt);
    options.increment = block_number(increment_txt);
    options.maximum = block_number(Maximum_txt);
    options.leading_zeros = chk_leading_zeros.checked();
    options.digits = whole_number(digits_txt.text());
    options.add_space = chk_add_space.checked();
    options.decimal_numbers = Chk_Dynapath.checked();
    options.n_character = N_character_txt.text();
    options.n_lines_only = Chk_Ns_only.checked();
    options.t_lines_only = chk_t_codes.checked();
    options.skip_id_lines = chk_IDline.checked();
    options.blank_lines = chk_blanks.checked();
    options.comments = chk_comments.checked();
    options.bracket_comments = chk_comments2.checked();
    options.gotos = chk_gotos.checked();
    options.o_same_as_n = Chk_OsameasN.checked();
    options.h_with_w = Chk_HwithW.checked();
    options.add_to = chk_Add_to.checked() ? Add_to_txt.text() : std::string();
    return options;
}

void resequence_form_lite::update_preview() {
    if (settling_) {
        return;
    }
    looking_.end_all();
    if (program_.size() > quick_preview_length) {
        show_preview(preview_start(program_, options()));
        looking_.start(look_at_whole_program(options()));
    } else {
        show_preview(at_once(preview_resequencing(program_, options(), {})));
    }
}

Task<> resequence_form_lite::look_at_whole_program(Resequence_options options) {
    Resequence_progress progress = [this](int /*percent*/) { return let_others_go_first(); };
    const Task<Resequence_preview> work =
        preview_resequencing(program_, std::move(options), std::move(progress));
    const Resequence_preview preview = co_await work;
    show_preview(preview);
}

Task<bool> resequence_form_lite::let_others_go_first() {
    co_await loop_.breath();
    while (running == 1 || control_.busy() == 1) {
        co_await loop_.next();
    }
    co_return true;
}

void resequence_form_lite::show_preview(const Resequence_preview& preview) {
    preview_before.set_items(preview.before);
    preview_after.set_items(preview.after);
    preview_note.set_caption(preview.note);
}

}  // namespace kelvane

#include "simulated_machine/options.h"

#include <charconv>
#include <span>
#include <string_view>

namespace kelvane::simulated {

namespace {

constexpr std::string_view introduction =
    R"(simulated_machine: a CNC control on a pseudo-terminal, for trying out a sender without hardware.

The first line of standard output is the terminal to open as the serial port. The machine waits
until that is opened, does its jobs one after the other, and ends. Between two jobs the partner
closes the port and opens it again.

  simulated_machine --link /tmp/mill --read program.nc
  simulated_machine --baud 4800 --code eia --punch program.nc
  simulated_machine --link /tmp/mill --serve /tmp/mill-memory
)";

constexpr std::string_view conclusion = R"(
Text in --eob and --switchbox may hold characters as <decimal code>, for example <18>.

Exit status: 0 jobs done   1 file or terminal trouble   2 options not understood
  3 alarm: too many characters after DC3   4 alarm: parity   5 alarm: input buffer overrun
  6 the partner closed the line too early   7 hung up (--hang-up-after)   8 --timeout passed
  9 ended by SIGTERM or SIGINT (0 with --serve and --loop, where that is the normal end)
)";

template <typename Number>
std::optional<Number> number_in(std::string_view text, Number least, Number most) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc{} && end == text.data() + text.size();
    return whole && value >= least && value <= most ? std::optional(value) : std::nullopt;
}

template <typename Number, typename Field>
bool set_number(Field& field, std::string_view text, Number least, Number most) {
    const std::optional<Number> value = number_in<Number>(text, least, most);
    if (value) {
        field = Field(*value);
    }
    return value.has_value();
}

bool set_count(std::size_t& field, std::string_view text, std::size_t least = 0) {
    return set_number<std::size_t>(field, text, least, 1'000'000'000);
}

bool set_milliseconds(std::chrono::milliseconds& field, std::string_view text) {
    return set_number<long>(field, text, 0, 86'400'000);
}

// "<18>" becomes the character 18; anything else stands for itself.
std::optional<std::string> characters_of(std::string_view notation) {
    std::string text;
    while (!notation.empty()) {
        if (notation.front() != '<') {
            text += notation.front();
            notation.remove_prefix(1);
            continue;
        }
        const std::size_t end = notation.find('>');
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        const std::optional<int> value = number_in<int>(notation.substr(1, end - 1), 0, 255);
        if (!value) {
            return std::nullopt;
        }
        text += static_cast<char>(*value);
        notation.remove_prefix(end + 1);
    }
    return text;
}

bool set_characters(std::string& field, std::string_view notation) {
    const std::optional<std::string> text = characters_of(notation);
    if (text) {
        field = *text;
    }
    return text && !text->empty();
}

bool set_end_of_block(Options& options, std::string_view text) {
    struct Named {
        std::string_view name, characters;
    };
    static constexpr Named named[] = {
        {"lf", "\n"}, {"cr", "\r"}, {"lfcr", "\n\r"}, {"crlf", "\r\n"}};
    for (const Named& entry : named) {
        if (entry.name == text) {
            options.end_of_block = entry.characters;
            return true;
        }
    }
    return set_characters(options.end_of_block, text);
}

bool set_code(Options& options, std::string_view text) {
    struct Named {
        std::string_view name;
        Tape_code code;
    };
    static constexpr Named named[] = {{"even", Tape_code::even},
                                      {"odd", Tape_code::odd},
                                      {"none", Tape_code::none},
                                      {"eia", Tape_code::eia},
                                      {"binary", Tape_code::none}};
    for (const Named& entry : named) {
        if (entry.name == text) {
            options.code = entry.code;
            options.binary = options.binary || text == "binary";
            return true;
        }
    }
    return false;
}

bool add_job(Options& options, bool reads, std::string_view file) {
    options.jobs.push_back({reads, std::string(file), ""});
    return !file.empty();
}

bool set_raw(Options& options, std::string_view file) {
    if (options.jobs.empty() || !options.jobs.back().reads) {
        return false;
    }
    options.jobs.back().raw = file;
    return true;
}

struct Option {
    std::string_view name;
    std::string_view value;  // placeholder; empty for a switch
    bool (*set)(Options&, std::string_view);
    std::string_view help;
};

using View = std::string_view;

constexpr Option option_table[] = {
    {"--read", "FILE", [](Options& o, View v) { return add_job(o, true, v); },
     "job: ask for a program with DC1 and save its text, lines ending CR LF"},
    {"--raw", "FILE", [](Options& o, View v) { return set_raw(o, v); },
     "save the bytes of the line too (belongs to the --read before it)"},
    {"--punch", "FILE", [](Options& o, View v) { return add_job(o, false, v); },
     "job: punch a program; \"%\" is put around one that does not begin with it"},
    {"--loop", "", [](Options& o, View) { return o.loop = true; }, "do the jobs again and again"},
    {"--serve", "DIR", [](Options& o, View v) { return !(o.serve = v).empty(); },
     "take orders from standard input (type help); programs live in DIR; reads unasked whatever is "
     "sent; SIGUSR1 punches the last program back, SIGUSR2 asks for one"},
    {"--link", "PATH", [](Options& o, View v) { return !(o.link = v).empty(); },
     "make a symbolic link to the terminal, removed at the end"},
    {"--report", "FILE", [](Options& o, View v) { return !(o.report = v).empty(); },
     "write what happened as key=value lines, a paragraph a job (else to standard error)"},
    {"--timeout", "S", [](Options& o, View v) { return set_number<long>(o.timeout, v, 1, 86400); },
     "end after S seconds whatever happens"},
    {"--linger-ms", "N", [](Options& o, View v) { return set_milliseconds(o.linger, v); },
     "after the last job wait at most N ms for the partner to close the line (10000)"},
    {"--keep-session", "", [](Options& o, View) { return o.keep_session = true; },
     "start the next job without waiting for the partner to close and reopen the line"},

    {"--baud", "N", [](Options& o, View v) { return set_number<long>(o.baud, v, 50, 4'000'000); },
     "speed of the line (9600)"},
    {"--stop-bits", "N", [](Options& o, View v) { return set_number<int>(o.stop_bits, v, 1, 2); },
     "1 or 2: a character takes 10 or 11 bits (1)"},
    {"--code", "CODE", [](Options& o, View v) { return set_code(o, v); },
     "tape code: even, odd, none, eia or binary (even)"},
    {"--binary", "", [](Options& o, View) { return o.binary = true; },
     "programs are bytes as they stand; the tape code only serves DC1, DC3 and the switchbox"},
    {"--eob", "EOB", [](Options& o, View v) { return set_end_of_block(o, v); },
     "end of block: lf, cr, lfcr, crlf or a text (crlf); an EIA machine always uses 128"},
    {"--switchbox", "SEQ", [](Options& o, View v) { return set_characters(o.switchbox, v); },
     "a switchbox stands in front: nothing passes until SEQ has gone by in the tape code"},
    {"--attentive", "", [](Options& o, View) { return o.attentive = true; },
     "watch the line without sleeping: what comes in is seen in microseconds, for a processor"},
    {"--hang-up-after", "N", [](Options& o, View v) { return set_count(o.hang_up_after, v, 1); },
     "pull the adapter out after N bytes in either direction"},
    {"--start-delay", "MS", [](Options& o, View v) { return set_milliseconds(o.start_delay, v); },
     "from the opening of the line (or the switchbox) to the first DC1 or DC2 (300)"},

    {"--buffer", "N", [](Options& o, View v) { return set_count(o.buffer, v, 1); },
     "size of the input buffer (1024)"},
    {"--high-water", "N", [](Options& o, View v) { return set_count(o.high_water, v, 1); },
     "sends DC3 at this filling (three quarters of the buffer)"},
    {"--low-water", "N", [](Options& o, View v) { return set_count(o.low_water, v, 1); },
     "sends DC1 when drained to this (a quarter of the buffer)"},
    {"--drain", "N", [](Options& o, View v) { return set_number<double>(o.drain, v, 0.0, 1e9); },
     "characters a second that the control uses up; 0 for at once (0)"},
    {"--alarm-after", "N", [](Options& o, View v) { return set_count(o.alarm_after, v); },
     "alarm when more than N characters arrive after DC3 has reached the partner (10)"},
    {"--fifo", "N", [](Options& o, View v) { return set_count(o.fifo, v); },
     "as many more are forgiven, for the FIFO of the partner's port (0)"},
    {"--silent", "", [](Options& o, View) { return o.silent = true; }, "never sends Xon"},
    {"--ask-again", "MS", [](Options& o, View v) { return set_milliseconds(o.ask_again, v); },
     "repeats the first DC1 until something comes; 0 for once (3000)"},
    {"--pause-at", "N", [](Options& o, View v) { return set_count(o.pause_at, v, 1); },
     "sends Xoff at the Nth byte ..."},
    {"--pause-ms", "M", [](Options& o, View v) { return set_milliseconds(o.pause, v); },
     "... and Xon M ms later"},
    {"--label-skip", "", [](Options& o, View) { return o.label_skip = true; },
     "ignore what comes before the \"%\" block: a leader in readable letters"},
    {"--dc3-after-percent", "", [](Options& o, View) { return o.dc3_after_percent = true; },
     "sends DC3 right after the closing \"%\" (else after 300 ms of silence)"},
    {"--idle-ms", "N", [](Options& o, View v) { return set_milliseconds(o.idle, v); },
     "silence that ends a program without closing \"%\"; 0 for never (3000)"},

    {"--leader", "N", [](Options& o, View v) { return set_count(o.leader, v); },
     "leader of N blanks (60)"},
    {"--leader-byte", "N",
     [](Options& o, View v) { return set_number<std::uint8_t>(o.leader_byte, v, 0, 255); },
     "what leader and trailer consist of (0; some EIA machines: 128)"},
    {"--trailer", "N", [](Options& o, View v) { return set_count(o.trailer, v); },
     "trailer of N blanks (60)"},
    {"--bare", "", [](Options& o, View) { return o.bare = true; },
     "punch the file alone: no DC2, leader, added \"%\", trailer, DC4 (always so with --binary)"},
    {"--dc2-until-answered", "", [](Options& o, View) { return o.dc2_until_answered = true; },
     "repeat DC2 every 3 s and punch only when Xon answers it"},
    {"--full-speed", "", [](Options& o, View) { return o.full_speed = true; },
     "punch as fast as the terminal takes it"},
};

std::string help_text() {
    constexpr std::size_t column = 24;
    constexpr std::size_t width = 98;
    std::string text(introduction);
    for (const Option& option : option_table) {
        std::string line = "\n  " + std::string(option.name) + " " + std::string(option.value);
        line.resize(std::max(line.size() + 1, column + 1), ' ');
        View rest = option.help;
        while (rest.size() > width - column) {
            const std::size_t cut = rest.rfind(' ', width - column);
            line += std::string(rest.substr(0, cut)) + "\n" + std::string(column, ' ');
            rest.remove_prefix(cut + 1);
        }
        text += line + std::string(rest);
    }
    return text + "\n" + std::string(conclusion);
}

const Option* find_option(View name) {
    for (const Option& option : option_table) {
        if (option.name == name) {
            return &option;
        }
    }
    return nullptr;
}

// Takes the first option off the arguments; the complaint when it cannot be taken.
std::string take_option(Options& options, std::span<const std::string>& arguments) {
    const std::string& name = arguments.front();
    const Option* option = find_option(name);
    if (option == nullptr) {
        return "unknown option " + name;
    }
    const std::size_t taken = option->value.empty() ? 1 : 2;
    if (arguments.size() < taken) {
        return name + " needs a value (" + std::string(option->value) + ")";
    }
    if (!option->set(options, taken == 2 ? View(arguments[1]) : View())) {
        return name + ": \"" + arguments[1] + "\" will not do: " + std::string(option->help);
    }
    arguments = arguments.subspan(taken);
    return "";
}

void fill_in(Options& options) {
    if (options.high_water == 0) {
        options.high_water = std::max<std::size_t>(1, options.buffer * 3 / 4);
    }
    if (options.low_water == 0) {
        options.low_water = std::min(options.buffer / 4, options.high_water - 1);
    }
    if (options.code == Tape_code::eia) {
        options.end_of_block = "\n";
    }
}

std::string complaint_about(const Options& options) {
    if (options.jobs.empty() == options.serve.empty()) {
        return "give at least one --read or --punch, or else --serve";
    }
    if (options.high_water > options.buffer || options.low_water >= options.high_water) {
        return "the marks must be --low-water < --high-water <= --buffer";
    }
    if ((options.pause_at == 0) != (options.pause == std::chrono::milliseconds(0))) {
        return "--pause-at and --pause-ms belong together";
    }
    return "";
}

}  // namespace

Parsed parse_options(const std::vector<std::string>& arguments) {
    Options options;
    std::string complaint;
    std::span<const std::string> rest(arguments);
    while (!rest.empty() && complaint.empty()) {
        if (rest.front() == "--help" || rest.front() == "-h") {
            return {std::nullopt, true, help_text()};
        }
        complaint = take_option(options, rest);
    }
    if (complaint.empty()) {
        fill_in(options);
        complaint = complaint_about(options);
    }
    if (!complaint.empty()) {
        return {std::nullopt, false, complaint + "\n(--help explains the options)\n"};
    }
    return {options, false, ""};
}

}  // namespace kelvane::simulated

#include "desktop/qt_serial_port.h"

#include <QFile>
#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <unistd.h>
#include <utility>

#include "desktop/line_speed.h"
#include "desktop/serial_line.h"

namespace kelvane {

namespace {

using namespace std::chrono_literals;

/// The sender hands over its next chunk when no more than so many characters wait.
constexpr std::size_t room_for_next = 2;
/// CTS tells nobody that it has changed: a sender that waits for it looks so often.
constexpr Clock_time cts_interval = 5ms;
/// So often a driver is looked at that is slower than its line's nominal speed, or is held.
constexpr Clock_time driver_interval = 1ms;
/// So long after the reckoned end of a send its last characters are taken to be in the chip; then a
/// driver that can tell is asked in this interval. One that never says so is not believed for
/// longer than `empty_patience` after the line must be at rest.
constexpr Clock_time empty_interval = 2ms;
constexpr Clock_time empty_patience = 1s;
/// At most so many bytes are read in one go, so that a line that never pauses cannot hold the rest
/// of the program.
constexpr std::size_t read_limit = 1U << 18U;

QSerialPort::Parity parity_of(char letter) {
    switch (letter) {
        case 'E':
            return QSerialPort::EvenParity;
        case 'O':
            return QSerialPort::OddParity;
        case 'M':
            return QSerialPort::MarkParity;
        case 'S':
            return QSerialPort::SpaceParity;
        default:
            return QSerialPort::NoParity;
    }
}

}  // namespace

Qt_serial_port::Qt_serial_port(Qt_event_loop& loop) : loop_(loop) {
    loop_.sleep_limit = [this] { return sleep_limit(); };
    // A line that has gone reports errors for ever. Closing it must wait until the report is over.
    look_again_.setSingleShot(true);
    QObject::connect(&look_again_, &QTimer::timeout, [this] { receive(); });
    QObject::connect(&port_, &QSerialPort::errorOccurred, [this](auto error) {
        if (error != QSerialPort::NoError && port_.isOpen()) {
            look_again_.start(0);
        }
    });
}

Qt_serial_port::~Qt_serial_port() {
    shut();
    loop_.sleep_limit = nullptr;
}

Result<> Qt_serial_port::open(const Port_settings& settings) {
    close();
    lost_.reset();
    received_.clear();
    settings_ = settings;
    const auto line = parse_line_settings(settings.settings);
    if (!line) {
        return Failure{"\"" + settings.settings + "\" is no setting of a serial line."};
    }
    const std::string& device = settings.device;
    port_.setPortName(QFile::decodeName(device.c_str()));
    set_frame(*line);
    if (!port_.open(QIODevice::ReadWrite)) {
        return open_failure(device);
    }
    const int actual = line_speed(handle()).value_or(line->baud);
    if (std::string trouble = speed_trouble(device, line->baud, actual); !trouble.empty()) {
        set_modem_lines(handle(), false);
        port_.close();
        return Failure{std::move(trouble)};
    }
    prepare_open_line(device);
    start_clock(actual, line->bits_per_character());
    return {};
}

void Qt_serial_port::set_frame(const Line_settings& line) {
    port_.setBaudRate(line.baud);
    port_.setDataBits(static_cast<QSerialPort::DataBits>(line.data_bits));
    port_.setParity(parity_of(line.parity));
    port_.setStopBits(line.stop_bits == 1 ? QSerialPort::OneStop : QSerialPort::TwoStop);
    port_.setFlowControl(QSerialPort::NoFlowControl);
}

Failure Qt_serial_port::open_failure(const std::string& device) const {
    const bool refused = port_.error() == QSerialPort::PermissionError;
    return {explain_open_failure(device, refused, port_.errorString().toStdString())};
}

void Qt_serial_port::prepare_open_line(const std::string& device) {
    port_.clear(QSerialPort::AllDirections);
    set_driver_handshaking(handle(), settings_);
    set_modem_lines(handle(), true);
    ask_for_low_latency(handle());
    static_cast<void>(set_receive_trigger(device));
    urgent_.emplace();
    received_.reserve(settings_.in_buffer_size);
    cts_.start(counts_cts_changes(device));
    errors_at_open_ = driver_counts(handle()).value_or(Driver_counts()).errors;
    errors_at_close_ = errors_at_open_;
    discarded_nulls_ = 0;
}

void Qt_serial_port::start_clock(int baud, int bits) {
    characters_per_second_ = static_cast<double>(baud) / bits;
    wire_.start(baud, bits);
    driver_count_ = 0;
    waits_for_cts_ = false;
    waits_for_rest_ = false;
    at_rest_ = true;
}

void Qt_serial_port::close() {
    shut();
}

void Qt_serial_port::shut() {
    if (!port_.isOpen()) {
        return;
    }
    const bool output_left = port_.bytesToWrite() > 0 || wire_.queued(loop_.now()) > 0 ||
                             driver_queue(handle()).value_or(0) > 0;
    errors_at_close_ = driver_counts(handle()).value_or(Driver_counts{0, errors_at_open_}).errors;
    if (output_left) {
        // With output left, the system's close can wait half a minute for a machine that holds us.
        port_.clear(QSerialPort::Output);
    }
    set_modem_lines(handle(), false);
    port_.close();
    urgent_.reset();
    received_.clear();
}

void Qt_serial_port::lose() {
    const std::string kept = received_;
    shut();
    received_ = kept;
    lost_ = settings_.device + " has gone: the adapter was pulled out or the line hung up.";
}

Line_errors Qt_serial_port::line_errors() const {
    const Line_errors& from = errors_at_open_;
    const Line_errors to = is_open()
                               ? driver_counts(handle()).value_or(Driver_counts{0, from}).errors
                               : errors_at_close_;
    return {to.framing - from.framing, to.parity - from.parity, to.overrun - from.overrun,
            to.breaks - from.breaks};
}

void Qt_serial_port::tell(Line_direction direction, std::string_view bytes) const {
    if (on_crossing && !bytes.empty()) {
        on_crossing(direction, bytes);
    }
}

void Qt_serial_port::store(std::string_view bytes) {
    tell(Line_direction::from_machine, bytes);
    if (settings_.null_discard) {
        const std::size_t before = received_.size();
        std::copy_if(bytes.begin(), bytes.end(), std::back_inserter(received_),
                     [](char byte) { return byte != '\0'; });
        discarded_nulls_ += bytes.size() - (received_.size() - before);
    } else {
        received_ += bytes;
    }
}

void Qt_serial_port::receive() {
    if (!port_.isOpen()) {
        return;
    }
    const QByteArray read_by_qt = port_.readAll();
    store({read_by_qt.constData(), static_cast<std::size_t>(read_by_qt.size())});
    // Bytes that have just come need not wait for the event loop: an Xoff among them is urgent.
    std::array<char, 4096> block{};
    Line_look line = look_at_line(handle());
    for (std::size_t total = 0; line.input && total < read_limit; line = look_at_line(handle())) {
        const ssize_t count = ::read(handle(), block.data(), block.size());
        if (count <= 0) {
            break;
        }
        store({block.data(), static_cast<std::size_t>(count)});
        total += static_cast<std::size_t>(count);
    }
    if (line.gone) {
        lose();
    }
}

std::size_t Qt_serial_port::in_buffer_count() {
    receive();
    return received_.size();
}

std::string Qt_serial_port::input(std::size_t most) {
    receive();
    const std::size_t count = most == 0 ? received_.size() : std::min(most, received_.size());
    std::string taken = received_.substr(0, count);
    received_.erase(0, count);
    return taken;
}

std::size_t Qt_serial_port::out_buffer_count() {
    if (!port_.isOpen()) {
        return 0;
    }
    const auto in_driver = driver_queue(handle());
    if (!in_driver) {
        lose();
        return 0;
    }
    driver_count_ = *in_driver + static_cast<std::size_t>(port_.bytesToWrite());
    const Clock_time now = loop_.now();
    const std::size_t queued = std::max(driver_count_, wire_.queued(now));
    waits_for_rest_ = queued == 0 && !at_rest(now);
    // One is in the adapter, which lets a sender go on, but not a port be closed.
    return waits_for_rest_ ? 1 : queued;
}

/// Nothing is queued any more, and what was has left the adapter. Asking may cost a USB transfer,
/// so a sender that is only late does not pay for it.
bool Qt_serial_port::at_rest(Clock_time now) {
    if (at_rest_ || wire_.time_until(0, now) + empty_interval > 0ms) {
        return at_rest_;
    }
    const auto empty = transmitter_empty(handle());
    const Clock_time overdue = -wire_.time_until_rest(now);
    at_rest_ = empty.value_or(overdue >= 0ms) || overdue >= empty_patience;
    return at_rest_;
}

void Qt_serial_port::output(std::string_view bytes) {
    if (!port_.isOpen() || bytes.empty()) {
        return;
    }
    const std::size_t count = bytes.size();
    at_rest_ = false;
    tell(Line_direction::to_machine, bytes);
    if (port_.bytesToWrite() == 0) {
        const ssize_t written = ::write(handle(), bytes.data(), bytes.size());
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    // What the driver has no room for goes through Qt's buffer, which refills the driver.
    if (!bytes.empty()) {
        port_.write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
    // Not before: a computer that does something else in between would have the clock run ahead of
    // the adapter, which would then keep more than is reckoned.
    wire_.sent(count, loop_.now());
}

bool Qt_serial_port::cts_holding() {
    waits_for_cts_ = true;
    if (!is_open()) {
        return false;
    }
    const auto counts = driver_counts(handle());
    const auto changes = counts ? std::optional(counts->cts_changes) : std::nullopt;
    if (const Clock_time now = loop_.now(); cts_.must_ask(changes, now)) {
        cts_.asked(changes, clear_to_send(handle()), now);
    }
    waits_for_cts_ = !cts_.clear();
    return cts_.clear();
}

std::optional<Machine_signals> Qt_serial_port::machine_signals() const {
    return is_open() ? modem_signals(handle()) : std::nullopt;
}

void Qt_serial_port::set_signal(Own_signal signal, bool on) {
    if (is_open()) {
        set_modem_line(handle(), signal, on);
    }
}

std::optional<Clock_time> Qt_serial_port::sleep_limit() {
    if (!port_.isOpen()) {
        return std::nullopt;
    }
    if (std::exchange(waits_for_cts_, false)) {
        return cts_interval;
    }
    const Clock_time now = loop_.now();
    const std::size_t queued = wire_.queued(now);
    if (queued > 0) {
        return wire_.time_until(queued > room_for_next ? room_for_next : 0, now);
    }
    if (std::exchange(waits_for_rest_, false)) {
        return empty_interval;
    }
    const std::size_t late = std::exchange(driver_count_, 0);
    return late > 0 ? std::optional(std::max(driver_interval, wire_.duration(late))) : std::nullopt;
}

}  // namespace kelvane

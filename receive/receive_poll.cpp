#include "receive/receive_poll.h"

#include <limits>
#include <utility>

#include "platform/basic_text.h"
#include "session/control_characters.h"
#include "session/line_trouble.h"

namespace kelvane {

Receive_poll::Receive_poll(const Session& session, Staging_file& staging,
                           const Transfer_options& options)
    : session_(session),
      control_(session.control),
      port_(session.port),
      staging_(staging),
      options_(options) {
    control_.listen({[this] { poll(); }, [this] { silent(); },
                     [this] { port_.output(std::string(1, options_.Xon_char)); }});
}

Receive_poll::~Receive_poll() {
    control_.end_listening();
}

Task<Collected> Receive_poll::run() {
    look();
    while (!end_) {
        co_await session_.loop.next();
        look();
    }
    co_return *end_;
}

// What a machine sends in one go is taken in one go, a DC2 with the data that follows it: so the
// poll comes some time after the first byte.
void Receive_poll::look() {
    if (stopped()) {
        end(Collected_end::stopped);
    } else if (!control_.polling() && (port_.in_buffer_count() > 0 || port_.lost())) {
        control_.set_polling(true);
    }
    if (RXbytecount_ == 0 && port_.discarded_nulls() > 0) {
        control_.set_advice(only_nulls);
    }
}

void Receive_poll::poll() {
    control_.set_polling(false);
    if (stopped()) {
        end(Collected_end::stopped);
        return;
    }
    const bool lost = port_.lost().has_value();
    if (port_.in_buffer_count() > 0) {
        take_waiting();
    }
    if (const auto settled = staging_.settle(); !settled) {
        end(Collected_end::unwritten, settled.reason());
    }
    if (lost) {
        end(Collected_end::line_lost);
    }
    control_.set_polling(!end_ && staging_.unsettled());
}

// Data that came in since the last poll means that the line was not silent: it is taken first, and
// the silence counts anew.
void Receive_poll::silent() {
    if (stopped() || port_.lost() || port_.in_buffer_count() > 0) {
        poll();
    } else {
        end(Collected_end::silence);
    }
}

void Receive_poll::take_waiting() {
    if (!std::exchange(heard_, true)) {
        session_.op.show_text("Receiving data ... 0 bytes");
        session_.op.beep();
    }
    const std::string data = port_.input(0);
    if (is_lone_dc2(data)) {
        control_.await_data_behind_dc2();
        return;
    }
    if (!store(data)) {
        return;
    }
    session_.op.show_text("Receiving data ..." + Str(RXbytecount_) + " bytes");
    control_.data_stored(data.size(), !options_.RX_until_aborted);
}

bool Receive_poll::is_lone_dc2(const std::string& data) const {
    return control_.receiving() == 0 && data.size() == 1 &&
           without_parity(data.front()) == control::dc2;
}

bool Receive_poll::store(const std::string& data) {
    const auto total = RXbytecount_ + static_cast<std::int64_t>(data.size());
    if (total > std::numeric_limits<std::int32_t>::max()) {
        end(Collected_end::overflow);
        return false;
    }
    if (const auto stored = staging_.append(data); !stored) {
        end(Collected_end::unwritten, stored.reason());
        return false;
    }
    last_data_ = session_.loop.now();
    first_data_ = RXbytecount_ == 0 ? last_data_ : first_data_;
    RXbytecount_ = total;
    return true;
}

/// The first reason holds: a full disk and a lost line together are told in one box.
void Receive_poll::end(Collected_end end, std::string reason) {
    if (!end_) {
        end_ = Collected{end, std::move(reason), RXbytecount_, last_data_ - first_data_};
    }
}

bool Receive_poll::stopped() const {
    return control_.escape() == 1 || control_.Stopped() == 1;
}

}  // namespace kelvane

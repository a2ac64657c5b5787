#include "receive/conversion.h"

#include "session/transfer_end.h"

namespace kelvane {

namespace {

constexpr std::size_t breath_every = 100;  // bytes

}  // namespace

std::optional<Received_code> code_of(std::string_view raw, const Transfer_options& options) {
    if (options.Use_auto_code_recognition) {
        return recognise_code(raw);
    }
    return Received_code{options.RX_code, static_cast<unsigned char>(options.RX_eob)};
}

Message unrecognised_box() {
    return critical_box("Cannot recognize received data.\nCheck I/O device settings.",
                        "Received data error");
}

Conversion_options conversion_options(const Transfer_options& options) {
    return {options.ignore_before, options.ignore_after, options.unwanted, options.RX_Mask};
}

Task<std::string> converted_text(Event_loop& loop, const Code_tables& tables, std::string_view raw,
                                 Received_code code, Conversion_options options) {
    Received_text text(raw, tables, code, options);
    while (!text.at_end()) {
        text.take(breath_every);
        co_await loop.breath();
    }
    co_return text.finish();
}

}  // namespace kelvane

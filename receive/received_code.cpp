#include "receive/received_code.h"

#include <string>

#include "session/control_characters.h"

namespace kelvane {

namespace {

constexpr std::size_t leader_run = 50;
constexpr char eia_end_of_block = '\x80';

bool is_line_end_in_any_parity(char byte) {
    const char bare = without_parity(byte);
    return bare == '\n' || bare == '\r';
}

}  // namespace

std::optional<Received_code> recognise_code(std::string_view sample) {
    sample = sample.substr(0, recognition_sample);
    const std::string leader(leader_run, eia_end_of_block);
    const bool has_leader = sample.find(leader) != std::string_view::npos;
    for (const char byte : sample) {
        if (is_line_end_in_any_parity(byte)) {
            return Received_code{receive_ascii, static_cast<unsigned char>(byte)};
        }
        if (byte == eia_end_of_block && !has_leader) {
            return Received_code{receive_eia, static_cast<unsigned char>(byte)};
        }
    }
    return std::nullopt;
}

}  // namespace kelvane

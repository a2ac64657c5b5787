#include "transmit/binary_send.h"

#include "platform/file_pieces.h"

namespace kelvane {

namespace {

constexpr std::size_t progress_step = 100;

}  // namespace

Task<Result<Binary_sent>> Sendit_Binary(const Session& session, const Transfer_options& options,
                                        Text_sender& sender, std::string path) {
    Transfer_control& control = session.control;
    const auto content = co_await read_in_pieces(session.loop, session.files, std::move(path));
    if (!content) {
        co_return content.failure();
    }
    control.expect(content->size(), 0);
    for (std::size_t sent = 0; sent < content->size(); ++sent) {
        if ((sent + 1) % progress_step == 0) {
            co_await session.loop.breath();
            session.op.set_progress(static_cast<int>(sent * 100 / content->size()));
        }
        const bool clear = co_await sender.wait_until_clear();
        if (!clear || (control.IOsend_cancel() == 1 && !options.Xonhs)) {
            co_return Binary_sent::part;
        }
        sender.put(std::string_view(*content).substr(sent, 1));
        control.count_program(sent + 1);
        if (options.Character_delay != 0) {
            co_await control.character_delay();
        }
    }
    co_return Binary_sent::all;
}

}  // namespace kelvane

#include "receive/staging_file.h"

#include "session/file_names.h"

namespace kelvane {

namespace {

constexpr Clock_time settle_interval = std::chrono::seconds(1);

}  // namespace

Staging_file::Staging_file(Files& files, Event_loop& loop)
    : files_(files), loop_(loop), path_(files.program_path(file_names::scratch)) {}

Result<> Staging_file::begin(const Unsaved_reception& reception) {
    unsettled_ = false;
    return files_.replace(path_, {}).and_then([&] { return begin_reception(files_, reception); });
}

Result<> Staging_file::append(std::string_view bytes) {
    if (!unsettled_) {
        unsettled_ = true;
        settled_ = loop_.now();
    }
    return files_.append(path_, bytes).and_then([this] { return settle(); });
}

Result<> Staging_file::settle() {
    if (!unsettled_ || loop_.now() - settled_ < settle_interval) {
        return {};
    }
    unsettled_ = false;
    return files_.sync(path_);
}

}  // namespace kelvane

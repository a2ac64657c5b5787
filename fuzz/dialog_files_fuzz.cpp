// The files of the dialogs: anything may stand in them; what a dialog has written it reads and
// writes as it is.

#include "fuzz_input.h"
#include "shop_whims.h"
#include "support/shop_floor.h"

namespace {

using namespace kelvane;
using namespace kelvane::testing;

constexpr std::string_view names[] = {file_names::page_layout, file_names::default_directories,
                                      file_names::default_file_types,
                                      file_names::resequence_options, file_names::settings};

/// The files after every dialog has been opened and accepted.
std::vector<std::string> accepted(const std::vector<std::string>& before) {
    Shop_floor shop;
    shop.boxes().otherwise = [](const Message&) { return Message_answer::ok; };
    const auto path = [&shop](std::string_view name) { return shop.desk.files.program_path(name); };
    for (std::size_t file = 0; file < before.size(); ++file) {
        shop.desk.files.put(path(names[file]), before[file]);
    }
    shop.start();
    shop.window().ConfigMenuItem[3].click();
    shop.all().page_layout_form.OK_button.click();
    shop.all().page_layout_form.unload();
    shop.window().ConfigMenuItem[4].click();
    shop.all().directories_form.OK_button.click();
    shop.all().directories_form.unload();
    shop.all().resequence_form.load();
    shop.all().resequence_form.unload();
    shop.pass(1s);
    shop.window().unload();
    std::vector<std::string> after;
    for (const std::string_view name : names) {
        after.push_back(shop.desk.files.content(path(name)));
    }
    return after;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Fuzz_input input(data, size);
    std::vector<std::string> files;
    for (std::size_t file = 0; file < std::size(names); ++file) {
        files.emplace_back(input.text());
    }
    const std::vector<std::string> once = accepted(files);
    fuzz::require(accepted(once) == once, "written files stay as they are");
    fuzz::require_no_failure();
    return 0;
}

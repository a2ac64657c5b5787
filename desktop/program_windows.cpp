#include "desktop/program_windows.h"

#include "desktop/advanced_dialog.h"
#include "desktop/compare_dialog.h"
#include "desktop/configure_dialog.h"
#include "desktop/directories_dialog.h"
#include "desktop/help_window.h"
#include "desktop/information_dialog.h"
#include "desktop/line_monitor_dialog.h"
#include "desktop/main_window.h"
#include "desktop/page_layout_dialog.h"
#include "desktop/resequence_dialog.h"
#include "desktop/select_device_dialog.h"
#include "desktop/start_dialog.h"
#include "desktop/test_line_dialog.h"
#include "desktop/transfer_log_dialog.h"

namespace kelvane {

void add_windows(Qt_windows& windows, Program& program) {
    windows.add_builder(program.window, [&program]() -> std::unique_ptr<QWidget> {
        const Editor_parts parts{program.pane, program.find_bar, program.edit_commands};
        auto window = make_main_window(program.window, parts);
        add_help_key(*window, program.help_form);
        return window;
    });
    windows.add(program.configure_form, make_configure_dialog);
    windows.add(program.advanced_form, make_advanced_dialog);
    windows.add(program.select_device_form, make_select_device_dialog);
    windows.add(program.directories_form, make_directories_dialog);
    windows.add(program.set_directory_form, make_set_directory_dialog);
    windows.add(program.information_form, make_information_dialog);
    windows.add(program.help_form, make_help_window);
    windows.add(program.page_layout_form, make_page_layout_dialog);
    windows.add(program.resequence_form, make_resequence_dialog);
    windows.add(program.line_monitor_form, make_line_monitor_dialog);
    windows.add(program.test_line_form, make_test_line_dialog);
    windows.add(program.transfer_log_form, make_transfer_log_dialog);
    windows.add(program.start_form, make_start_dialog);
    windows.add(program.compare_form, make_compare_dialog);
}

}  // namespace kelvane

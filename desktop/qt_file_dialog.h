#pragma once

#include <QString>

#include "desktop/qt_windows.h"
#include "platform/file_dialog.h"

class QFileDialog;

namespace kelvane {

/// Qt's own file dialog: a desktop's would not let the operator name a file that does not exist
/// when it is to be opened, which the program answers itself. It begins in the folder of the last
/// choice, or in the initial directory when that has changed since.
class Qt_file_dialog : public File_dialog {
  public:
    explicit Qt_file_dialog(Qt_windows& windows) : windows_(windows) {}
    Task<std::optional<std::string>> ask_file(File_purpose purpose) override;
    Task<std::optional<std::string>> ask_folder(std::string start) override;

  private:
    [[nodiscard]] QString first_folder();
    void set_filters(QFileDialog& dialog) const;
    void prepare(QFileDialog& dialog, File_purpose purpose);
    [[nodiscard]] std::optional<std::string> chosen(const QFileDialog& dialog);

    Qt_windows& windows_;
    std::string shown_initial_directory_;
    QString last_folder_;
};

}  // namespace kelvane

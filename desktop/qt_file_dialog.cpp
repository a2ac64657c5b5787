#include "desktop/qt_file_dialog.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "desktop/qt_text.h"
#include "frame/file_filter.h"

namespace kelvane {

namespace {

QString from_path(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

/// "NC programs", "*.nc;*.tap" as Qt has it: "NC programs (*.nc *.tap)". "*.*" has always meant all
/// files; to Qt it would be those with a dot in their names.
QString qt_filter(const std::pair<std::string, std::string>& pair) {
    QStringList patterns = to_screen(pair.second).split(';');
    for (QString& pattern : patterns) {
        if (pattern.trimmed() == "*.*") {
            pattern = "*";
        }
    }
    return to_screen(pair.first) + " (" + patterns.join(' ') + ")";
}

/// No value while nothing is named.
std::optional<std::string> first_selected(const QFileDialog& dialog) {
    const QString selected = dialog.selectedFiles().value(0);
    return selected.isEmpty() ? std::nullopt
                              : std::optional(QFile::encodeName(selected).toStdString());
}

/// Without its folder when that is not there.
void propose(QFileDialog& dialog, const std::string& path) {
    const QFileInfo file(from_path(path));
    dialog.selectFile(file.dir().exists() ? file.filePath() : file.fileName());
}

/// Stays until a file has been named: Return in an empty field chooses nothing.
class Naming_dialog : public QFileDialog {
  public:
    using QFileDialog::QFileDialog;

  private:
    void accept() override {
        if (first_selected(*this)) {
            QFileDialog::accept();
        }
    }
};

}  // namespace

QString Qt_file_dialog::first_folder() {
    if (last_folder_.isEmpty() || shown_initial_directory_ != initial_directory) {
        shown_initial_directory_ = initial_directory;
        return initial_directory.empty() ? QDir::homePath() : from_path(initial_directory);
    }
    return last_folder_;
}

void Qt_file_dialog::set_filters(QFileDialog& dialog) const {
    QStringList filters;
    for (const auto& pair : filter_pairs(filter)) {
        filters << qt_filter(pair);
    }
    if (filters.isEmpty()) {
        return;
    }
    dialog.setNameFilters(filters);
    const auto index = std::clamp<qsizetype>(qsizetype{filter_index} - 1, 0, filters.size() - 1);
    dialog.selectNameFilter(filters[index]);
}

void Qt_file_dialog::prepare(QFileDialog& dialog, File_purpose purpose) {
    const bool save = purpose == File_purpose::save;
    const std::string asked_for = std::exchange(title, {});
    dialog.setWindowTitle(to_screen(!asked_for.empty() ? asked_for : save ? "Save as" : "Open"));
    dialog.setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::DontConfirmOverwrite);
    dialog.setDirectory(first_folder());
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::AnyFile);
    set_filters(dialog);
    propose(dialog, std::exchange(proposed, {}));
}

std::optional<std::string> Qt_file_dialog::chosen(const QFileDialog& dialog) {
    auto path = first_selected(dialog);
    if (path) {
        last_folder_ = QFileInfo(from_path(*path)).path();
        const auto index = dialog.nameFilters().indexOf(dialog.selectedNameFilter());
        filter_index = static_cast<int>(std::max<qsizetype>(index, 0)) + 1;
    }
    return path;
}

Task<std::optional<std::string>> Qt_file_dialog::ask_file(File_purpose purpose) {
    const Dialog_owner<Naming_dialog> dialog("file_dialog", windows_.active_window());
    prepare(*dialog, purpose);
    const bool accepted = co_await windows_.run_in_place(*dialog);
    co_return accepted ? chosen(*dialog) : std::nullopt;
}

Task<std::optional<std::string>> Qt_file_dialog::ask_folder(std::string start) {
    const Dialog_owner<QFileDialog> dialog("folder_dialog", windows_.active_window(),
                                           "Choose a directory", from_path(start));
    dialog->setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::ShowDirsOnly);
    dialog->setFileMode(QFileDialog::Directory);
    const bool accepted = co_await windows_.run_in_place(*dialog);
    co_return accepted ? first_selected(*dialog) : std::nullopt;
}

}  // namespace kelvane

#pragma once

#include <QObject>
#include <vector>

class QWidget;

namespace kelvane {

/// Modal windows that leave a running transfer in the operator's hands. While one is shown, the
/// program's other windows take no input, except the widgets that `keep_live` names and the close
/// button of the main window. Qt's own modality would block these, too; windows that Qt itself
/// wants to show modal (a printer's properties, a warning of the file dialog) are taken over.
///
/// Needs the application object. There is one.
class Modality : public QObject {
  public:
    Modality();

    /// To be called before the window is shown; it is modal until it is hidden or destroyed. Menus
    /// that are open close.
    void begin(QWidget& window);
    /// The modal window that takes the input; null when none is shown.
    [[nodiscard]] QWidget* top() const { return windows_.empty() ? nullptr : windows_.back(); }
    /// A widget with what is in it, or a shortcut, takes input whatever window is open.
    static void keep_live(QObject& taker);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void see_active_window();
    void end(const QObject* window);
    void take_over(QObject& shown);
    [[nodiscard]] bool blocks(const QObject& watched) const;
    void refuse(QWidget& widget, const QEvent& event) const;

    std::vector<QWidget*> windows_;
};

}  // namespace kelvane

#pragma once

#include <QRect>
#include <QString>
#include <map>

#include "platform/files.h"

class QWidget;

namespace kelvane {

/// Where windows have been and how large, from run to run; and that none is larger than its screen.
class Window_places {
  public:
    /// Without files nothing is remembered.
    void use(Files& files);
    /// Gives a window that is about to be shown for the first time its place: the remembered one,
    /// or its own size, as far as the screen has room. A dialog that needs more than that scrolls.
    void place(QWidget& window);
    /// The window is about to be hidden. What only a small screen has cut from its size, and where
    /// it has moved it, is not kept.
    void remember(const QWidget& window);

  private:
    struct Cut {
        QRect to, from;
    };

    Files* files_ = nullptr;
    bool unread_ = false;  ///< what could not be read is not written over
    std::map<QString, QRect> places_;
    std::map<QString, Cut> cut_;  ///< how its screen has cut and moved each window
};

}  // namespace kelvane

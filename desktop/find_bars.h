#pragma once

class QWidget;

namespace kelvane {

class Find_bar;

/// The bars for finding and going to, under the pane, which gets the keyboard when they close.
/// `Escape` closes them.
QWidget* make_find_bars(Find_bar& bar, QWidget& pane);

}  // namespace kelvane

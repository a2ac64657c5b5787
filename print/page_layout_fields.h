#pragma once

#include <array>
#include <string>

#include "platform/basic_text.h"
#include "session/page_layout.h"

namespace kelvane {

class Page_layout_form_lite;

/// One value of the page layout: all that its settings file and the dialog know of it.
struct Page_layout_field {
    /// A field that is not there leaves the layout's value.
    void (*read)(Text_reader&, Page_layout&);
    std::string (*text)(const Page_layout&);
    void (*show)(Page_layout_form_lite&, const Page_layout&);
    /// False when the control holds what the dialog does not take.
    bool (*take)(const Page_layout_form_lite&, Page_layout&);
};

/// The values in the file's order. A new one is one row here, beside its member in `Page_layout`,
/// its control in the form and that control's place in the dialog.
extern const std::array<Page_layout_field, 13> page_layout_fields;

/// The layout that the settings file's content says; what it does not say keeps its default.
[[nodiscard]] Page_layout page_layout_from(Text_reader reader);

/// The settings file's content: a value a line, the font in double quotes, truth values as #TRUE#
/// and #FALSE#. The font's name must not hold a double quote.
[[nodiscard]] std::string page_layout_text(const Page_layout& layout);

}  // namespace kelvane

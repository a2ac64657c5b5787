#pragma once

class QTextDocument;

namespace kelvane {

/// Room around the text and in the cells of tables, of which a document read from Markdown has
/// none.
void give_room(QTextDocument& document);

/// Bright links for documents on a dark ground, where the desktop's colours have none.
void make_links_readable();

}  // namespace kelvane

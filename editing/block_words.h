#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

/// What a piece of a program's line is.
enum class Word_kind : std::uint8_t {
    comment,         ///< ( ) with the brackets, or from ";" to the end of the line
    block_skip,      ///< "/" or "/2": what follows in the block runs only with the switch off
    block_number,    ///< N120
    program_number,  ///< O1001, :1001
    tape_mark,       ///< "%" at the start of a line, with all behind it
    g_code,
    m_code,
    tool,        ///< T
    axis,        ///< A B C U V W X Y Z
    other,       ///< F, S, I, ",R2." and all other addresses
    statement,   ///< two letters or more: IF, GOTO 120, CALL with all behind it
    expression,  ///< [ ] and assignments to variables: #1=[#2+3]
    controls,    ///< a run of control characters
    unread,      ///< no part of a block as this reader knows them
};

/// One word of a line.
struct Block_word {
    Word_kind kind = Word_kind::unread;
    char letter = 0;          ///< the address in upper case; 0 where there is none
    std::size_t begin = 0;    ///< in the line
    std::size_t length = 0;   ///< bytes
    std::string_view name;    ///< of a statement, as written
    std::string_view number;  ///< as written, with its sign ("-.5", "007"); empty: no number
    bool computed = false;    ///< the value comes from a variable or an expression
};

/// True for what stands in no program but by accident or for a tape punch; a tab is a blank.
[[nodiscard]] bool is_control(char c);

/// Takes a line (without line end) apart, word by word, as ISO 6983 programs are written: words
/// with or without blanks between and inside them, in capitals or small letters. Every byte but
/// blanks is in one word. Time grows with the line's length and nothing else.
class Block_reader {
  public:
    explicit Block_reader(std::string_view line) : line_(line) {}
    /// False at the end of the line.
    bool next(Block_word& word);

  private:
    void skip_blanks();
    void read_value(Block_word& word);
    void read_expression();
    void read_digits(Block_word& word);
    void read_letters(Block_word& word);
    void read_address(Block_word& word);
    void read_mark(Block_word& word);
    void run_to(std::string_view ends, std::size_t behind);
    [[nodiscard]] char at(std::size_t place) const;

    std::string_view line_;
    std::size_t place_ = 0;
};

/// A block's words, sorted.
struct Block_words {
    std::vector<Block_word> g, m, statements, others;
    std::optional<Block_word> program_number;  ///< only as the block's first word
    std::optional<std::string_view> number;    ///< N
    bool skip = false;                         ///< block skip in it
    bool unread = false;                       ///< something in it is no word
    bool variable = false;                     ///< uses or sets one
    bool sets_offset = false;                  ///< by a variable of the control's own
    bool any = false;  ///< there is more than comments, N number and controls

    explicit Block_words(std::string_view line);
    /// The last word with this letter among the others; null for none.
    [[nodiscard]] const Block_word* operator[](char letter) const;
    [[nodiscard]] bool has_axes() const;
};

/// A word as the program wrote it, in capitals and without blanks; "#" for what is computed.
std::string word_text(const Block_word& word);

/// True for a word whose number is zero as it is written; false for one that is not there (null) or
/// computed.
bool is_given_as_zero(const Block_word* word);

/// The digits of a line's N number, as written; no value for a line without one. A "/" in front of
/// it is passed over.
std::optional<std::string_view> block_number(std::string_view line);

/// A number without sign and without the zeros that change nothing: "0120.0" is "120".
std::string_view essential_number(std::string_view number);

/// True when two numbers without sign have the same value: "0120", "120" and "120.0".
bool same_number(std::string_view one, std::string_view other);

}  // namespace kelvane

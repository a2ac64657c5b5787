// The editor pane as a widget: keys, mouse, scrolling, colours, and what assistive programs read.

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <cmath>
#include <gtest/gtest.h>

#include "desktop/pane_view.h"
#include "qt_test_application.h"
#include "support/desktop_doubles.h"
#include "support/memory_files.h"
#include "support/virtual_loop.h"

namespace kelvane::testing {
namespace {

class Pane_view_test : public ::testing::Test {
  protected:
    Pane_view_test() {
        view.resize(500, 300);
        view.show();
    }
    void program_of(const std::string& bytes) {
        program.caret.select(0, program.document().text().size());
        program.replace(0, program.document().text().size(), bytes);
        program.caret.put(0);
        pane.moved();
    }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
               const QString& text = {}) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        QApplication::sendEvent(&view, &event);
    }
    void click(std::size_t offset, QEvent::Type type = QEvent::MouseButtonPress) {
        const QRect place = view.place_of(offset);
        const QPointF at(place.left() + 1, place.center().y());
        QMouseEvent event(type, at, view.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
    }
    [[nodiscard]] const std::string& text() const { return program.document().text(); }

    Virtual_loop loop;
    Memory_files files;
    Scripted_file_dialog dialog{loop};
    Scripted_message_box boxes;
    Recorded_desktop desktop;
    Rich_text log{"Text1", "Program and messages"};
    bool transfer = false;
    Open_program program{loop, files, dialog, boxes};
    Program_pane pane{log, program, desktop, files, [this] { return transfer; }};
    Pane_view view{pane};
};

TEST_F(Pane_view_test, keys_write_and_move) {
    program_of("N1\rN2\r");
    press(Qt::Key_End);
    press(Qt::Key_G, Qt::NoModifier, "G");
    press(Qt::Key_Return, Qt::NoModifier, "\r");
    press(Qt::Key_Slash, Qt::ShiftModifier, "/");
    EXPECT_EQ(text(), "N1G\r/\rN2\r");
    press(Qt::Key_Backspace);
    press(Qt::Key_Delete);
    EXPECT_EQ(text(), "N1G\rN2\r");
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_At, Qt::ControlModifier | Qt::AltModifier, "@");  // AltGr
    press(Qt::Key_S, Qt::ControlModifier, "\x13");
    press(Qt::Key_Y, Qt::AltModifier, "y");
    press(Qt::Key_Tab, Qt::NoModifier, "\t");
    EXPECT_EQ(text(), "N1G\r@2\r");
    press(Qt::Key_Home, Qt::ControlModifier);
    transfer = true;
    press(Qt::Key_Delete);
    press(Qt::Key_X, Qt::NoModifier, "X");
    EXPECT_EQ(text(), "N1G\r@2\r");
}

TEST_F(Pane_view_test, the_mouse_finds_the_characters_it_points_at) {
    const std::string bytes = "N1 G0\r\n\tX1\x02\r\n(FR\xC3\x84SEN)\n";
    program_of(bytes);
    for (const std::size_t at : {0U, 4U, 5U, 8U, 10U, 13U, 18U}) {
        click(at);
        EXPECT_EQ(program.caret.place(), at);
    }
    click(3);
    click(3, QEvent::MouseButtonDblClick);
    EXPECT_EQ(program.caret.begin(), 3U);
    EXPECT_EQ(program.caret.end(), 5U);
    click(3);  // the third press
    EXPECT_EQ(program.caret.end(), 7U);
}

TEST_F(Pane_view_test, scrolls_over_the_whole_text_and_follows_the_block_sent) {
    std::string lines;
    for (int i = 0; i < 5000; ++i) {
        lines += "N" + std::to_string(i) + "\n";
    }
    log.set_text(lines);
    while (view.refresh_is_pending()) {
        QApplication::processEvents();
    }
    QScrollBar& bar = *view.verticalScrollBar();
    EXPECT_EQ(bar.maximum() + static_cast<int>(view.page()), 5001);
    const auto show_block = [&](int block) {
        const std::string name = "N" + std::to_string(block) + "\n";
        log.select(lines.find(name), name.size() - 1);
        while (view.refresh_is_pending()) {
            QApplication::processEvents();
        }
        return block >= bar.value() && block < bar.value() + static_cast<int>(view.page());
    };
    EXPECT_TRUE(show_block(4000));
    EXPECT_TRUE(show_block(4001));
    bar.triggerAction(QAbstractSlider::SliderToMinimum);
    EXPECT_FALSE(show_block(4002)) << "the operator reads elsewhere";
    EXPECT_EQ(bar.value(), 0);
    pane.follow();
    EXPECT_TRUE(show_block(4003));
    const int y = view.place_of(lines.find("N4003")).center().y();
    const QImage seen = view.viewport()->grab().toImage();
    EXPECT_EQ(seen.pixelColor(seen.width() - 2, y), Pane_colours(view.palette()).band);
    log.set_text({});
    EXPECT_EQ(pane.content(), Program_pane::Content::program);
}

/// As reckoned for text on screens: 21 for black on white.
double contrast(const QColor& one, const QColor& other) {
    const auto light = [](const QColor& colour) {
        const auto part = [](double c) {
            return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) +
               0.0722 * part(colour.blueF());
    };
    const double a = light(one) + 0.05;
    const double b = light(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

TEST_F(Pane_view_test, colours_can_be_read_on_light_and_dark_grounds) {
    const QPalette palettes[] = {QPalette(QColor(0xEF, 0xEF, 0xEF)),
                                 QPalette(QColor(0x2B, 0x2B, 0x2B))};
    for (const QPalette& palette : palettes) {
        const Pane_colours colours(palette);
        for (int kind = 0; kind <= static_cast<int>(Word_kind::unread); ++kind) {
            const QColor colour = colours.of(static_cast<Word_kind>(kind));
            EXPECT_GE(contrast(colour, colours.background), 4.5) << kind << colours.dark;
            EXPECT_GE(contrast(colour, colours.band), 4.5) << kind << colours.dark;
        }
        EXPECT_GE(contrast(colours.numbers, colours.margin), 4.5) << colours.dark;
    }
}

TEST_F(Pane_view_test, assistive_programs_read_and_write_it) {
    program_of("N1 (\xFC)\r\nN2\r\n");
    QAccessibleInterface* pane_interface = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(pane_interface, nullptr);
    EXPECT_EQ(pane_interface->role(), QAccessible::EditableText);
    EXPECT_EQ(pane_interface->text(QAccessible::Name), "Program and messages");
    EXPECT_TRUE(pane_interface->state().editable);
    QAccessibleTextInterface* shown = pane_interface->textInterface();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->characterCount(), 10);
    EXPECT_EQ(shown->text(3, 8), QStringLiteral("(\u00FC)\nN"));
    shown->setCursorPosition(7);
    EXPECT_EQ(program.caret.place(), 8U);
    shown->setSelection(0, 0, 2);
    EXPECT_EQ(program.caret.end(), 2U);
    pane_interface->editableTextInterface()->insertText(7, "/");
    EXPECT_EQ(text(), "N1 (\xFC)\r\n/N2\r\n");
}

}  // namespace
}  // namespace kelvane::testing

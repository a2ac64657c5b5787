#include "desktop/pane_accessible.h"

#include <QAccessibleWidget>
#include <algorithm>

#include "desktop/pane_view.h"

namespace kelvane {

namespace {

/// Offsets are UTF-16 units from the start of the text. What is asked for is looked up; the text is
/// never held as a whole.
class Pane_accessible : public QAccessibleWidget,
                        public QAccessibleTextInterface,
                        public QAccessibleEditableTextInterface {
  public:
    explicit Pane_accessible(Pane_view& view)
        : QAccessibleWidget(&view, QAccessible::EditableText), view_(view), pane_(view.pane()) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface) {
            return static_cast<QAccessibleTextInterface*>(this);
        }
        if (type == QAccessible::EditableTextInterface) {
            return static_cast<QAccessibleEditableTextInterface*>(this);
        }
        return QAccessibleWidget::interface_cast(type);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.multiLine = true;
        state.selectableText = true;
        state.editable = !pane_.read_only();
        state.readOnly = pane_.read_only();
        return state;
    }
    QString text(QAccessible::Text kind) const override {
        constexpr int most = 1 << 20;
        return kind == QAccessible::Value ? text(0, std::min(characterCount(), most))
                                          : QAccessibleWidget::text(kind);
    }

    void selection(int index, int* start, int* end) const override {
        const Caret& caret = pane_.caret();
        const bool there = index == 0 && caret.selects();
        *start = there ? unit(caret.begin()) : 0;
        *end = there ? unit(caret.end()) : 0;
    }
    int selectionCount() const override { return pane_.caret().selects() ? 1 : 0; }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int) override { setCursorPosition(cursorPosition()); }
    void setSelection(int, int start, int end) override {
        pane_.caret().select(offset(start), offset(end));
        pane_.moved();
    }
    int cursorPosition() const override { return unit(pane_.caret().place()); }
    void setCursorPosition(int position) override {
        pane_.caret().put(offset(position));
        pane_.moved();
    }
    QString text(int start, int end) const override {
        const std::size_t from = offset(start);
        return QString::fromStdU16String(pane_.text().shown(from, std::max(from, offset(end))));
    }
    int characterCount() const override {
        return static_cast<int>(pane_.text().index->unit_count());
    }
    QRect characterRect(int at) const override {
        const QRect place = view_.place_of(offset(at));
        return {view_.viewport()->mapToGlobal(place.topLeft()), place.size()};
    }
    int offsetAtPoint(const QPoint& point) const override {
        return unit(view_.offset_at(view_.viewport()->mapFromGlobal(point)));
    }
    void scrollToSubstring(int start, int) override { view_.bring_into_view(offset(start)); }
    QString attributes(int at, int* start, int* end) const override {
        *start = at;
        *end = characterCount();
        return {};
    }

    void deleteText(int start, int end) override { replaceText(start, end, {}); }
    void insertText(int at, const QString& text) override { replaceText(at, at, text); }
    void replaceText(int start, int end, const QString& text) override {
        setSelection(0, start, end);
        pane_.type(text.toStdU16String());
    }

  private:
    [[nodiscard]] int unit(std::size_t offset) const {
        return static_cast<int>(pane_.text().position_of(offset));
    }
    /// -1 is the end of the text, -2 the caret.
    [[nodiscard]] std::size_t offset(int unit) const {
        if (unit < 0) {
            return unit == -2 ? pane_.caret().place() : pane_.text().bytes.size();
        }
        return pane_.text().offset_of(static_cast<std::size_t>(unit));
    }

    Pane_view& view_;
    Program_pane& pane_;
};

QAccessibleInterface* make_interface(const QString&, QObject* object) {
    auto* view = dynamic_cast<Pane_view*>(object);
    return view == nullptr ? nullptr : new Pane_accessible(*view);
}

}  // namespace

void offer_pane_to_assistive_programs() {
    QAccessible::installFactory(make_interface);  // which is kept once
}

}  // namespace kelvane

#include "desktop/outline_data.h"

#include <cctype>
#include <charconv>
#include <cstring>
#include <optional>

namespace kelvane {

namespace {

/// Reads path data from left to right.
class Outline_reader {
  public:
    explicit Outline_reader(const char* data) : rest_(data) {}

    QPainterPath read() {
        path_.setFillRule(Qt::WindingFill);
        while (next_command() && take()) {
        }
        return path_;
    }

  private:
    /// A command letter, or the last one again when a number follows.
    bool next_command() {
        skip_separators();
        if (std::isalpha(static_cast<unsigned char>(*rest_)) != 0) {
            command_ = *rest_++;
        }
        return *rest_ != '\0' || command_ == 'z' || command_ == 'Z';
    }

    bool take() {
        relative_ = std::islower(static_cast<unsigned char>(command_)) != 0;
        switch (std::toupper(static_cast<unsigned char>(command_))) {
            case 'M':
                return take_move();
            case 'L':
                return take_line();
            case 'H':
            case 'V':
                return take_straight_line();
            case 'C':
                return take_curve();
            case 'Z':
                path_.closeSubpath();
                command_ = '\0';
                return true;
            default:
                return false;
        }
    }

    bool take_move() {
        const auto to = point();
        if (to) {
            path_.moveTo(*to);
            command_ = relative_ ? 'l' : 'L';
        }
        return to.has_value();
    }

    bool take_line() {
        const auto to = point();
        if (to) {
            path_.lineTo(*to);
        }
        return to.has_value();
    }

    bool take_straight_line() {
        const auto to = number();
        if (!to) {
            return false;
        }
        QPointF end = path_.currentPosition();
        const bool across = command_ == 'h' || command_ == 'H';
        qreal& moved = across ? end.rx() : end.ry();
        moved = relative_ ? moved + *to : *to;
        path_.lineTo(end);
        return true;
    }

    bool take_curve() {
        const auto first = point();
        const auto second = point();
        const auto to = point();
        if (!first || !second || !to) {
            return false;
        }
        path_.cubicTo(*first, *second, *to);
        return true;
    }

    std::optional<QPointF> point() {
        const auto x = number();
        const auto y = number();
        if (!x || !y) {
            return std::nullopt;
        }
        return QPointF(*x, *y) + (relative_ ? path_.currentPosition() : QPointF());
    }

    std::optional<qreal> number() {
        skip_separators();
        qreal value = 0;
        const auto [end, error] = std::from_chars(rest_, rest_ + std::strlen(rest_), value);
        rest_ = end;
        return error == std::errc() ? std::optional(value) : std::nullopt;
    }

    void skip_separators() {
        while (*rest_ == ' ' || *rest_ == ',') {
            ++rest_;
        }
    }

    const char* rest_;
    char command_ = '\0';
    bool relative_ = false;
    QPainterPath path_;
};

}  // namespace

QPainterPath outline_from(const char* data) {
    return Outline_reader(data).read();
}

}  // namespace kelvane

#include "desktop/qt_text.h"

#include "platform/utf8.h"

namespace kelvane {

QString to_screen(std::string_view bytes, Text_form form) {
    return form == Text_form::name
               ? QString::fromStdString(as_utf8(bytes))
               : QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::string from_screen(const QString& text, Text_form form) {
    return form == Text_form::latin1 ? text.toLatin1().toStdString() : text.toStdString();
}

QString tool_tip_of(const QString& text) {
    return text.isEmpty() ? QString()
                          : "<p style='white-space:pre-wrap'>" +
                                with_long_words_broken(text).toHtmlEscaped() + "</p>";
}

QString cut_in_middle(const QString& text, int most) {
    const qsizetype half = (most - 3) / 2;
    return text.size() <= most ? text : text.left(half) + "..." + text.right(half);
}

QString with_long_words_broken(const QString& text) {
    constexpr qsizetype longest = 70;
    QString broken;
    qsizetype begin = 0;  // of what stands since the last blank or break
    for (const QChar character : text) {
        broken += character;
        if (character.isSpace()) {
            begin = broken.size();
        } else if (broken.size() - begin > longest) {
            const qsizetype slash = broken.lastIndexOf(u'/', -2);
            begin = slash > begin ? slash + 1 : broken.size() - 1;
            broken.insert(begin++, u'\n');
        }
    }
    return broken;
}

QString without_access_key(const QString& caption) {
    QString plain;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        const bool mark = caption[i] == u'&';
        if (mark && ++i == caption.size()) {
            break;
        }
        plain += caption[i];
    }
    return plain;
}

}  // namespace kelvane

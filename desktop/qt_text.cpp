#include "desktop/qt_text.h"

#include <QByteArrayView>

namespace kelvane {

Text_form text_form_of(std::string_view bytes) {
    const auto size = static_cast<qsizetype>(bytes.size());
    return QByteArrayView(bytes.data(), size).isValidUtf8() ? Text_form::name : Text_form::latin1;
}

QString to_screen(std::string_view bytes, Text_form form) {
    const auto size = static_cast<qsizetype>(bytes.size());
    if (form == Text_form::name && text_form_of(bytes) == Text_form::name) {
        return QString::fromUtf8(bytes.data(), size);
    }
    return QString::fromLatin1(bytes.data(), size);
}

std::string from_screen(const QString& text, Text_form form) {
    return form == Text_form::latin1 ? text.toLatin1().toStdString() : text.toStdString();
}

QString tool_tip_of(const QString& text) {
    return text.isEmpty() ? QString()
                          : "<p style='white-space:pre-wrap'>" + text.toHtmlEscaped() + "</p>";
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

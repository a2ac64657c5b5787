#include "desktop/qt_text.h"

#include <QStringDecoder>

namespace kelvane {

QString to_screen(std::string_view bytes, Text_form form) {
    const auto size = static_cast<qsizetype>(bytes.size());
    if (form == Text_form::name) {
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        QString text = utf8(QByteArrayView(bytes.data(), size));
        if (!utf8.hasError()) {
            return text;
        }
    }
    return QString::fromLatin1(bytes.data(), size);
}

std::string from_screen(const QString& text, Text_form form) {
    return form == Text_form::latin1 ? text.toLatin1().toStdString() : text.toStdString();
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

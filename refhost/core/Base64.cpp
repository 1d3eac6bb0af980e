// Base64 coding through Qt's.
#include "refhost/core/Base64.h"

#include <QByteArray>

std::string base64Encode(const std::string& bytes) {
    const QByteArray text =
        QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())).toBase64();
    return std::string(text.constData(), static_cast<size_t>(text.size()));
}

bool base64Decode(const std::string& text, std::string& out) {
    out.clear();
    // Qt takes text without its padding; stored objects are always written whole.
    if (text.size() % 4 != 0)
        return false;
    const QByteArray::FromBase64Result r = QByteArray::fromBase64Encoding(
        QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size())),
        QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!r)
        return false;
    out.assign(r.decoded.constData(), static_cast<size_t>(r.decoded.size()));
    return true;
}

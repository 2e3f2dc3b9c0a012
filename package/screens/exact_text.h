// Texts of the data in inputs. What an input shows is what is stored again, to the last character.
//
//   edit->setText(exactText(mapper.Name));
//   mapper.Name = edit->text().toStdString();
#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>
#include <string>

namespace basalt {

// QString::fromStdString, but for a U+FEFF at the start, which it takes for a mark of the encoding and drops.
[[nodiscard]] inline QString exactText(const std::string& text) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

}  // namespace basalt

// The files of a zip archive, workbooks for instance, read by its central directory.
//
//   const std::string sheet = unzipped(contents).at("xl/worksheets/sheet1.xml");
#pragma once

#include <zlib.h>

#include <QByteArray>
#include <map>
#include <stdexcept>
#include <string>

namespace basalt {

// std::runtime_error when a file of the archive cannot be unpacked.
inline std::map<std::string, std::string> unzipped(const QByteArray& zip) {
    const auto number = [&](qsizetype at, int bytes) {
        std::uint32_t value = 0;
        for (int i = bytes; i-- > 0;)
            value = value << 8 | static_cast<std::uint8_t>(zip[at + i]);
        return value;
    };
    std::map<std::string, std::string> files;
    for (qsizetype at = zip.indexOf("PK\x01\x02"); at >= 0; at = zip.indexOf("PK\x01\x02", at + 4)) {
        const std::uint32_t packed = number(at + 20, 4);
        const std::uint32_t size = number(at + 24, 4);
        const std::string name = zip.mid(at + 46, number(at + 28, 2)).toStdString();
        const std::uint32_t local = number(at + 42, 4);
        const qsizetype data = local + 30 + number(local + 26, 2) + number(local + 28, 2);
        std::string text(size, '\0');
        if (number(at + 10, 2) == 0) {
            text = zip.mid(data, size).toStdString();
        } else {
            z_stream stream{};
            inflateInit2(&stream, -MAX_WBITS);
            stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(zip.constData() + data));
            stream.avail_in = packed;
            stream.next_out = reinterpret_cast<Bytef*>(text.data());
            stream.avail_out = size;
            const int outcome = inflate(&stream, Z_FINISH);
            inflateEnd(&stream);
            if (outcome != Z_STREAM_END) throw std::runtime_error(name + " cannot be unpacked");
        }
        files[name] = text;
    }
    return files;
}

}  // namespace basalt

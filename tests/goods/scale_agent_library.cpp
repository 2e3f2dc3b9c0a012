// A scale agent's library for tests: answers with a number made of all its arguments, so that one that is lost or comes
// in another place shows.
#include <cstdint>
#include <string>

namespace {

std::int64_t unitsOf(const char16_t* text) {
    std::int64_t sum = 0;
    for (std::int64_t place = 1; *text != u'\0'; ++text, ++place)
        sum += place * *text;
    return sum;
}

}  // namespace

#if defined(_WIN32)
extern "C" __declspec(dllexport) std::int32_t __stdcall
#else
extern "C" __attribute__((visibility("default"))) std::int32_t
#endif
    GoodInfo_Register(std::int32_t goodCode, const char16_t* name1, const char16_t* name2, std::int32_t price,
                      std::int32_t itemType, std::int32_t alterPrice, const char16_t* barcode, std::int32_t itemCode,
                      std::int32_t section, const char16_t* plu, std::int32_t scaleIP) {
    const std::int64_t numbers[] = {goodCode, unitsOf(name1), unitsOf(name2),   price,
                                    itemType, alterPrice,     unitsOf(barcode), itemCode,
                                    section,  unitsOf(plu),   scaleIP};
    std::int64_t mixed = 0;
    for (const std::int64_t each : numbers)
        mixed = (mixed * 31 + each) % 1'000'003;
    return static_cast<std::int32_t>(mixed);
}

#include "engines/embedded/runtime/collation_name.h"

#include <algorithm>
#include <array>
#include <string>

#include "ado/names.h"

namespace basalt::embedded {

namespace {

// Ordered as the database is, by the root order: Latin, Arabic and Persian letters as they come in Unicode's table.
constexpr std::array<std::string_view, 5> kRootOrder = {"latin1_general", "arabic", "persian", "sql_latin1_general_cp1",
                                                        "sql_latin1_general_cp1256"};

// Those of other languages and code pages.
constexpr std::array<std::string_view, 72> kOthers = {
    "albanian",
    "assamese",
    "azeri_cyrillic",
    "azeri_latin",
    "bashkir",
    "bengali",
    "bosnian_cyrillic",
    "bosnian_latin",
    "breton",
    "chinese_hong_kong_stroke",
    "chinese_prc",
    "chinese_prc_stroke",
    "chinese_simplified_pinyin",
    "chinese_simplified_stroke_order",
    "chinese_taiwan_bopomofo",
    "chinese_taiwan_stroke",
    "corsican",
    "croatian",
    "cyrillic_general",
    "czech",
    "danish_greenlandic",
    "danish_norwegian",
    "dari",
    "divehi",
    "estonian",
    "finnish_swedish",
    "french",
    "frisian",
    "georgian_modern_sort",
    "german_phonebook",
    "greek",
    "hebrew",
    "hungarian",
    "hungarian_technical",
    "icelandic",
    "indic_general",
    "japanese",
    "japanese_unicode",
    "japanese_xjis",
    "kazakh",
    "khmer",
    "korean",
    "korean_wansung",
    "lao",
    "latvian",
    "lithuanian",
    "macedonian_fyrom",
    "maltese",
    "maori",
    "modern_spanish",
    "nepali",
    "norwegian",
    "pashto",
    "polish",
    "romanian",
    "serbian_cyrillic",
    "serbian_latin",
    "slovak",
    "slovenian",
    "syriac",
    "tatar",
    "thai",
    "tibetan",
    "traditional_spanish",
    "turkish",
    "turkmen",
    "ukrainian",
    "urdu",
    "uzbek_latin",
    "vietnamese",
    "welsh",
    "yakut",
};

bool takeEnd(std::string_view& name, std::string_view end) {
    if (!name.ends_with(end)) return false;
    name.remove_suffix(end.size());
    return true;
}

// Takes "_CI_AS" and its kin off the end; nothing when there are none.
std::optional<TextOrder> takeOrder(std::string_view& name) {
    if (takeEnd(name, "_bin") || takeEnd(name, "_bin2")) return TextOrder::Codes;
    if (takeEnd(name, "_ci_as")) return TextOrder::Database;
    if (takeEnd(name, "_cs_as")) return TextOrder::Case;
    if (takeEnd(name, "_ci_ai")) return TextOrder::Letters;
    if (takeEnd(name, "_cs_ai")) return TextOrder::LettersAndCase;
    return std::nullopt;
}

}  // namespace

NamedCollation collationNamed(std::string_view name) {
    const std::string folded = foldName(name);
    std::string_view rest = folded;
    if (rest == "database_default" || rest == "catalog_default") return {true, TextOrder::Database};
    const bool supplementary = takeEnd(rest, "_sc");
    const bool width = takeEnd(rest, "_ws");
    const bool kana = takeEnd(rest, "_ks");
    std::optional<TextOrder> order = takeOrder(rest);
    if (!order || (*order == TextOrder::Codes && (width || kana || supplementary))) return {};
    const bool windows = !rest.starts_with("sql_");
    const bool version100 = windows && takeEnd(rest, "_100");
    const bool version90 = windows && !version100 && takeEnd(rest, "_90");
    if (supplementary && !version100 && !version90) return {};
    if (std::ranges::find(kRootOrder, rest) != kRootOrder.end()) {
        // Persian came with version 100, and version 90 has neither of these.
        if (version90 || (rest == "persian" && !version100)) return {};
        // Width and kana do not count in any order of this engine.
        if (width || kana) order.reset();
        return {true, order};
    }
    const bool codePage = !windows && rest.starts_with("sql_") && rest.size() > 8;
    return {codePage || std::ranges::find(kOthers, rest) != kOthers.end(), std::nullopt};
}

}  // namespace basalt::embedded

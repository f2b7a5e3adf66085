// SPDX-License-Identifier: MIT
#include "platform/uikit/systemText.h"

#include "platform/foundation/Locale.h"
#include "platform/foundation/LocalizationMatching.h"

#include <array>
#include <string_view>
#include <vector>

namespace platform {

namespace {

struct Words {
    std::string_view language, ok, cancel;
};

constexpr std::array words{
    Words{"en", "OK", "Cancel"},        Words{"de", "OK", "Abbrechen"}, Words{"fr", "OK", "Annuler"},
    Words{"es", "Aceptar", "Cancelar"}, Words{"pt", "OK", "Cancelar"},  Words{"it", "OK", "Annulla"},
    Words{"nl", "OK", "Annuleer"},      Words{"pl", "OK", "Anuluj"},    Words{"ru", "ОК", "Отменить"},
    Words{"uk", "ОК", "Скасувати"},     Words{"tr", "Tamam", "Vazgeç"}, Words{"ar", "موافق", "إلغاء"},
    Words{"he", "אישור", "ביטול"},      Words{"fa", "تأیید", "لغو"},    Words{"ur", "ٹھیک ہے", "منسوخ کریں"},
    Words{"hi", "ठीक", "रद्द करें"},       Words{"zh-Hans", "好", "取消"}, Words{"zh-Hant", "好", "取消"},
    Words{"ja", "OK", "キャンセル"},    Words{"ko", "확인", "취소"},    Words{"sv", "OK", "Avbryt"},
    Words{"da", "OK", "Annuller"},      Words{"nb", "OK", "Avbryt"},    Words{"fi", "OK", "Kumoa"},
    Words{"cs", "OK", "Zrušit"},        Words{"hu", "OK", "Mégsem"},    Words{"el", "OK", "Ακύρωση"},
    Words{"ro", "OK", "Anulați"},
};

const Words& chosenWords()
{
    std::vector<std::string> known;
    for (const auto& each : words)
        known.emplace_back(each.language);
    auto matches = matchLocalizations(known, Locale::preferredLanguages());
    for (const auto& each : words) {
        if (!matches.empty() && each.language == matches.front())
            return each;
    }
    return words.front();
}

} // namespace

const std::string& systemText(SystemText text)
{
    static const auto texts = [] {
        const auto& chosen = chosenWords();
        return std::array{std::string(chosen.ok), std::string(chosen.cancel)};
    }();
    return texts[text == SystemText::ok ? 0 : 1];
}

} // namespace platform

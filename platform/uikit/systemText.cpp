// SPDX-License-Identifier: MIT
#include "platform/uikit/systemText.h"

#include "platform/foundation/chosenWords_p.h"

#include <array>
#include <string_view>

namespace platform {

namespace {

struct Words {
    std::string_view language;
    std::array<std::string_view, 3> texts; // in the order of SystemText
};

constexpr std::array words{
    Words{"en", {"OK", "Cancel", "Back"}},          Words{"de", {"OK", "Abbrechen", "Zurück"}},
    Words{"fr", {"OK", "Annuler", "Retour"}},       Words{"es", {"Aceptar", "Cancelar", "Atrás"}},
    Words{"pt", {"OK", "Cancelar", "Voltar"}},      Words{"it", {"OK", "Annulla", "Indietro"}},
    Words{"nl", {"OK", "Annuleer", "Terug"}},       Words{"pl", {"OK", "Anuluj", "Wstecz"}},
    Words{"ru", {"ОК", "Отменить", "Назад"}},       Words{"uk", {"ОК", "Скасувати", "Назад"}},
    Words{"tr", {"Tamam", "Vazgeç", "Geri"}},       Words{"ar", {"موافق", "إلغاء", "رجوع"}},
    Words{"he", {"אישור", "ביטול", "חזרה"}},        Words{"fa", {"تأیید", "لغو", "بازگشت"}},
    Words{"ur", {"ٹھیک ہے", "منسوخ کریں", "واپس"}}, Words{"hi", {"ठीक", "रद्द करें", "वापस"}},
    Words{"zh-Hans", {"好", "取消", "返回"}},       Words{"zh-Hant", {"好", "取消", "返回"}},
    Words{"ja", {"OK", "キャンセル", "戻る"}},      Words{"ko", {"확인", "취소", "뒤로"}},
    Words{"sv", {"OK", "Avbryt", "Tillbaka"}},      Words{"da", {"OK", "Annuller", "Tilbage"}},
    Words{"nb", {"OK", "Avbryt", "Tilbake"}},       Words{"fi", {"OK", "Kumoa", "Takaisin"}},
    Words{"cs", {"OK", "Zrušit", "Zpět"}},          Words{"hu", {"OK", "Mégsem", "Vissza"}},
    Words{"el", {"OK", "Ακύρωση", "Πίσω"}},         Words{"ro", {"OK", "Anulați", "Înapoi"}},
};

} // namespace

const std::string& systemText(SystemText text)
{
    static const auto texts = chosenWords(words);
    return texts[static_cast<std::size_t>(text)];
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/services/PHPhotosText_p.h"

#include "platform/foundation/chosenWords_p.h"

#include <array>

namespace platform {

namespace {

struct Words {
    std::string_view language;
    std::array<std::string_view, 5> texts; // in the order of PHPhotosText; "%@" is the program
};

constexpr std::array words{
    Words{"en",
          {"“%@” Would Like to Add to Your Photos", "“%@” Would Like to Access Your Photos", "Allow",
           "Only What It Adds", "Don’t Allow"}},
    Words{"de",
          {"„%@“ möchte zu deinen Fotos hinzufügen", "„%@“ möchte auf deine Fotos zugreifen", "Erlauben",
           "Nur selbst Hinzugefügtes", "Nicht erlauben"}},
    Words{"fr",
          {"« %@ » souhaite ajouter des éléments à vos photos", "« %@ » souhaite accéder à vos photos",
           "Autoriser", "Uniquement ses propres ajouts", "Ne pas autoriser"}},
    Words{"es",
          {"“%@” quiere añadir elementos a tus fotos", "“%@” quiere acceder a tus fotos", "Permitir",
           "Solo lo que añada", "No permitir"}},
    Words{"pt",
          {"“%@” deseja adicionar itens às suas fotos", "“%@” deseja acessar suas fotos", "Permitir",
           "Somente o que adicionar", "Não permitir"}},
    Words{"it",
          {"“%@” vuole aggiungere elementi alle tue foto", "“%@” vuole accedere alle tue foto", "Consenti",
           "Solo ciò che aggiunge", "Non consentire"}},
    Words{"nl",
          {"‘%@’ wil onderdelen aan je foto’s toevoegen", "‘%@’ wil toegang tot je foto’s", "Sta toe",
           "Alleen eigen toevoegingen", "Sta niet toe"}},
    Words{"pl",
          {"„%@” chce dodawać do Twoich zdjęć", "„%@” chce uzyskać dostęp do Twoich zdjęć", "Pozwól",
           "Tylko to, co doda", "Nie pozwalaj"}},
    Words{"ru",
          {"«%@» запрашивает разрешение на добавление в Ваши фото", "«%@» запрашивает доступ к Вашим фото",
           "Разрешить", "Только добавленные ею", "Не разрешать"}},
    Words{"uk",
          {"«%@» хоче додавати до ваших фото", "«%@» хоче отримати доступ до ваших фото", "Дозволити",
           "Лише додане нею", "Не дозволяти"}},
    Words{"tr",
          {"“%@” fotoğraflarınıza ekleme yapmak istiyor", "“%@” fotoğraflarınıza erişmek istiyor", "İzin Ver",
           "Yalnızca Ekledikleri", "İzin Verme"}},
    Words{"ar",
          {"يرغب «%@» في الإضافة إلى صورك", "يرغب «%@» في الوصول إلى صورك", "السماح", "ما يضيفه فقط",
           "عدم السماح"}},
    Words{"he",
          {"״%@״ מבקש/ת להוסיף לתמונות שלך", "״%@״ מבקש/ת גישה לתמונות שלך", "אישור", "רק מה שנוסף על ידו",
           "אין לאשר"}},
    Words{"fa",
          {"«%@» می‌خواهد به عکس‌های شما اضافه کند",
           "«%@» می‌خواهد به عکس‌های شما دسترسی داشته باشد",
           "اجازه دادن", "فقط آنچه اضافه می‌کند", "اجازه ندادن"}},
    Words{"ur",
          {"“%@” آپ کی تصاویر میں اضافہ کرنا چاہتی ہے", "“%@” آپ کی تصاویر تک رسائی چاہتی ہے", "اجازت دیں",
           "صرف جو یہ شامل کرے", "اجازت نہ دیں"}},
    Words{"hi",
          {"“%@” आपकी तस्वीरों में जोड़ना चाहता है", "“%@” आपकी तस्वीरों को ऐक्सेस करना चाहता है", "अनुमति दें",
           "केवल जो यह जोड़े", "अनुमति न दें"}},
    Words{"zh-Hans",
          {"“%@”想要添加到您的照片", "“%@”想要访问您的照片", "允许", "仅限其添加的项目", "不允许"}},
    Words{"zh-Hant",
          {"「%@」想要加入到您的照片", "「%@」想要取用您的照片", "允許", "僅限其加入的項目", "不允許"}},
    Words{"ja",
          {"“%@”が写真への追加を求めています", "“%@”が写真へのアクセスを求めています", "許可",
           "追加した項目のみ", "許可しない"}},
    Words{"ko",
          {"‘%@’이(가) 사용자의 사진에 추가하려고 합니다", "‘%@’이(가) 사용자의 사진에 접근하려고 합니다",
           "허용", "추가한 항목만", "허용 안 함"}},
};

} // namespace

std::string photosText(PHPhotosText text, std::string_view program)
{
    static const auto chosen = chosenWords(words);
    auto result = chosen[static_cast<std::size_t>(text)];
    if (auto place = result.find("%@"); place != result.npos)
        result.replace(place, 2, program);
    return result;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/services/mediaPickerText_p.h"

#include "platform/foundation/chosenWords_p.h"

#include <array>
#include <string_view>

namespace platform {

namespace {

struct Words {
    std::string_view language;
    std::array<std::string_view, 17> texts; // in the order of MediaPickerText
};

constexpr std::array words{
    Words{"en",
          {"Library", "All", "Photos", "Videos", "No Photos or Videos", "No Camera", "Fonts", "Search",
           "Recent", "No Fonts Found", "Beginning", "End", "Position", "Play", "Move and Scale", "Choose",
           "Zoom"}},
    Words{"de",
          {"Mediathek", "Alle", "Fotos", "Videos", "Keine Fotos oder Videos", "Keine Kamera", "Schriften",
           "Suchen", "Zuletzt benutzt", "Keine Schriften gefunden", "Anfang", "Ende", "Position",
           "Wiedergabe", "Bewegen und skalieren", "Auswählen", "Zoom"}},
    Words{"fr",
          {"Photothèque", "Tout", "Photos", "Vidéos", "Aucune photo ni vidéo", "Aucun appareil photo",
           "Polices", "Rechercher", "Récentes", "Aucune police trouvée", "Début", "Fin", "Position",
           "Lecture", "Déplacer et redimensionner", "Choisir", "Zoom"}},
    Words{"es",
          {"Fototeca", "Todo", "Fotos", "Vídeos", "No hay fotos ni vídeos", "No hay cámara", "Tipos de letra",
           "Buscar", "Recientes", "No se han encontrado tipos de letra", "Inicio", "Fin", "Posición",
           "Reproducir", "Mover y escalar", "Seleccionar", "Zoom"}},
    Words{"pt",
          {"Fototeca", "Tudo", "Fotos", "Vídeos", "Nenhuma foto ou vídeo", "Nenhuma câmera", "Fontes",
           "Buscar", "Recentes", "Nenhuma fonte encontrada", "Início", "Fim", "Posição", "Reproduzir",
           "Mover e Redimensionar", "Escolher", "Zoom"}},
    Words{"it",
          {"Libreria", "Tutto", "Foto", "Video", "Nessuna foto o video", "Nessuna fotocamera", "Font",
           "Cerca", "Recenti", "Nessun font trovato", "Inizio", "Fine", "Posizione", "Riproduci",
           "Sposta e ridimensiona", "Scegli", "Zoom"}},
    Words{"nl",
          {"Bibliotheek", "Alles", "Foto’s", "Video’s", "Geen foto’s of video’s", "Geen camera",
           "Lettertypen", "Zoek", "Recent", "Geen lettertypen gevonden", "Begin", "Einde", "Positie",
           "Speel af", "Verplaats en schaal", "Kies", "Zoom"}},
    Words{"pl",
          {"Biblioteka", "Wszystko", "Zdjęcia", "Wideo", "Brak zdjęć i filmów", "Brak aparatu", "Czcionki",
           "Szukaj", "Ostatnie", "Nie znaleziono czcionek", "Początek", "Koniec", "Pozycja", "Odtwórz",
           "Przesuń i przeskaluj", "Wybierz", "Powiększenie"}},
    Words{"ru",
          {"Медиатека", "Все", "Фото", "Видео", "Нет фото и видео", "Нет камеры", "Шрифты", "Поиск",
           "Недавние", "Шрифты не найдены", "Начало", "Конец", "Позиция", "Воспроизвести",
           "Переместите и измените масштаб", "Выбрать", "Масштаб"}},
    Words{"uk",
          {"Медіатека", "Усі", "Фото", "Відео", "Немає фото чи відео", "Немає камери", "Шрифти", "Пошук",
           "Недавні", "Шрифтів не знайдено", "Початок", "Кінець", "Позиція", "Відтворити",
           "Перемістіть і змініть масштаб", "Вибрати", "Масштаб"}},
    Words{"tr",
          {"Arşiv", "Tümü", "Fotoğraflar", "Videolar", "Fotoğraf veya Video Yok", "Kamera Yok", "Fontlar",
           "Ara", "Son Kullanılanlar", "Font Bulunamadı", "Başlangıç", "Bitiş", "Konum", "Oynat",
           "Taşı ve Ölçekle", "Seç", "Yakınlaştırma"}},
    Words{"ar",
          {"المكتبة", "الكل", "الصور", "الفيديوهات", "لا توجد صور أو فيديوهات", "لا توجد كاميرا", "الخطوط",
           "بحث", "الأخيرة", "لم يتم العثور على خطوط", "البداية", "النهاية", "الموضع", "تشغيل",
           "التحريك وتغيير الحجم", "اختيار", "التكبير"}},
    Words{"he",
          {"ספרייה", "הכל", "תמונות", "סרטונים", "אין תמונות או סרטונים", "אין מצלמה", "גופנים", "חיפוש",
           "אחרונים", "לא נמצאו גופנים", "התחלה", "סוף", "מיקום", "הפעלה", "הזזה ושינוי גודל", "בחר",
           "הגדלה"}},
    Words{"fa",
          {"کتابخانه", "همه", "عکس‌ها", "ویدیوها", "عکس یا ویدیویی نیست", "دوربینی نیست",
           "قلم‌ها", "جستجو", "اخیر", "قلمی پیدا نشد", "آغاز", "پایان", "موقعیت", "پخش",
           "جابه‌جایی و تغییر اندازه", "انتخاب", "بزرگ‌نمایی"}},
    Words{"ur",
          {"لائبریری", "سب", "تصاویر", "ویڈیوز", "کوئی تصویر یا ویڈیو نہیں", "کوئی کیمرا نہیں", "فونٹس",
           "تلاش کریں", "حالیہ", "کوئی فونٹ نہیں ملا", "آغاز", "اختتام", "مقام", "چلائیں",
           "منتقل کریں اور سائز بدلیں", "منتخب کریں", "زوم"}},
    Words{"hi",
          {"लाइब्रेरी", "सभी", "तस्वीरें", "वीडियो", "कोई तस्वीर या वीडियो नहीं", "कोई कैमरा नहीं", "फ़ॉन्ट", "खोजें",
           "हालिया", "कोई फ़ॉन्ट नहीं मिला", "शुरुआत", "अंत", "स्थिति", "चलाएँ", "ले जाएँ और आकार बदलें", "चुनें", "ज़ूम"}},
    Words{"zh-Hans",
          {"图库", "全部", "照片", "视频", "没有照片或视频", "没有相机", "字体", "搜索", "最近使用",
           "未找到字体", "开头", "结尾", "位置", "播放", "移动和缩放", "选取", "缩放"}},
    Words{"zh-Hant",
          {"圖庫", "全部", "照片", "影片", "沒有照片或影片", "沒有相機", "字體", "搜尋", "最近使用",
           "找不到字體", "開頭", "結尾", "位置", "播放", "移動和縮放", "選擇", "縮放"}},
    Words{"ja",
          {"ライブラリ", "すべて", "写真", "ビデオ", "写真またはビデオがありません", "カメラがありません",
           "フォント", "検索", "最近使った項目", "フォントが見つかりません", "開始", "終了", "位置", "再生",
           "移動と拡大縮小", "選択", "拡大縮小"}},
    Words{"ko",
          {"보관함", "모두", "사진", "비디오", "사진 또는 비디오 없음", "카메라 없음", "서체", "검색",
           "최근 항목", "서체를 찾을 수 없음", "시작", "끝", "위치", "재생", "이동 및 크기 조절", "선택",
           "확대/축소"}},
};

} // namespace

const std::string& mediaPickerText(MediaPickerText text)
{
    static const auto texts = chosenWords(words);
    return texts[static_cast<std::size_t>(text)];
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/services/cameraText_p.h"

#include "platform/foundation/chosenWords_p.h"

#include <array>
#include <string_view>

namespace platform {

namespace {

struct Words {
    std::string_view language;
    std::array<std::string_view, 18> texts; // in the order of CameraText
};

constexpr std::array words{
    Words{"en",
          {"Photo", "Video", "Take Photo", "Record", "Stop Recording", "Switch Camera", "Retake", "Use Photo",
           "Use Video", "Viewfinder", "Recording Time", "No Access to the Camera",
           "The Camera Is in Use by Another Program", "The Camera Was Disconnected",
           "Not Enough Space on the Disk", "The Camera Cannot Be Used",
           "“%@” Would Like to Access the Camera", "“%@” Would Like to Access the Microphone"}},
    Words{"de",
          {"Foto", "Video", "Foto aufnehmen", "Aufnehmen", "Aufnahme stoppen", "Kamera wechseln",
           "Wiederholen", "Foto verwenden", "Video verwenden", "Sucher", "Aufnahmezeit",
           "Kein Zugriff auf die Kamera", "Die Kamera wird von einem anderen Programm verwendet",
           "Die Kamera wurde getrennt", "Nicht genügend Speicherplatz",
           "Die Kamera kann nicht verwendet werden", "„%@“ möchte auf die Kamera zugreifen",
           "„%@“ möchte auf das Mikrofon zugreifen"}},
    Words{"fr",
          {"Photo", "Vidéo", "Prendre une photo", "Enregistrer", "Arrêter l’enregistrement",
           "Changer de caméra", "Reprendre", "Utiliser la photo", "Utiliser la vidéo", "Viseur",
           "Durée d’enregistrement", "Pas d’accès à la caméra",
           "La caméra est utilisée par un autre programme", "La caméra a été déconnectée",
           "Espace disque insuffisant", "La caméra ne peut pas être utilisée",
           "« %@ » souhaite accéder à la caméra", "« %@ » souhaite accéder au micro"}},
    Words{"es",
          {"Foto", "Vídeo", "Hacer foto", "Grabar", "Detener grabación", "Cambiar de cámara", "Repetir",
           "Usar foto", "Usar vídeo", "Visor", "Tiempo de grabación", "Sin acceso a la cámara",
           "Otro programa está usando la cámara", "La cámara se ha desconectado",
           "No hay suficiente espacio en el disco", "No se puede usar la cámara",
           "“%@” quiere acceder a la cámara", "“%@” quiere acceder al micrófono"}},
    Words{"pt",
          {"Foto", "Vídeo", "Tirar Foto", "Gravar", "Parar Gravação", "Trocar de Câmera", "Repetir",
           "Usar Foto", "Usar Vídeo", "Visor", "Tempo de Gravação", "Sem Acesso à Câmera",
           "A câmera está sendo usada por outro programa", "A câmera foi desconectada",
           "Espaço insuficiente no disco", "Não é possível usar a câmera", "“%@” deseja acessar a câmera",
           "“%@” deseja acessar o microfone"}},
    Words{"it",
          {"Foto", "Video", "Scatta foto", "Registra", "Interrompi registrazione", "Cambia fotocamera",
           "Rifai", "Usa foto", "Usa video", "Mirino", "Tempo di registrazione",
           "Nessun accesso alla fotocamera", "La fotocamera è usata da un altro programma",
           "La fotocamera è stata scollegata", "Spazio su disco insufficiente",
           "Impossibile usare la fotocamera", "“%@” vuole accedere alla fotocamera",
           "“%@” vuole accedere al microfono"}},
    Words{"nl",
          {"Foto", "Video", "Maak foto", "Neem op", "Stop opname", "Wissel van camera", "Opnieuw",
           "Gebruik foto", "Gebruik video", "Zoeker", "Opnametijd", "Geen toegang tot de camera",
           "De camera is in gebruik door een ander programma", "De camera is losgekoppeld",
           "Niet genoeg ruimte op de schijf", "De camera kan niet worden gebruikt",
           "‘%@’ wil toegang tot de camera", "‘%@’ wil toegang tot de microfoon"}},
    Words{"pl",
          {"Zdjęcie", "Wideo", "Zrób zdjęcie", "Nagraj", "Zatrzymaj nagrywanie", "Przełącz aparat", "Powtórz",
           "Użyj zdjęcia", "Użyj wideo", "Wizjer", "Czas nagrania", "Brak dostępu do aparatu",
           "Aparat jest używany przez inny program", "Aparat został odłączony", "Za mało miejsca na dysku",
           "Nie można użyć aparatu", "„%@” chce uzyskać dostęp do aparatu",
           "„%@” chce uzyskać dostęp do mikrofonu"}},
    Words{"ru",
          {"Фото", "Видео", "Снять фото", "Записать", "Остановить запись", "Сменить камеру", "Переснять",
           "Использовать фото", "Использовать видео", "Видоискатель", "Время записи", "Нет доступа к камере",
           "Камера занята другой программой", "Камера отключена", "Недостаточно места на диске",
           "Камеру нельзя использовать", "«%@» запрашивает доступ к камере",
           "«%@» запрашивает доступ к микрофону"}},
    Words{"uk",
          {"Фото", "Відео", "Зняти фото", "Записати", "Зупинити запис", "Змінити камеру", "Перезняти",
           "Використати фото", "Використати відео", "Видошукач", "Час запису", "Немає доступу до камери",
           "Камеру використовує інша програма", "Камеру від’єднано", "Недостатньо місця на диску",
           "Неможливо використати камеру", "«%@» хоче отримати доступ до камери",
           "«%@» хоче отримати доступ до мікрофона"}},
    Words{"tr",
          {"Fotoğraf", "Video", "Fotoğraf Çek", "Kaydet", "Kaydı Durdur", "Kamerayı Değiştir", "Yeniden Çek",
           "Fotoğrafı Kullan", "Videoyu Kullan", "Vizör", "Kayıt Süresi", "Kameraya Erişim Yok",
           "Kamera Başka Bir Program Tarafından Kullanılıyor", "Kameranın Bağlantısı Kesildi",
           "Diskte Yeterli Yer Yok", "Kamera Kullanılamıyor", "“%@” kameraya erişmek istiyor",
           "“%@” mikrofona erişmek istiyor"}},
    Words{"ar",
          {"صورة", "فيديو", "التقاط صورة", "تسجيل", "إيقاف التسجيل", "تبديل الكاميرا", "إعادة الالتقاط",
           "استخدام الصورة", "استخدام الفيديو", "معين المنظر", "مدة التسجيل", "لا يمكن الوصول إلى الكاميرا",
           "الكاميرا قيد الاستخدام بواسطة برنامج آخر", "تم فصل الكاميرا", "لا توجد مساحة كافية على القرص",
           "لا يمكن استخدام الكاميرا", "يرغب «%@» في الوصول إلى الكاميرا",
           "يرغب «%@» في الوصول إلى الميكروفون"}},
    Words{"he",
          {"תמונה", "וידאו", "צילום תמונה", "הקלטה", "עצירת ההקלטה", "החלפת מצלמה", "צילום מחדש",
           "שימוש בתמונה", "שימוש בווידאו", "עינית", "זמן הקלטה", "אין גישה למצלמה",
           "המצלמה בשימוש של תוכנית אחרת", "המצלמה נותקה", "אין די מקום בדיסק", "לא ניתן להשתמש במצלמה",
           "״%@״ מבקש/ת גישה למצלמה", "״%@״ מבקש/ת גישה למיקרופון"}},
    Words{"fa",
          {"عکس", "ویدیو", "گرفتن عکس", "ضبط", "توقف ضبط", "تعویض دوربین", "گرفتن دوباره", "استفاده از عکس",
           "استفاده از ویدیو", "نمایاب", "زمان ضبط", "دسترسی به دوربین ممکن نیست",
           "برنامهٔ دیگری از دوربین استفاده می‌کند", "دوربین جدا شد",
           "فضای دیسک کافی نیست", "نمی‌توان از دوربین استفاده کرد",
           "«%@» می‌خواهد به دوربین دسترسی داشته باشد",
           "«%@» می‌خواهد به میکروفون دسترسی داشته باشد"}},
    Words{"ur",
          {"تصویر", "ویڈیو", "تصویر لیں", "ریکارڈ کریں", "ریکارڈنگ روکیں", "کیمرا بدلیں", "دوبارہ لیں",
           "تصویر استعمال کریں", "ویڈیو استعمال کریں", "ویو فائنڈر", "ریکارڈنگ کا وقت", "کیمرے تک رسائی نہیں",
           "کیمرا کسی دوسرے پروگرام کے استعمال میں ہے", "کیمرا منقطع ہو گیا", "ڈسک پر کافی جگہ نہیں",
           "کیمرا استعمال نہیں ہو سکتا", "“%@” کیمرے تک رسائی چاہتی ہے",
           "“%@” مائیکروفون تک رسائی چاہتی ہے"}},
    Words{"hi",
          {"तस्वीर", "वीडियो", "तस्वीर लें", "रिकॉर्ड करें", "रिकॉर्डिंग रोकें", "कैमरा बदलें", "फिर से लें",
           "तस्वीर इस्तेमाल करें", "वीडियो इस्तेमाल करें", "दृश्यदर्शी", "रिकॉर्डिंग का समय", "कैमरे का ऐक्सेस नहीं है",
           "कैमरा किसी दूसरे प्रोग्राम के इस्तेमाल में है", "कैमरा डिस्कनेक्ट हो गया", "डिस्क पर पर्याप्त जगह नहीं है",
           "कैमरा इस्तेमाल नहीं हो सकता", "“%@” कैमरे को ऐक्सेस करना चाहता है",
           "“%@” माइक्रोफ़ोन को ऐक्सेस करना चाहता है"}},
    Words{"zh-Hans",
          {"照片", "视频", "拍照", "录制", "停止录制", "切换相机", "重拍", "使用照片", "使用视频", "取景器",
           "录制时间", "无法访问相机", "相机正被其他程序使用", "相机已断开连接", "磁盘空间不足",
           "无法使用相机", "“%@”想要访问相机", "“%@”想要访问麦克风"}},
    Words{"zh-Hant",
          {"照片", "影片", "拍照", "錄製", "停止錄製", "切換相機", "重拍", "使用照片", "使用影片", "觀景窗",
           "錄製時間", "無法取用相機", "相機正被其他程式使用", "相機已中斷連線", "磁碟空間不足",
           "無法使用相機", "「%@」想要取用相機", "「%@」想要取用麥克風"}},
    Words{"ja",
          {"写真", "ビデオ", "写真を撮る", "録画", "録画を停止", "カメラを切り替える", "再撮影", "写真を使用",
           "ビデオを使用", "ファインダー", "録画時間", "カメラにアクセスできません",
           "カメラはほかのプログラムで使用中です", "カメラの接続が解除されました",
           "ディスクの空き容量が足りません", "カメラを使用できません",
           "“%@”がカメラへのアクセスを求めています", "“%@”がマイクへのアクセスを求めています"}},
    Words{"ko",
          {"사진", "비디오", "사진 찍기", "녹화", "녹화 중지", "카메라 전환", "다시 찍기", "사진 사용",
           "비디오 사용", "뷰파인더", "녹화 시간", "카메라에 접근할 수 없음",
           "다른 프로그램에서 카메라를 사용 중입니다", "카메라 연결이 끊어졌습니다",
           "디스크 공간이 부족합니다", "카메라를 사용할 수 없음", "‘%@’이(가) 카메라에 접근하려고 합니다",
           "‘%@’이(가) 마이크에 접근하려고 합니다"}},
};

} // namespace

const std::string& cameraText(CameraText text)
{
    static const auto texts = chosenWords(words);
    return texts[static_cast<std::size_t>(text)];
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/services/NLLanguageRecognizer.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace platform;

TEST(NLLanguageRecognizer, Short_texts_are_told_apart_within_a_script)
{
    struct Case {
        NLLanguage language;
        std::vector<const char*> texts;
    };
    const Case cases[] = {
        {NLLanguageHebrew,
         {"שלום", "שלום עולם", "לא", "תודה רבה", "שָׁלוֹם", "1. שלום!", "01:02 --> 03:04\nשלום"}},
        {NLLanguageYiddish, {"יידיש", "ייִדיש", "גוט שבת", "א שיינעם דאנק", "װאָס מאַכסטו", "נישט"}},
        {NLLanguageArabic, {"مرحبا", "لا", "شكرا", "كيف حالك", "اللغة العربية", "توقف"}},
        {NLLanguagePersian,
         {"سلام دنیا", "متشکرم", "چطوری", "گربه", "نمی‌دانم", "حال شما چطور است"}},
        {NLLanguageUrdu, {"شکریہ", "میں", "لڑکا", "ہیلو دنیا", "پاکستان", "آپ کیسے ہیں"}},
        {NLLanguagePashto, {"ښه راغلاست", "پښتو ژبه"}},
        {NLLanguageSindhi, {"سنڌي ٻولي", "توهان ڪيئن آهيو"}},
        {NLLanguageKurdish, {"سڵاو", "من دەچمە ماڵەوە"}},
        {NLLanguageUyghur, {"ئۇيغۇر تىلى", "ياخشىمۇسىز"}},
        {NLLanguageEnglish, {"hello", "good morning", "yes", "שלום hello world how are you"}},
        {NLLanguageGerman, {"guten Morgen", "Das ist nicht wahr"}},
        {NLLanguageFrench, {"bonjour", "Qu'est-ce que tu fais ici ?"}},
        {NLLanguageRussian, {"спасибо", "Что ты здесь делаешь?"}},
        {"ja", {"これは日本語の文章です"}},
        {"ko", {"안녕하세요"}},
        {"el", {"γειά σου"}},
        {NLLanguageSimplifiedChinese, {"我们说简体中文，这个软件很好用"}},
        {NLLanguageTraditionalChinese, {"我們說繁體中文，這個軟體很好用"}},
    };
    for (auto& [language, texts] : cases) {
        for (auto* text : texts)
            EXPECT_EQ(NLLanguageRecognizer::dominantLanguage(text), language) << text;
    }
}

TEST(NLLanguageRecognizer, What_is_no_language_gives_nothing)
{
    for (std::string text : {"", " ", "123 456", "!!! ...", "👍👍", "asdf", "qwer zxcv", "xqz", "jkl jkl jkl",
                             "zzzzzzzzzz", "http://a.b/c", "\xD7", "\xFF\xFEש"})
        EXPECT_EQ(NLLanguageRecognizer::dominantLanguage(text), std::nullopt) << text;
    EXPECT_EQ(NLLanguageRecognizer::dominantLanguage(std::string(5000, '\0')), std::nullopt);
}

TEST(NLLanguageRecognizer, A_long_text_is_judged_by_all_of_it)
{
    // In ever new orders: the library passes over what repeats itself.
    const std::vector<const char*> hebrewWords{"הבית", "ילד",   "הלך",   "אתמול", "עם",      "השמש",
                                               "מאוד", "ספרים", "חדשים", "כאשר",  "ירושלים", "היתה",
                                               "לפני", "שנים",  "רבות",  "מים"};
    const std::vector<const char*> englishWords{"the",  "house", "yesterday", "walked", "with",  "children",
                                                "very", "books", "because",   "there",  "years", "before",
                                                "many", "water", "thought",   "could"};
    std::mt19937 random(3);
    auto sentences = [&](const std::vector<const char*>& words, std::size_t size) {
        std::string text;
        while (text.size() < size)
            (text += words[random() % words.size()]) += random() % 8 == 0 ? ". " : " ";
        return text;
    };
    auto hebrew = sentences(hebrewWords, 300'000);
    auto english = sentences(englishWords, 300'000);
    EXPECT_EQ(NLLanguageRecognizer::dominantLanguage(english.substr(0, 80'000) + hebrew), NLLanguageHebrew);
    EXPECT_EQ(NLLanguageRecognizer::dominantLanguage(hebrew + english + english), NLLanguageEnglish);
}

// SPDX-License-Identifier: MIT
#include "platform/foundation/PropertyListWriter.h"

#include "platform/foundation/UTF8.h"

#include <charconv>
#include <cstdio>
#include <optional>
#include <variant>

namespace platform {

namespace {

// The first character that XML 1.0 has no way to write, as "U+0001". Of well-formed UTF-8.
std::optional<std::string> unwritableCharacter(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto byte = static_cast<unsigned char>(text[i]);
        unsigned character = byte;
        if (byte == 0xEF && (text.substr(i, 3) == "\uFFFE" || text.substr(i, 3) == "\uFFFF"))
            character = text[i + 2] == '\xBE' ? 0xFFFE : 0xFFFF;
        else if (byte >= ' ' || byte == '\t' || byte == '\n' || byte == '\r')
            continue;
        char name[16];
        std::snprintf(name, sizeof name, "U+%04X", character);
        return name;
    }
    return std::nullopt;
}

// Writes into one text; the path to where it stands is kept for the message of a refusal.
class PropertyListWriter {
public:
    explicit PropertyListWriter(const PropertyListLimits& limits)
        : limits_(limits)
    {
    }

    std::optional<std::string> written(const PropertyListValue& value)
    {
        out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n";
        write(value);
        out_ += "</plist>\n";
        checkSize();
        return fault_.empty() ? std::optional(std::move(out_)) : std::nullopt;
    }
    const std::string& fault() const { return fault_; }

private:
    void write(const PropertyListValue& value)
    {
        if (!fault_.empty())
            return;
        if (++values_ > limits_.values)
            return fail("it has more than " + std::to_string(limits_.values) + " values");
        checkSize();
        indent();
        if (auto* text = value.as<std::string>())
            writeText("string", *text);
        else if (auto* integer = value.as<std::int64_t>())
            out_ += "<integer>" + std::to_string(*integer) + "</integer>\n";
        else if (auto* real = value.as<double>())
            writeReal(*real);
        else if (auto* truth = value.as<bool>())
            out_ += *truth ? "<true/>\n" : "<false/>\n";
        else if (auto* date = value.as<PropertyListDate>())
            writeDate(*date);
        else if (auto* data = value.as<PropertyListData>())
            writeData(*data);
        else if (auto* array = value.as<PropertyListArray>())
            writeArray(*array);
        else
            writeDictionary(*value.as<PropertyListDictionary>());
    }

    void writeArray(const PropertyListArray& array)
    {
        if (!open("array"))
            return;
        for (std::size_t i = 0; i < array.size() && fault_.empty(); ++i) {
            path_.push_back(std::to_string(i));
            write(array[i]);
            path_.pop_back();
        }
        close("array");
    }

    void writeDictionary(const PropertyListDictionary& dictionary)
    {
        if (!open("dict"))
            return;
        for (auto& [key, value] : dictionary) {
            if (!fault_.empty())
                return;
            path_.push_back(repairedUTF8(key));
            indent();
            writeText("key", key);
            write(value);
            path_.pop_back();
        }
        close("dict");
    }

    // Says whether there is room for one more level, which also bounds the recursion.
    bool open(std::string_view tag)
    {
        if (depth_ >= limits_.depth) {
            fail("values are nested deeper than " + std::to_string(limits_.depth));
            return false;
        }
        ++depth_;
        out_ += '<';
        out_ += tag;
        out_ += ">\n";
        return true;
    }
    void close(std::string_view tag)
    {
        --depth_;
        indent();
        out_ += "</";
        out_ += tag;
        out_ += ">\n";
    }
    void indent() { out_.append(depth_, '\t'); }

    void writeText(std::string_view tag, std::string_view text)
    {
        if (!isWellFormedUTF8(text))
            return fail("the text" + place() + " is not UTF-8");
        if (auto character = unwritableCharacter(text))
            return fail("the text" + place() + " holds the character " + *character);
        out_ += '<';
        out_ += tag;
        out_ += '>';
        for (char character : text) {
            switch (character) {
            case '&':
                out_ += "&amp;";
                break;
            case '<':
                out_ += "&lt;";
                break;
            case '>': // would end a section after "]]"
                out_ += "&gt;";
                break;
            case '\r': // a reader turns a bare one into a line feed
                out_ += "&#13;";
                break;
            default:
                out_ += character;
            }
        }
        out_ += "</";
        out_ += tag;
        out_ += ">\n";
    }

    void writeReal(double real)
    {
        char digits[32];
        auto end = std::to_chars(digits, digits + sizeof digits, real).ptr;
        out_ += "<real>" + std::string(digits, end) + "</real>\n";
    }

    void writeDate(PropertyListDate date)
    {
        using namespace std::chrono;
        // Before anything is computed: far beyond these years the arithmetic overflows.
        if (date < sys_days(year(0) / 1 / 1) || date >= sys_days(year(10'000) / 1 / 1))
            return fail("the date" + place() + " is outside of the years 0 to 9999");
        auto days = floor<std::chrono::days>(date);
        year_month_day day(days);
        hh_mm_ss time(date - days);
        char text[64];
        std::snprintf(text, sizeof text, "<date>%04d-%02u-%02uT%02d:%02d:%02dZ</date>\n", int(day.year()),
                      unsigned(day.month()), unsigned(day.day()), int(time.hours().count()),
                      int(time.minutes().count()), int(time.seconds().count()));
        out_ += text;
    }

    void writeData(const PropertyListData& data)
    {
        constexpr std::string_view digits =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        constexpr std::size_t bytesPerLine = 57; // 76 digits
        if (data.size() > limits_.bytes)
            return fail("it is larger than " + std::to_string(limits_.bytes) + " bytes");
        out_ += "<data>";
        for (std::size_t i = 0; i < data.size(); i += 3) {
            if (i % bytesPerLine == 0) {
                out_ += '\n';
                indent();
            }
            auto byte = [&](std::size_t at) {
                return at < data.size() ? std::to_integer<unsigned>(data[at]) : 0;
            };
            unsigned bits = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
            out_ += digits[bits >> 18];
            out_ += digits[bits >> 12 & 63];
            out_ += i + 1 < data.size() ? digits[bits >> 6 & 63] : '=';
            out_ += i + 2 < data.size() ? digits[bits & 63] : '=';
        }
        if (!data.empty()) {
            out_ += '\n';
            indent();
        }
        out_ += "</data>\n";
    }

    void checkSize()
    {
        if (out_.size() > limits_.bytes)
            fail("it is larger than " + std::to_string(limits_.bytes) + " bytes");
    }

    // " at windows/0/title"; nothing for the root.
    std::string place() const
    {
        std::string place;
        for (auto& step : path_)
            place += (place.empty() ? " at " : "/") + step;
        return place;
    }
    void fail(std::string reason)
    {
        if (fault_.empty())
            fault_ = std::move(reason);
    }

    const PropertyListLimits limits_;
    std::string out_;
    std::vector<std::string> path_;
    std::size_t values_ = 0;
    std::size_t depth_ = 0;
    std::string fault_;
};

} // namespace

Result<std::string> propertyListXML(const PropertyListValue& value, const PropertyListLimits& limits)
{
    PropertyListWriter writer(limits);
    if (auto xml = writer.written(value))
        return std::move(*xml);
    auto& reason = writer.fault();
    return failure(
        NSCocoaError::propertyListWriteInvalid,
        {{std::string(NSLocalizedDescriptionKey), "The property list can’t be written: " + reason + "."},
         {std::string(NSLocalizedFailureReasonErrorKey), reason}});
}

} // namespace platform

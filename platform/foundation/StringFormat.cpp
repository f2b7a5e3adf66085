// SPDX-License-Identifier: MIT
#include "platform/foundation/StringFormat.h"

#include "platform/foundation/appendUTF8.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <locale.h>

namespace platform {

namespace {

using Integer = FormatArgument::Integer;

constexpr std::string_view absentText = "(null)";

// The calling thread writes numbers as the C locale does, whatever the process chose, while this lives.
class PlainNumbers {
public:
    PlainNumbers()
    {
        static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
        previous_ = ::uselocale(plain);
    }
    ~PlainNumbers() { ::uselocale(previous_); }
    PlainNumbers(const PlainNumbers&) = delete; // the thread's locale is restored once
    PlainNumbers& operator=(const PlainNumbers&) = delete;

private:
    locale_t previous_;
};

// What printf makes of one number. `format` is ours.
template <class Number>
std::string printed(const std::string& format, int width, int precision, Number number)
{
    PlainNumbers scope;
    char buffer[128];
    auto size = std::snprintf(buffer, sizeof buffer, format.c_str(), width, precision, number);
    if (size < 0)
        return {};
    if (static_cast<std::size_t>(size) < sizeof buffer)
        return {buffer, static_cast<std::size_t>(size)};
    std::string result(static_cast<std::size_t>(size), '\0');
    std::snprintf(result.data(), result.size() + 1, format.c_str(), width, precision, number);
    return result;
}

bool isContinuation(char unit)
{
    return (static_cast<unsigned char>(unit) & 0xC0) == 0x80;
}

double asNumber(const Integer& integer)
{
    return integer.isSigned ? static_cast<double>(static_cast<std::int64_t>(integer.bits))
                            : static_cast<double>(integer.bits);
}

// As "%@" writes it.
struct PlainText {
    std::string operator()(std::monostate) const { return std::string(absentText); }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(const Integer& integer) const
    {
        return integer.isSigned ? std::to_string(static_cast<std::int64_t>(integer.bits))
                                : std::to_string(integer.bits);
    }
    std::string operator()(double number) const { return printed("%*.*g", 0, 6, number); }
    std::string operator()(char32_t character) const
    {
        std::string text;
        if (!appendUTF8(text, character))
            appendUTF8(text, 0xFFFD);
        return text;
    }
};

class Writer {
public:
    explicit Writer(std::span<const FormatArgument> arguments)
        : arguments_(arguments)
    {
    }

    std::string result;

    void operator()(std::string_view text) { result += text; }

    void operator()(const FormatConversion& given)
    {
        auto conversion = given;
        auto width = value(conversion.width).value_or(0);
        if (width < 0) { // a negative argument asks for the other side, as in printf
            conversion.isLeftAligned = true;
            width = -width;
        }
        auto precision = value(conversion.precision).value_or(-1);
        auto& argument = storage(conversion.argument);
        switch (conversion.type()) {
        case FormatArgumentType::integer:
            if (auto* integer = std::get_if<Integer>(&argument))
                return writeInteger(conversion, width, precision, *integer);
            if (auto* character = std::get_if<char32_t>(&argument))
                return writeInteger(conversion, width, precision, {.bits = *character, .mask = ~0U});
            break;
        case FormatArgumentType::number:
            if (auto* number = std::get_if<double>(&argument))
                return writeNumber(conversion, width, precision, *number);
            if (auto* integer = std::get_if<Integer>(&argument))
                return writeNumber(conversion, width, precision, asNumber(*integer));
            break;
        case FormatArgumentType::character:
            if (auto* integer = std::get_if<Integer>(&argument)) {
                auto scalar = std::min<std::uint64_t>(integer->bits & integer->mask, 0x110000);
                return writeText(conversion, width, -1, PlainText()(static_cast<char32_t>(scalar)));
            }
            precision = -1; // cuts texts only
            break;
        case FormatArgumentType::text:
            return writeText(conversion, width, precision, std::visit(PlainText(), argument));
        }
        writeText(conversion, width, std::holds_alternative<std::string>(argument) ? precision : -1,
                  std::visit(PlainText(), argument));
    }

private:
    const FormatArgument::Storage& storage(std::size_t place) const
    {
        static const FormatArgument::Storage absent;
        return place < arguments_.size() ? arguments_[place].storage() : absent;
    }

    std::optional<int> value(const std::optional<FormatCount>& count) const
    {
        if (!count || !count->argument)
            return count ? std::optional(count->value) : std::nullopt;
        auto* integer = std::get_if<Integer>(&storage(*count->argument));
        if (!integer)
            return std::nullopt;
        auto number = std::clamp<double>(asNumber(*integer), -largestFormatCount, largestFormatCount);
        return static_cast<int>(number);
    }

    static std::string flags(const FormatConversion& conversion)
    {
        std::string text = "%";
        if (conversion.isLeftAligned)
            text += '-';
        if (conversion.hasSign)
            text += '+';
        if (conversion.hasSpace)
            text += ' ';
        if (conversion.isAlternate)
            text += '#';
        if (conversion.hasZeros)
            text += '0';
        return text + "*.*";
    }

    void writeInteger(const FormatConversion& conversion, int width, int precision, const Integer& integer)
    {
        bool isDecimal = conversion.letter == 'd' || conversion.letter == 'i';
        if (isDecimal && integer.isSigned)
            result +=
                printed(flags(conversion) + "lld", width, precision, static_cast<long long>(integer.bits));
        else
            result += printed(flags(conversion) + "ll" + (isDecimal ? 'u' : conversion.letter), width,
                              precision, static_cast<unsigned long long>(integer.bits & integer.mask));
    }

    void writeNumber(const FormatConversion& conversion, int width, int precision, double number)
    {
        result += printed(flags(conversion) + conversion.letter, width, precision, number);
    }

    // Width and precision count characters, so that none is ever cut.
    void writeText(const FormatConversion& conversion, int width, int precision, std::string_view text)
    {
        std::int64_t count = 0;
        std::size_t end = 0;
        for (; end < text.size(); ++end) {
            if (isContinuation(text[end]))
                continue;
            if (count == precision)
                break;
            ++count;
        }
        auto padding = static_cast<std::size_t>(std::max<std::int64_t>(width - count, 0));
        if (!conversion.isLeftAligned)
            result.append(padding, ' ');
        result += text.substr(0, end);
        if (conversion.isLeftAligned)
            result.append(padding, ' ');
    }

    std::span<const FormatArgument> arguments_;
};

} // namespace

std::string stringWithFormat(std::string_view format, std::span<const FormatArgument> arguments)
{
    Writer writer(arguments);
    for (auto& piece : parseFormat(format))
        std::visit(writer, piece);
    return std::move(writer.result);
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "kit/sharing/feedbackURLs.h"

#include "kit/foundation/applicationPages.h"
#include "kit/foundation/bundleFacts.h"
#include "kit/foundation/modelName.h"

#include "platform/foundation/URLComponents.h"

#include <algorithm>

namespace zelk {

using namespace platform;

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string digitsOf(std::string_view number)
{
    std::string digits;
    std::ranges::copy_if(number, std::back_inserter(digits), isDigit);
    return digits;
}

constexpr std::string_view telephoneMarks = "+-.()/ ";

// As people write one: "+44 (0)20 7946-0000".
bool isTelephoneNumber(std::string_view address)
{
    return std::ranges::any_of(address, isDigit) && std::ranges::all_of(address, [](char c) {
               return isDigit(c) || telephoneMarks.find(c) != telephoneMarks.npos;
           });
}

// Of a number with the country's code: what is dialled from abroad, after the "+". The zero in brackets is dialled only
// within the country, the zeros before the code only from some.
std::string internationalDigits(std::string_view number)
{
    std::string written(number);
    if (auto inland = written.find("(0)"); inland != written.npos)
        written.erase(inland, 3);
    auto digits = digitsOf(written);
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

} // namespace

FeedbackFacts FeedbackFacts::current()
{
    auto identifier = versionIdentifier();
    return {.displayName = zelk::displayName(UIApplication::shared()),
            .version = identifier ? *identifier : appVersion(*Bundle::main()),
            .device = modelName()};
}

std::optional<URL> feedbackMailURL(const FeedbackSheetItem::Email& email, const FeedbackFacts& facts)
{
    auto subject = facts.displayName;
    subject.append(" Feedback");
    auto body = email.extraInfo.value_or("");
    body.append("\n\nApp Version: ").append(facts.version).append("\nDevice: ").append(facts.device);
    return URLComponents{.scheme = "mailto",
                         .path = email.address,
                         .queryItems = {{"subject", std::move(subject)}, {"body", std::move(body)}}}
        .url();
}

std::optional<URL> feedbackMessageURL(std::string_view address)
{
    if (!isTelephoneNumber(address))
        return address.empty() ? std::nullopt
                               : URLComponents{.scheme = "imessage", .path = std::string(address)}.url();
    auto isInternational = address[address.find_first_not_of(' ')] == '+';
    auto number = isInternational ? "+" + internationalDigits(address) : digitsOf(address);
    return URLComponents{.scheme = "sms", .path = std::move(number)}.url();
}

std::optional<URL> feedbackWhatsAppURL(std::string_view number, WhatsAppPlace place)
{
    auto digits = internationalDigits(number);
    if (digits.empty())
        return std::nullopt;
    return place == WhatsAppPlace::app ? URL::parse("whatsapp://send?phone=" + digits)
                                       : URL::parse("https://wa.me/" + digits);
}

} // namespace zelk

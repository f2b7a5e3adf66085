// SPDX-License-Identifier: MIT
#include "platform/network/URLCacheEntry_p.h"

#include "platform/network/HTTPURLResponse.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace platform {

namespace {

static_assert(std::endian::native == std::endian::little, "the files are little-endian");

constexpr std::string_view magic("ZlkURL\0\1", 8);
constexpr std::size_t sealSize = magic.size() + sizeof(std::uint64_t) + sizeof(std::uint32_t);

enum class Kind : std::uint8_t { answer = 1, variants = 2 };
enum class ResponseKind : std::uint8_t { plain = 0, http = 1 };

// Finds damage, not malice: eight bytes at a time, since bodies are large and this is on the way to the first frame.
std::uint64_t checksum(std::string_view bytes)
{
    std::uint64_t state = 0x6a09e667f3bcc909U ^ bytes.size();
    auto mix = [&state](std::uint64_t word) { state = std::rotl(state ^ word, 29) * 0x9e3779b97f4a7c15U; };
    std::uint64_t word = 0;
    for (; bytes.size() >= sizeof word; bytes.remove_prefix(sizeof word)) {
        std::memcpy(&word, bytes.data(), sizeof word);
        mix(word);
    }
    word = 0;
    std::memcpy(&word, bytes.data(), bytes.size());
    mix(word);
    state ^= state >> 33;
    state *= 0xff51afd7ed558ccdU;
    return state ^ state >> 33;
}

class Writer {
public:
    template <class Number>
    void number(Number value)
    {
        bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    void raw(std::string_view bytes) { bytes_.append(bytes); }
    void text(std::string_view text)
    {
        number(static_cast<std::uint32_t>(text.size()));
        bytes_.append(text);
    }
    const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
};

// Reads from left to right; the first thing that is not there spoils all that follows.
class Reader {
public:
    explicit Reader(std::string_view bytes)
        : rest_(bytes)
    {
    }

    bool isGood() const { return isGood_; }
    bool isAtGoodEnd() const { return isGood_ && rest_.empty(); }
    template <class Number>
    Number number()
    {
        Number value{};
        if (auto bytes = take(sizeof value); isGood_)
            std::memcpy(&value, bytes.data(), sizeof value);
        return value;
    }
    std::string text() { return std::string(take(number<std::uint32_t>())); }
    std::vector<std::string> texts()
    {
        std::vector<std::string> texts;
        for (auto count = number<std::uint32_t>(); isGood_ && count > 0; --count)
            texts.push_back(text());
        return texts;
    }

private:
    std::string_view take(std::size_t size)
    {
        if (!isGood_ || size > rest_.size()) {
            isGood_ = false;
            return {};
        }
        auto taken = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return taken;
    }

    std::string_view rest_;
    bool isGood_ = true;
};

void write(Writer& writer, const URLResponse& response)
{
    auto http = dynamic_cast<const HTTPURLResponse*>(&response);
    writer.number(http ? ResponseKind::http : ResponseKind::plain);
    writer.text(response.url().absoluteString());
    if (!http) {
        writer.text(response.mimeType());
        writer.number(response.expectedContentLength());
        writer.text(response.textEncodingName());
        return;
    }
    writer.number(static_cast<std::int32_t>(http->statusCode()));
    writer.text(http->httpVersion());
    writer.number(static_cast<std::uint32_t>(http->allHeaderFields().size() * 2));
    for (const auto& [name, value] : http->allHeaderFields()) {
        writer.text(name);
        writer.text(value);
    }
}

std::shared_ptr<const URLResponse> readHTTPResponse(Reader& reader, URL url)
{
    auto status = reader.number<std::int32_t>();
    auto version = reader.text();
    auto texts = reader.texts();
    if (!reader.isGood() || status < 100 || status > 999 || texts.size() % 2 != 0
        || texts.size() / 2 > HTTPHeaderFields::mostFields)
        return nullptr;
    HTTPHeaderFields fields;
    for (std::size_t i = 0; i < texts.size(); i += 2) {
        if (!isValidHTTPHeaderField(texts[i], texts[i + 1]))
            return nullptr;
        fields.insert_or_assign(texts[i], texts[i + 1]);
    }
    return std::make_shared<const HTTPURLResponse>(std::move(url), status, std::move(version),
                                                   std::move(fields));
}

std::shared_ptr<const URLResponse> readResponse(Reader& reader)
{
    auto kind = reader.number<ResponseKind>();
    auto url = URL::parse(reader.text());
    if (!reader.isGood() || !url)
        return nullptr;
    if (kind == ResponseKind::http)
        return readHTTPResponse(reader, *std::move(url));
    auto mimeType = reader.text();
    auto length = reader.number<std::int64_t>();
    auto encoding = reader.text();
    if (kind != ResponseKind::plain || !reader.isGood())
        return nullptr;
    return std::make_shared<const URLResponse>(*std::move(url), std::move(mimeType), length,
                                               std::move(encoding));
}

// `bytes` is the whole file, of which the head takes so many.
URLCacheRecord readAnswer(Reader& reader, std::string& bytes, std::size_t headSize)
{
    auto url = reader.text();
    auto variant = reader.text();
    HTTPExchangeTimes times;
    times.requested.timeIntervalSince1970 = reader.number<double>();
    times.answered.timeIntervalSince1970 = reader.number<double>();
    auto response = readResponse(reader);
    auto size = reader.number<std::uint64_t>();
    auto sum = reader.number<std::uint64_t>();
    auto body = std::string_view(bytes).substr(headSize);
    if (!response || !reader.isAtGoodEnd() || size != body.size() || sum != checksum(body)
        || !std::isfinite(times.requested.timeIntervalSince1970)
        || !std::isfinite(times.answered.timeIntervalSince1970))
        return {};
    bytes.erase(0, headSize); // cheaper than another allocation of that size
    return URLCacheAnswer{std::move(url), std::move(variant),
                          CachedURLResponse(std::move(response),
                                            std::make_shared<const std::string>(std::move(bytes)),
                                            URLCacheStoragePolicy::allowed, times)};
}

URLCacheRecord readVariants(Reader& reader)
{
    URLCacheVariants variants;
    variants.url = reader.text();
    variants.generation = reader.text();
    variants.fields = reader.texts();
    if (!reader.isAtGoodEnd())
        return {};
    return variants;
}

} // namespace

std::string encodedHead(const URLCacheAnswer& answer)
{
    const auto& response = answer.response;
    Writer writer;
    writer.number(Kind::answer);
    writer.text(answer.url);
    writer.text(answer.variant);
    writer.number(response.times().requested.timeIntervalSince1970);
    writer.number(response.times().answered.timeIntervalSince1970);
    write(writer, *response.response());
    writer.number(static_cast<std::uint64_t>(response.data().size()));
    writer.number(checksum(response.data()));
    return sealedURLCacheHead(writer.bytes());
}

std::string encoded(const URLCacheVariants& variants)
{
    Writer writer;
    writer.number(Kind::variants);
    writer.text(variants.url);
    writer.text(variants.generation);
    writer.number(static_cast<std::uint32_t>(variants.fields.size()));
    for (const auto& field : variants.fields)
        writer.text(field);
    return sealedURLCacheHead(writer.bytes());
}

std::string sealedURLCacheHead(std::string_view head)
{
    Writer seal;
    seal.raw(magic);
    seal.number(checksum(head));
    seal.text(head);
    return seal.bytes();
}

URLCacheRecord decodeURLCacheRecord(std::string bytes)
{
    std::string_view view = bytes;
    if (view.size() < sealSize || !view.starts_with(magic))
        return {};
    Reader seal(view.substr(magic.size()));
    auto sum = seal.number<std::uint64_t>();
    auto size = seal.number<std::uint32_t>();
    if (size > view.size() - sealSize)
        return {};
    auto head = view.substr(sealSize, size);
    if (checksum(head) != sum)
        return {};
    Reader reader(head);
    auto kind = reader.number<Kind>();
    if (kind == Kind::answer)
        return readAnswer(reader, bytes, sealSize + size);
    return kind == Kind::variants && view.size() == sealSize + size ? readVariants(reader) : URLCacheRecord();
}

} // namespace platform

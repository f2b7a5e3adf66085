// SPDX-License-Identifier: MIT
#include "platform/graphics/Utf16Text_p.h"

#include "platform/graphics/TextColumns.h"
#include "platform/graphics/Utf8Decoder_p.h"

#include <algorithm>

namespace platform {

namespace {

bool turnsDirection(char32_t character)
{
    if (character < 0x590)
        return false;
    switch (QChar::direction(character)) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirRLI:
        return true;
    default:
        return false;
    }
}

} // namespace

Utf16Text::Utf16Text(std::string_view utf8, const Substitute& substitute)
    : byteCount_(utf8.size())
{
    if (isPlainASCII(utf8))
        string_ = QString::fromLatin1(utf8.data(), static_cast<qsizetype>(utf8.size()));
    else
        decode(utf8, substitute);
}

void Utf16Text::append(char32_t character, std::size_t byte)
{
    auto at = static_cast<std::uint32_t>(byte);
    if (QChar::requiresSurrogates(character)) {
        string_.append(QChar(QChar::highSurrogate(character)));
        string_.append(QChar(QChar::lowSurrogate(character)));
        bytes_.push_back(at);
    } else {
        string_.append(QChar(static_cast<char16_t>(character)));
    }
    bytes_.push_back(at);
}

void Utf16Text::decode(std::string_view utf8, const Substitute& substitute)
{
    auto size = static_cast<qsizetype>(utf8.size());
    string_.reserve(size);
    bytes_.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        auto decoded = decodeCharacter(utf8, at);
        auto character = decoded.character;
        if (substitute && (character < 0x20 || character >= 0x7F)) {
            if (auto sign = substitute(character))
                character = sign;
        }
        hasRightToLeft_ = hasRightToLeft_ || turnsDirection(character);
        append(character, at);
        at += decoded.length;
    }
    if (string_.size() == size)
        bytes_ = {};
}

std::size_t Utf16Text::byteOf(qsizetype utf16) const
{
    utf16 = std::clamp(utf16, qsizetype(0), string_.size());
    if (utf16 == string_.size())
        return byteCount_;
    return bytes_.empty() ? static_cast<std::size_t>(utf16) : bytes_[static_cast<std::size_t>(utf16)];
}

qsizetype Utf16Text::utf16Of(std::size_t byte) const
{
    if (byte >= byteCount_)
        return string_.size();
    if (bytes_.empty())
        return static_cast<qsizetype>(byte);
    // The last character that begins at or before the byte; of a pair, its first unit.
    auto after = std::upper_bound(bytes_.begin(), bytes_.end(), byte);
    auto index = std::prev(after) - bytes_.begin();
    if (index > 0 && bytes_[static_cast<std::size_t>(index - 1)] == bytes_[static_cast<std::size_t>(index)])
        --index;
    return index;
}

} // namespace platform

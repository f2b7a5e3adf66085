// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// An absolute URL, as a value; copies share the text. A file URL names a path of any bytes: what is not
// valid UTF-8 travels percent-encoded and comes back unchanged. URLs that name the same path in other
// spellings (%41 for A, file:/x for file:///x) are equal. Any thread.
class URL {
public:
    // What is moved from keeps its text.
    URL(const URL&) = default;
    URL& operator=(const URL&) = default;

    // The file at `path`, made absolute against the working directory of now. "." and ".." stay, since a
    // symbolic link may give them meaning; an empty path is the working directory.
    static URL fileURL(std::string_view path);

    // Reads an absolute URL. Of file URLs the forms file:///path, file:/path and file://localhost/path;
    // another host is refused, as are relative references, percent signs without two hexadecimal digits
    // and control characters. Characters that should have been percent-encoded (spaces, letters beyond
    // ASCII) are encoded.
    static std::optional<URL> parse(std::string_view text);

    // Lower case.
    std::string scheme() const;
    bool isFileURL() const;
    // Empty for file URLs.
    std::string host() const;
    // Percent-decoded raw bytes, not necessarily UTF-8. May contain a zero byte, which no file has.
    std::string path() const;
    // Percent-encoded, ASCII only. Stays until this is assigned to or gone.
    const std::string& absoluteString() const { return *text_; }

    // Of the decoded path, a slash at the end not counting; "/" for the root.
    std::string lastPathComponent() const;
    // After the last dot of the last component: "srt" of "a.b.srt", nothing of ".hidden" and "name.".
    std::string pathExtension() const;
    // `component` is decoded bytes; slashes in it separate further components. Query and fragment go.
    URL appendingPathComponent(std::string_view component) const;
    // "/" stays. Query and fragment go.
    URL deletingLastPathComponent() const;

    std::strong_ordering operator<=>(const URL& other) const { return *text_ <=> *other.text_; }
    bool operator==(const URL& other) const { return text_ == other.text_ || *text_ == *other.text_; }

private:
    URL(std::string text, std::size_t pathBegin, std::size_t pathEnd);
    std::string_view encodedPath() const;
    URL withEncodedPath(std::string_view path) const;

    std::shared_ptr<const std::string> text_;
    // of the path in the text
    std::size_t pathBegin_;
    std::size_t pathEnd_;
};

} // namespace platform

template <>
struct std::hash<platform::URL> {
    std::size_t operator()(const platform::URL& url) const noexcept
    {
        return std::hash<std::string>{}(url.absoluteString());
    }
};

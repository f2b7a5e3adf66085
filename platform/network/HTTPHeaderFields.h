// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

// Whether the names of two header fields are the same one: the case of ASCII letters does not count.
bool isSameHTTPHeaderField(std::string_view a, std::string_view b);

// The header fields of a message in the order they were given in, each name once. A value: equal to another when that has
// the same fields in any order.
class HTTPHeaderFields {
public:
    using Field = std::pair<std::string, std::string>; // name and value
    using const_iterator = std::vector<Field>::const_iterator;

    // To look one up takes as long as there are fields: what comes from outside and has more is refused by who reads it.
    static constexpr std::size_t mostFields = 200;

    HTTPHeaderFields() = default;
    // Of several with the same name the first one.
    HTTPHeaderFields(std::initializer_list<Field> fields);

    const_iterator begin() const { return fields_.begin(); }
    const_iterator end() const { return fields_.end(); }
    std::size_t size() const { return fields_.size(); }
    bool empty() const { return fields_.empty(); }

    const_iterator find(std::string_view name) const;
    bool contains(std::string_view name) const { return find(name) != end(); }

    // Keeps what is there.
    void emplace(std::string_view name, std::string_view value);
    // Replaces what is there, but for the name.
    void insert_or_assign(std::string_view name, std::string_view value);
    // Appends to what is there, after ", ".
    void add(std::string_view name, std::string_view value);
    void erase(const_iterator field) { fields_.erase(field); }
    void erase(std::string_view name);
    void clear() { fields_.clear(); }

    bool operator==(const HTTPHeaderFields& other) const;

private:
    void append(std::string_view name, std::string_view value);
    std::string* value(std::string_view name);

    std::vector<Field> fields_;
};

// Nothing when there is no such field.
std::optional<std::string> valueForHTTPHeaderField(const HTTPHeaderFields& fields, std::string_view name);

// Whether a field may be sent or believed: the name is a token; the value has no control characters but the
// tab, and no white space around it.
bool isValidHTTPHeaderField(std::string_view name, std::string_view value);

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/PropertyList.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct XML_ParserStruct;

namespace platform {

// Builds values from the elements of an XML property list. The open containers stand on a stack of ours, not
// on the machine's, so that depth is a number and not a crash. Used once.
class PropertyListParser {
public:
    explicit PropertyListParser(const PropertyListLimits& limits);
    ~PropertyListParser();
    // Expat holds its address.
    PropertyListParser(const PropertyListParser&) = delete;
    PropertyListParser& operator=(const PropertyListParser&) = delete;

    std::optional<PropertyListValue> parse(std::string_view xml);
    // Why nothing came: "line 3: the tag string is inside integer".
    const std::string& fault() const { return fault_; }

private:
    struct Container {
        PropertyListValue value;        // an array or a dictionary
        std::optional<std::string> key; // of the entry that comes next
    };

    static void handleStart(void* self, const char* name, const char** attributes);
    static void handleEnd(void* self, const char* name);
    static void handleText(void* self, const char* text, int length);
    static void handleEntity(void* self, const char* name, int isParameter, const char* value, int length,
                             const char* base, const char* system, const char* publicName,
                             const char* notation);
    static void handleSkippedEntity(void* self, const char* name, int isParameter);

    void start(std::string_view name);
    void end(std::string_view name);
    void endKey();
    void add(PropertyListValue value);
    std::optional<PropertyListValue> leaf(std::string_view name);
    // Stops the parser; the first reason stays.
    void fail(std::string reason);

    const PropertyListLimits limits_;
    XML_ParserStruct* parser_;
    std::vector<Container> open_;
    std::string leafName_; // of the open element that holds text; empty when none is
    std::string text_;     // of that element
    std::size_t values_ = 0;
    bool isInsideList_ = false;
    std::optional<PropertyListValue> root_;
    std::string fault_;
};

} // namespace platform

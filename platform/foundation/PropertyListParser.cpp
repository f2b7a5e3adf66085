// SPDX-License-Identifier: MIT
#include "platform/foundation/PropertyListParser_p.h"

#include "platform/foundation/Precondition.h"
#include "platform/foundation/PropertyListScalars_p.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include <expat.h>

namespace platform {

namespace {

constexpr std::array<std::string_view, 8> leafNames = {"key",  "string", "integer", "real",
                                                       "date", "data",   "true",    "false"};

} // namespace

PropertyListParser::PropertyListParser(const PropertyListLimits& limits)
    : limits_(limits)
    , parser_(XML_ParserCreate(nullptr))
{
    precondition(parser_ != nullptr, "out of memory");
    XML_SetUserData(parser_, this);
    XML_SetElementHandler(parser_, &handleStart, &handleEnd);
    XML_SetCharacterDataHandler(parser_, &handleText);
    XML_SetEntityDeclHandler(parser_, &handleEntity);
    XML_SetSkippedEntityHandler(parser_, &handleSkippedEntity);
}

PropertyListParser::~PropertyListParser()
{
    XML_ParserFree(parser_);
}

std::optional<PropertyListValue> PropertyListParser::parse(std::string_view xml)
{
    if (xml.size() > std::min<std::size_t>(limits_.bytes, std::numeric_limits<int>::max())) {
        fault_ = "it is larger than " + std::to_string(limits_.bytes) + " bytes";
        return std::nullopt;
    }
    if (XML_Parse(parser_, xml.data(), static_cast<int>(xml.size()), XML_TRUE) != XML_STATUS_OK)
        fail(XML_ErrorString(XML_GetErrorCode(parser_)));
    if (fault_.empty() && !root_)
        fail("there is no value");
    return fault_.empty() ? std::move(root_) : std::nullopt;
}

void PropertyListParser::handleStart(void* self, const char* name, const char**)
{
    static_cast<PropertyListParser*>(self)->start(name);
}

void PropertyListParser::handleEnd(void* self, const char* name)
{
    static_cast<PropertyListParser*>(self)->end(name);
}

void PropertyListParser::handleText(void* self, const char* text, int length)
{
    auto& parser = *static_cast<PropertyListParser*>(self);
    std::string_view added(text, static_cast<std::size_t>(length));
    if (!parser.leafName_.empty())
        parser.text_ += added;
    else if (added.find_first_not_of(" \t\r\n") != std::string_view::npos)
        parser.fail("there is text outside of a value");
}

void PropertyListParser::handleEntity(void* self, const char*, int, const char*, int, const char*,
                                      const char*, const char*, const char*)
{
    static_cast<PropertyListParser*>(self)->fail("it declares an entity");
}

void PropertyListParser::handleSkippedEntity(void* self, const char*, int)
{
    static_cast<PropertyListParser*>(self)->fail("it uses an entity that is declared elsewhere");
}

void PropertyListParser::start(std::string_view name)
{
    if (!fault_.empty())
        return;
    if (!leafName_.empty())
        return fail("the tag " + std::string(name) + " is inside " + leafName_);
    if (!isInsideList_) {
        if (name != "plist")
            return fail("the outermost tag is not plist");
        isInsideList_ = true;
        return;
    }
    if (root_)
        return fail("there is more than one value");
    if (name != "key" && !open_.empty() && open_.back().value.as<PropertyListDictionary>()
        && !open_.back().key)
        return fail("a value has no key");
    if (name == "dict" || name == "array") {
        if (open_.size() >= limits_.depth)
            return fail("values are nested deeper than " + std::to_string(limits_.depth));
        auto empty = name == "dict" ? PropertyListValue(PropertyListDictionary())
                                    : PropertyListValue(PropertyListArray());
        open_.push_back({std::move(empty), std::nullopt});
        return;
    }
    if (std::ranges::find(leafNames, name) == leafNames.end())
        return fail("the tag " + std::string(name.substr(0, 40)) + " is unknown");
    leafName_ = name;
    text_.clear();
}

void PropertyListParser::end(std::string_view name)
{
    if (!fault_.empty() || name == "plist")
        return;
    if (name == "key")
        return endKey();
    if (!leafName_.empty()) {
        auto value = leaf(name);
        leafName_.clear();
        if (value)
            add(std::move(*value));
        else
            fail("\"" + text_.substr(0, 40) + "\" is not of type " + std::string(name));
        return;
    }
    auto container = std::move(open_.back());
    open_.pop_back();
    if (container.key)
        return fail("the key " + *container.key + " has no value");
    add(std::move(container.value));
}

void PropertyListParser::endKey()
{
    leafName_.clear();
    if (open_.empty() || !open_.back().value.as<PropertyListDictionary>())
        return fail("a key is outside of a dictionary");
    if (open_.back().key)
        return fail("the key " + *open_.back().key + " has no value");
    open_.back().key = std::move(text_);
}

void PropertyListParser::add(PropertyListValue value)
{
    if (++values_ > limits_.values)
        return fail("it has more than " + std::to_string(limits_.values) + " values");
    if (open_.empty()) {
        root_ = std::move(value);
        return;
    }
    auto& container = open_.back();
    if (auto* array = container.value.as<PropertyListArray>()) {
        array->push_back(std::move(value));
        return;
    }
    container.value.as<PropertyListDictionary>()->insert_or_assign(std::move(*container.key),
                                                                   std::move(value));
    container.key.reset();
}

std::optional<PropertyListValue> PropertyListParser::leaf(std::string_view name)
{
    if (name == "string")
        return PropertyListValue(std::move(text_));
    return propertyListScalar(name, text_);
}

void PropertyListParser::fail(std::string reason)
{
    if (!fault_.empty())
        return;
    fault_ = "line " + std::to_string(XML_GetCurrentLineNumber(parser_)) + ": " + std::move(reason);
    XML_StopParser(parser_, XML_FALSE);
}

} // namespace platform

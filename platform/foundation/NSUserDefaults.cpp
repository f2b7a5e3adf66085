// SPDX-License-Identifier: MIT
#include "platform/foundation/NSUserDefaults.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/DefaultsArguments_p.h"
#include "platform/foundation/DefaultsStore_p.h"
#include "platform/foundation/Precondition.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/foundation/PropertyListCoercions_p.h"

#include <cstdlib>
#include <mutex>
#include <utility>

namespace platform {

namespace {

bool isFolderName(std::string_view name)
{
    return !name.empty() && name.size() <= 255 && name != "." && name != ".."
        && name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

std::string nameOfProgram()
{
    auto identifier = Bundle::main()->bundleIdentifier();
    return identifier && isFolderName(*identifier) ? *identifier : ProcessInfo::processInfo().processName();
}

struct RegisteredDefaults {
    std::mutex mutex;
    PropertyListDictionary values;
};

// Never destroyed: settings may be used until the process ends.
RegisteredDefaults& registered()
{
    static auto& defaults = *new RegisteredDefaults;
    return defaults;
}

const PropertyListValue* find(const PropertyListDictionary& values, std::string_view key)
{
    auto found = values.find(key);
    return found == values.end() ? nullptr : &found->second;
}

template <class Type>
std::optional<Type> exactly(std::optional<PropertyListValue> value)
{
    auto* found = value ? value->as<Type>() : nullptr;
    return found ? std::optional(std::move(*found)) : std::nullopt;
}

} // namespace

NSUserDefaults::Observation::Observation(std::weak_ptr<DefaultsStore> store, std::uint64_t number)
    : store_(std::move(store))
    , number_(number)
{
}

NSUserDefaults::Observation::Observation(Observation&& other) noexcept
    : store_(std::exchange(other.store_, {}))
    , number_(other.number_)
{
}

NSUserDefaults::Observation& NSUserDefaults::Observation::operator=(Observation&& other) noexcept
{
    std::swap(store_, other.store_);
    std::swap(number_, other.number_);
    Observation ended(std::move(other)); // not when the other one happens to end
    return *this;
}

NSUserDefaults::Observation::~Observation()
{
    if (auto store = store_.lock())
        store->removeObserver(number_);
}

const std::shared_ptr<NSUserDefaults>& NSUserDefaults::standardUserDefaults()
{
    static const auto& standard =
        *new std::shared_ptr<NSUserDefaults>(std::make_shared<NSUserDefaults>(nameOfProgram()));
    return standard;
}

NSUserDefaults::NSUserDefaults(std::string_view suiteName)
{
    precondition(isFolderName(suiteName),
                 "the name of settings must be that of a folder, not “" + std::string(suiteName) + "”");
    store_ = DefaultsStore::named(suiteName);
}

NSUserDefaults::~NSUserDefaults() = default;

std::optional<PropertyListValue> NSUserDefaults::objectForKey(std::string_view key) const
{
    if (auto* argument = find(argumentDefaults(), key))
        return *argument;
    if (auto value = store_->value(key))
        return value;
    std::lock_guard lock(registered().mutex);
    auto* value = find(registered().values, key);
    return value ? std::optional(*value) : std::nullopt;
}

std::optional<std::string> NSUserDefaults::stringForKey(std::string_view key) const
{
    auto value = objectForKey(key);
    return value ? coercedToString(*value) : std::nullopt;
}

std::int64_t NSUserDefaults::integerForKey(std::string_view key) const
{
    auto value = objectForKey(key);
    return value ? coercedToInteger(*value).value_or(0) : 0;
}

double NSUserDefaults::doubleForKey(std::string_view key) const
{
    auto value = objectForKey(key);
    return value ? coercedToDouble(*value).value_or(0) : 0;
}

bool NSUserDefaults::boolForKey(std::string_view key) const
{
    auto value = objectForKey(key);
    return value && coercedToBool(*value).value_or(false);
}

std::optional<PropertyListArray> NSUserDefaults::arrayForKey(std::string_view key) const
{
    return exactly<PropertyListArray>(objectForKey(key));
}

std::optional<std::vector<std::string>> NSUserDefaults::stringArrayForKey(std::string_view key) const
{
    auto array = arrayForKey(key);
    if (!array)
        return std::nullopt;
    std::vector<std::string> texts;
    for (auto& element : *array) {
        auto* text = element.as<std::string>();
        if (!text)
            return std::nullopt;
        texts.push_back(std::move(*text));
    }
    return texts;
}

std::optional<PropertyListDictionary> NSUserDefaults::dictionaryForKey(std::string_view key) const
{
    return exactly<PropertyListDictionary>(objectForKey(key));
}

std::optional<PropertyListData> NSUserDefaults::dataForKey(std::string_view key) const
{
    return exactly<PropertyListData>(objectForKey(key));
}

std::optional<URL> NSUserDefaults::URLForKey(std::string_view key) const
{
    auto text = exactly<std::string>(objectForKey(key));
    if (!text || text->empty())
        return std::nullopt;
    const char* home = text->starts_with("~/") ? std::getenv("HOME") : nullptr;
    if (home)
        return URL::fileURL(home + text->substr(1));
    if (auto url = text->starts_with('/') ? std::nullopt : URL::parse(*text))
        return url;
    return URL::fileURL(*text);
}

void NSUserDefaults::setObject(PropertyListValue value, std::string_view key)
{
    store_->set(key, std::move(value));
}

void NSUserDefaults::setValue(std::optional<PropertyListValue> value, std::string_view key)
{
    store_->set(key, std::move(value));
}

void NSUserDefaults::setInteger(std::int64_t value, std::string_view key)
{
    store_->set(key, PropertyListValue(value));
}

void NSUserDefaults::setDouble(double value, std::string_view key)
{
    store_->set(key, PropertyListValue(value));
}

void NSUserDefaults::setBool(bool value, std::string_view key)
{
    store_->set(key, PropertyListValue(value));
}

void NSUserDefaults::setURL(const URL& value, std::string_view key)
{
    // Not as a path: paths may have bytes that no text has.
    store_->set(key, PropertyListValue(value.absoluteString()));
}

void NSUserDefaults::removeObjectForKey(std::string_view key)
{
    store_->set(key, std::nullopt);
}

void NSUserDefaults::registerDefaults(const PropertyListDictionary& defaults)
{
    std::lock_guard lock(registered().mutex);
    for (auto& [key, value] : defaults)
        registered().values.insert_or_assign(key, value);
}

PropertyListDictionary NSUserDefaults::dictionaryRepresentation() const
{
    // From the first domain to the last: what is there already stays.
    auto all = argumentDefaults();
    all.merge(store_->values());
    std::lock_guard lock(registered().mutex);
    all.insert(registered().values.begin(), registered().values.end());
    return all;
}

Result<void> NSUserDefaults::synchronize()
{
    return store_->flush();
}

NSUserDefaults::Observation NSUserDefaults::observe(std::function<void(const ChangedKeys&)> onChange)
{
    precondition(static_cast<bool>(onChange), "an observer of settings must be callable");
    return Observation(store_, store_->addObserver(std::move(onChange)));
}

} // namespace platform

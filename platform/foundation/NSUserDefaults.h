// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/URL.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class DefaultsStore;

// The settings of an application: property-list values under text keys, kept in one file that several processes share
// (docs/formats/settings.md). A key is looked up in the arguments of the command line (`-key value`), then among the
// settings, then among the registered defaults. Arguments and registered defaults are common to all objects of the
// process and never saved.
//
// Any thread. Reading never fails and never waits for the disk. A changed setting is seen by this process at once and
// is on disk, and seen by other processes, within a tenth of a second: many changes in a row are one write. A program
// that ends normally writes what is left; one that is killed within that time loses those last changes, unless
// synchronize() had returned, and never anything older. When writing fails, the changes stay in memory, the log has one
// line, and each later change tries again.
class NSUserDefaults : public NSObject {
public:
    using ChangedKeys = std::set<std::string, std::less<>>;

    // Ends when it is destroyed. On another thread than that of the callback, one call may be under way still.
    class [[nodiscard]] Observation {
    public:
        Observation() = default;
        Observation(Observation&& other) noexcept;
        Observation& operator=(Observation&& other) noexcept;
        ~Observation();

    private:
        friend class NSUserDefaults;
        Observation(std::weak_ptr<DefaultsStore> store, std::uint64_t number);
        std::weak_ptr<DefaultsStore> store_;
        std::uint64_t number_ = 0;
    };

    // Those of the running program, filed under its bundle identifier or, if it has none, its name.
    static const std::shared_ptr<NSUserDefaults>& standardUserDefaults();

    // Settings that several programs share. Objects of one name share everything.
    // Requires: a `suiteName` that can be a folder's name: 1 to 255 bytes, no slash, no zero byte, not "." or "..".
    explicit NSUserDefaults(std::string_view suiteName);
    ~NSUserDefaults() override;

    // Nothing when no domain has the key.
    std::optional<PropertyListValue> objectForKey(std::string_view key) const;
    std::optional<PropertyListValue> valueForKey(std::string_view key) const { return objectForKey(key); }

    // The rest converts as the platform does, and gives nothing, 0 or false where it cannot.
    // Text; a number or truth value as text ("0.5", "1").
    std::optional<std::string> stringForKey(std::string_view key) const;
    // A number, cut towards 0 and to the range; a truth value as 0 or 1; the number that a text begins with.
    std::int64_t integerForKey(std::string_view key) const;
    double doubleForKey(std::string_view key) const;
    // A number that is not 0; a text that begins with Y, T or a number other than 0 ("yes", "TRUE", "1").
    bool boolForKey(std::string_view key) const;
    std::optional<PropertyListArray> arrayForKey(std::string_view key) const;
    // Nothing when an element is not text.
    std::optional<std::vector<std::string>> stringArrayForKey(std::string_view key) const;
    std::optional<PropertyListDictionary> dictionaryForKey(std::string_view key) const;
    std::optional<PropertyListData> dataForKey(std::string_view key) const;
    // A text that is a URL, or the path of a file, in which "~/" at the beginning is the home folder.
    std::optional<URL> URLForKey(std::string_view key) const;

    // Changes the setting; an argument of the same key still goes before it. A value that a property list cannot hold
    // (a text with control characters) is kept for this process only, and synchronize() fails.
    void setObject(PropertyListValue value, std::string_view key);
    // Nothing removes the setting.
    void setValue(std::optional<PropertyListValue> value, std::string_view key);
    void setInteger(std::int64_t value, std::string_view key);
    void setDouble(double value, std::string_view key);
    void setBool(bool value, std::string_view key);
    void setURL(const URL& value, std::string_view key);
    // Arguments and registered defaults stay, so the key may still have a value.
    void removeObjectForKey(std::string_view key);

    // Adds to the registered defaults; a key that is registered already gets the new value.
    void registerDefaults(const PropertyListDictionary& defaults);
    // Everything that objectForKey() finds.
    PropertyListDictionary dictionaryRepresentation() const;

    // Writes what is not written yet and reads what others wrote; returns when it is safe from a loss of power. Waits
    // for the disk and for others that are writing; a process that goes on writing for 10 seconds is an error.
    // Errors: the file-write codes, propertyListWriteInvalid, the file-read codes when the file cannot be used.
    Result<void> synchronize();

    // Calls back after settings changed, by whomever, with their keys; changes in quick succession come as one call.
    // On the main run loop where the process has one, else on a thread of this class. Arguments and registered
    // defaults do not count. The callback may change settings and end observations.
    Observation observe(std::function<void(const ChangedKeys&)> onChange);

private:
    std::shared_ptr<DefaultsStore> store_;
};

} // namespace platform

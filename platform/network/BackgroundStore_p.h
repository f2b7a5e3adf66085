// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/URLRequest.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// The downloads of a background session, on disk: which there are and what they have loaded. One process at a time has
// those of one identifier. What is damaged counts as absent. Any thread.
class BackgroundStore {
public:
    struct Entry {
        std::size_t identifier = 0;
        URLRequest request;
        std::string description;
        // Of what the file has: empty when it cannot be continued.
        std::string validator;
        std::string source; // the URL that the validator is of, after redirections
        std::optional<std::int64_t> total;
    };

    // Null when another process has it or the disk refuses.
    static std::shared_ptr<BackgroundStore> open(const std::string& identifier);
    ~BackgroundStore();
    BackgroundStore(const BackgroundStore&) = delete; // holds a lock
    BackgroundStore& operator=(const BackgroundStore&) = delete;

    // By their identifiers.
    std::vector<Entry> entries();
    // Adds it or replaces the one of its identifier.
    void put(const Entry& entry);
    void remove(std::size_t identifier);
    // Of one that is there.
    void describe(std::size_t identifier, const std::string& description);
    std::string partialPath(std::size_t identifier) const;

private:
    BackgroundStore(std::string directory, int lock);
    void read();
    void removeUnlisted();
    void write();

    // fixed after construction
    std::string directory_; // with a "/" at the end
    int lock_;

    std::mutex mutex_;
    std::map<std::size_t, Entry> entries_; // guarded by mutex_
};

// A download that was stopped, as text for its program to keep.
struct ResumeData {
    URLRequest request;
    std::string path;
    std::string validator;
    std::string source;
    std::optional<std::int64_t> total;
};
std::optional<std::string> encodeResumeData(const ResumeData& data);
// Nothing for what encodeResumeData() has not made.
std::optional<ResumeData> decodeResumeData(const std::string& text);

} // namespace platform

// SPDX-License-Identifier: MIT
// Thumbnails that are made once: keyed-cache shows what a limited cache keeps of a dozen requests, and what it lets go.
#include "kit/data/Cache.h"

#include <cstdio>
#include <string>

namespace {

struct Thumbnail {
    std::string file;
    int bytes = 0;
};

Thumbnail makeThumbnail(const std::string& file)
{
    std::printf("  making %s\n", file.c_str());
    return {file, static_cast<int>(file.size()) * 1000};
}

} // namespace

int main()
{
    zelk::Cache<std::string, Thumbnail> thumbnails;
    thumbnails.setName("thumbnails");
    thumbnails.setCountLimit(3);
    thumbnails.setTotalCostLimit(40'000);
    thumbnails.setWillEvictValue(
        [](const Thumbnail& leaving) { std::printf("  letting %s go\n", leaving.file.c_str()); });

    // A copy is a second handle on the same store: hand it to whoever makes pictures, on any thread.
    auto request = [thumbnails](const std::string& file) mutable {
        std::printf("%s\n", file.c_str());
        if (thumbnails.value(file))
            return;
        auto made = makeThumbnail(file);
        thumbnails.setValue(made, file, made.bytes);
    };
    for (auto file : {"cat.png", "dog.png", "cat.png", "cat.png", "bee.png", "ant.png", "cow.png", "cat.png"})
        request(file);

    std::printf("closing\n");
    thumbnails.removeAllValues();
}

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/avfoundation/AVAssetExportSession.h"
#include "platform/avfoundation/AVError.h"
#include "platform/avfoundation/AVURLAsset.h"
#include "tests/support/MediaInspection.h"
#include "tests/support/TemporaryDirectory.h"

#include <future>

namespace tests {

inline platform::CMTimeRange seconds(double from, double to)
{
    auto time = [](double value) { return platform::CMTime::makeWithSeconds(value, 90000); };
    return platform::CMTimeRange::fromTimeToTime(time(from), time(to));
}

inline std::shared_ptr<platform::AVURLAsset> assetAt(const std::string& path)
{
    return std::make_shared<platform::AVURLAsset>(platform::URL::fileURL(path));
}

struct ExportWish {
    platform::CMTimeRange range{platform::CMTime::zero(), platform::CMTime::positiveInfinity()};
    std::string_view preset = platform::AVAssetExportPreset1920x1080;
    bool copies = true;
};

// A session that has not started yet.
inline std::shared_ptr<platform::AVAssetExportSession>
makeExport(const std::shared_ptr<platform::AVAsset>& asset, const std::string& output,
           const ExportWish& wish = {})
{
    auto session = platform::AVAssetExportSession::make(asset, wish.preset);
    if (session) {
        session->setTimeRange(wish.range);
        session->setOutputURL(platform::URL::fileURL(output));
        session->setCopiesWherePossible(wish.copies);
    }
    return session;
}

// Runs it to its end; its error.
inline std::optional<platform::Error> run(platform::AVAssetExportSession& session)
{
    std::promise<void> done;
    session.exportAsynchronously([&] { done.set_value(); });
    done.get_future().wait();
    return session.error();
}

// The output, which must be there and please the prober.
inline Inspection exported(const std::string& input, const ExportWish& wish = {})
{
    SCOPED_TRACE(input);
    TemporaryDirectory folder;
    auto session = makeExport(assetAt(input), folder.path("out.mov"), wish);
    if (!session) {
        ADD_FAILURE() << "nothing to export in " << input;
        return {};
    }
    auto error = run(*session);
    EXPECT_FALSE(error) << error->localizedDescription();
    if (error)
        return {};
    EXPECT_EQ(session->progress(), 1);
    EXPECT_EQ(proberWarnings(folder.path("out.mov")), "");
    EXPECT_TRUE(hasIndexAtFront(folder.path("out.mov")));
    return inspect(folder.path("out.mov"));
}

} // namespace tests

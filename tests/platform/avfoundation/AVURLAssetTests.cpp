// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVURLAsset.h"

#include "platform/avfoundation/AVAssetTrack.h"
#include "platform/avfoundation/AVError.h"
#include "tests/support/MediaFixtures.h"
#include "tests/support/TemporaryDirectory.h"

#include <sys/stat.h>

using namespace platform;
using namespace tests;

namespace {

std::shared_ptr<AVURLAsset> assetOf(const std::string& path)
{
    return std::make_shared<AVURLAsset>(URL::fileURL(path));
}

TEST(AVURLAsset, says_of_a_movie_what_its_tracks_are)
{
    auto asset = assetOf(
        mediaFixture("mov",
                     "-f lavfi -i testsrc2=s=360x288:r=25:d=2 -itsoffset 0.5 -f lavfi -i "
                     "sine=440:r=48000:d=1 -vf setsar=16/15 -c:v libx264 -preset ultrafast -pix_fmt "
                     "yuv420p -colorspace bt709 -color_primaries bt709 -color_trc bt709 -c:a aac -ac 2 "
                     "-metadata title=Sea -metadata:s:a:0 language=fra"));
    EXPECT_FALSE(asset->loadError());
    EXPECT_TRUE(asset->isExportable());
    EXPECT_NEAR(asset->duration().seconds(), 2, 0.001);
    ASSERT_EQ(asset->tracks().size(), 2U);
    auto video = asset->tracksWithMediaType(AVMediaType::video).at(0);
    EXPECT_EQ(video->naturalSize(), (CGSize{384, 288}));
    EXPECT_EQ(video->timeRange(), CMTimeRange(CMTime::zero(), {2, 1}));
    EXPECT_NEAR(video->nominalFrameRate(), 25, 0.001);
    auto format = video->formatDescriptions().at(0);
    EXPECT_EQ(format->mediaSubType(), fourCharCode("avc1"));
    EXPECT_EQ(format->video()->color, (ColorDescription{.primaries = 1, .transfer = 1, .matrix = 1}));
    EXPECT_NEAR(format->video()->pixelAspectRatio, 16.0 / 15, 1e-6);
    auto audio = asset->tracksWithMediaType(AVMediaType::audio).at(0);
    EXPECT_NEAR(audio->timeRange().start.seconds(), 0.5, 0.03) << "a track that begins later";
    EXPECT_NEAR(audio->timeRange().end().seconds(), 1.5, 0.03);
    EXPECT_EQ(audio->languageCode(), "fra");
    EXPECT_EQ(audio->formatDescriptions().at(0)->audio()->channels, 2);
    EXPECT_EQ(asset->trackWithTrackID(audio->trackID()), audio);
    auto metadata = asset->metadata();
    auto title = std::ranges::find(metadata, AVMetadataKey::title, &AVMetadataItem::commonKey);
    ASSERT_NE(title, metadata.end());
    EXPECT_EQ(title->value, "Sea");
}

TEST(AVURLAsset, turns_pictures_upright_by_the_track)
{
    const std::string plain = mediaFixture(
        "mp4", "-f lavfi -i testsrc2=s=64x32:r=10:d=0.5 -c:v libx264 -preset ultrafast -pix_fmt yuv420p");
    struct Case {
        int rotation;
        CGPoint topLeft; // where the corner of the stored picture comes to lie
    };
    for (auto [rotation, topLeft] :
         {Case{0, {0, 0}}, Case{90, {0, 64}}, Case{180, {64, 32}}, Case{270, {32, 0}}}) {
        SCOPED_TRACE(rotation);
        auto turned = mediaFixture(
            "mp4", "-i " + plain + " -c copy -metadata:s:v:0 rotate=" + std::to_string(rotation));
        auto track = assetOf(turned)->tracks().at(0);
        auto corner = track->preferredTransform().apply(CGPoint{});
        EXPECT_NEAR(corner.x, topLeft.x, 0.01);
        EXPECT_NEAR(corner.y, topLeft.y, 0.01);
        auto place = track->preferredTransform().apply(CGRect{{}, track->naturalSize()});
        EXPECT_NEAR(place.minX() + place.minY(), 0, 0.01);
    }
}

TEST(AVURLAsset, has_no_track_for_a_cover_and_cannot_export_what_is_encrypted)
{
    auto cover = mediaFixture("png", "-f lavfi -i color=red:s=16x16 -frames:v 1");
    auto song = assetOf(mediaFixture("m4a",
                                     "-f lavfi -i sine=d=1 -i " + cover
                                         + " -map 0 -map 1 -c:a aac -c:v copy -disposition:v attached_pic"));
    EXPECT_EQ(song->tracks().size(), 1U);
    EXPECT_TRUE(song->tracksWithMediaType(AVMediaType::video).empty());

    auto locked = assetOf(
        mediaFixture("mp4",
                     "-f lavfi -i sine=d=1 -c:a aac -encryption_scheme cenc-aes-ctr -encryption_key "
                     "00112233445566778899aabbccddeeff -encryption_kid 00112233445566778899aabbccddeeff"));
    ASSERT_EQ(locked->tracks().size(), 1U);
    EXPECT_TRUE(locked->hasProtectedContent());
    EXPECT_FALSE(locked->isExportable());
}

TEST(AVURLAsset, knows_durations_that_the_file_does_not_say_or_says_wrongly)
{
    const std::string tone = "-f lavfi -i sine=d=20:r=44100 ";
    struct Case {
        std::string_view name;
        std::string path;
        double tolerance;
    };
    TemporaryDirectory folder;
    folder.write("live.webm",
                 outputOf("ffmpeg -v error -f lavfi -i sine=d=20 -c:a libopus -live 1 -f webm - | cat"));
    const Case cases[] = {
        {"a bare stream", mediaFixture("aac", tone + "-c:a aac"), 0.05},
        {"variable rate, no header", mediaFixture("mp3", tone + "-c:a libmp3lame -q:a 9 -write_xing 0"),
         0.06},
        {"a recording that was never finished", folder.path("live.webm"), 0.05},
        {"a transport stream", mediaFixture("ts", tone + "-c:a aac"), 0.05},
    };
    for (auto& [name, path, tolerance] : cases)
        EXPECT_NEAR(assetOf(path)->duration().seconds(), 20, tolerance) << name;

    auto header = mediaFixture("mp3", tone + "-c:a libmp3lame");
    auto precise = std::make_shared<AVURLAsset>(
        URL::fileURL(header), AVURLAssetOptions{.AVURLAssetPreferPreciseDurationAndTimingKey = true});
    EXPECT_NEAR(precise->duration().seconds(), 20, 1.0 / 44100) << "without the encoder's padding";
}

TEST(AVURLAsset, refuses_what_is_no_media_file_with_the_reason)
{
    TemporaryDirectory folder;
    auto playlist = "#EXTM3U\n#EXT-X-TARGETDURATION:5\n#EXTINF:5,\nfile:///etc/passwd\n#EXT-X-ENDLIST\n";
    folder.write("empty.mp4", "");
    folder.write("text.mp4", "1\n00:00:01,000 --> 00:00:02,000\nHello\n\n");
    folder.write("list.m3u8", playlist);
    folder.write("list.mp4", playlist);
    folder.write("concat.ffconcat", "ffconcat version 1.0\nfile /etc/passwd\n");
    folder.write("sdp.mp4",
                 "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\nt=0 0\nm=audio 9 RTP/AVP 0\n");
    folder.write("zero.mp4", std::string(100000, '\0'));
    ASSERT_EQ(::mkfifo(folder.path("pipe.mp4").c_str(), 0600), 0);
    auto format = nsError(AVError::fileFormatNotRecognized);
    const std::pair<URL, NSError> cases[] = {
        {folder.url("empty.mp4"), format},
        {folder.url("text.mp4"), format},
        {folder.url("list.m3u8"), format},
        {folder.url("list.mp4"), format},
        {folder.url("concat.ffconcat"), format},
        {folder.url("sdp.mp4"), format},
        {folder.url("zero.mp4"), format},
        {folder.url("pipe.mp4"), NSCocoaError::fileReadUnknown},
        {folder.url(""), NSCocoaError::fileReadUnknown},
        {folder.url("missing.mp4"), NSCocoaError::fileReadNoSuchFile},
        {*URL::parse("http://127.0.0.1:9/a.mp4"), NSCocoaError::fileReadUnsupportedScheme},
    };
    for (auto& [url, expected] : cases) {
        SCOPED_TRACE(url.lastPathComponent());
        auto asset = std::make_shared<AVURLAsset>(url);
        ASSERT_TRUE(asset->loadError());
        EXPECT_EQ(asset->loadError()->bridged(), expected) << asset->loadError()->localizedDescription();
        EXPECT_TRUE(asset->tracks().empty());
        EXPECT_FALSE(asset->duration().isValid());
        EXPECT_FALSE(asset->isExportable());
    }
}

} // namespace

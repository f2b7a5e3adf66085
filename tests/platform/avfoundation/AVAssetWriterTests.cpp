// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVAssetWriter.h"
#include "platform/avfoundation/AVError.h"
#include "tests/support/FullDisk.h"
#include "tests/support/MediaInspection.h"
#include "tests/support/TemporaryDirectory.h"

#include <atomic>
#include <future>

using namespace platform;
using namespace tests;

namespace {

constexpr int rate = 8000;
constexpr AudioSettings pcm16{
    .AVSampleRateKey = rate, .AVNumberOfChannelsKey = 1, .AVLinearPCMBitDepthKey = 16};
constexpr AudioSettings aac{.AVFormatIDKey = kAudioFormatMPEG4AAC};

// Sound of one channel that counts up, from `start` on, in sample frames.
CMSampleBuffer counting(std::int64_t start, std::int64_t count, std::int16_t first = 1)
{
    auto bytes = std::make_shared<std::vector<std::int16_t>>();
    for (std::int64_t i = 0; i < count; ++i)
        bytes->push_back(static_cast<std::int16_t>(first + i));
    CMSampleBuffer sample;
    sample.formatDescription =
        CMFormatDescription::linearPCM({.sampleRate = rate, .channels = 1, .bitsPerChannel = 16});
    sample.presentationTimeStamp = CMTime(start, rate);
    sample.duration = CMTime(count, rate);
    sample.sampleCount = count;
    sample.data = {std::as_bytes(std::span(*bytes)), bytes};
    return sample;
}

struct Writing {
    explicit Writing(const std::string& path, AVFileType type = AVFileTypeWAVE,
                     std::vector<AudioSettings> tracks = {pcm16})
        : writer(*AVAssetWriter::make(URL::fileURL(path), type))
    {
        for (auto& settings : tracks) {
            inputs.push_back(std::make_shared<AVAssetWriterInput>(platform::AVMediaType::audio, settings));
            writer->add(inputs.back());
        }
    }
    bool start(const CMTime& time = CMTime::zero())
    {
        const bool isStarted = writer->startWriting();
        if (isStarted)
            writer->startSession(time);
        return isStarted;
    }
    AVAssetWriterStatus finish()
    {
        std::promise<void> done;
        writer->finishWriting([&] { done.set_value(); });
        done.get_future().wait();
        return writer->status();
    }

    std::shared_ptr<AVAssetWriter> writer;
    std::vector<std::shared_ptr<AVAssetWriterInput>> inputs;
};

TEST(AVAssetWriter, a_wave_file_holds_the_sound_that_was_appended_gaps_as_silence)
{
    struct Case {
        const char* name;
        CMTime start;
        std::vector<std::pair<std::int64_t, std::int64_t>> pieces; // start and length, each counting from 1
        std::vector<int> expected;
    };
    const Case cases[] = {
        {"one piece", CMTime::zero(), {{0, 4}}, {1, 2, 3, 4}},
        {"it begins with the first sample", CMTime::zero(), {{5000, 3}}, {1, 2, 3}},
        {"what is before the session is cut", CMTime(2, rate), {{0, 5}}, {3, 4, 5}},
        {"a gap", CMTime::zero(), {{0, 2}, {5, 2}}, {1, 2, 0, 0, 0, 1, 2}},
        {"an overlap", CMTime::zero(), {{0, 6}, {3, 5}}, {1, 2, 3, 4, 5, 6, 4, 5}},
        {"a time that is off by one", CMTime::zero(), {{0, 3}, {4, 2}}, {1, 2, 3, 1, 2}},
        {"nothing", CMTime::zero(), {}, {}},
        {"all before the session", CMTime(9, rate), {{0, 5}}, {}},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        TemporaryDirectory folder;
        Writing writing(folder.path("out.wav"));
        ASSERT_TRUE(writing.start(test.start));
        for (auto [start, count] : test.pieces)
            EXPECT_TRUE(writing.inputs[0]->append(counting(start, count)));
        EXPECT_EQ(writing.finish(), AVAssetWriterStatus::completed);
        auto bytes = folder.read("out.wav");
        auto data = bytes.substr(bytes.size() - test.expected.size() * 2);
        for (std::size_t i = 0; i < test.expected.size(); ++i)
            EXPECT_EQ(static_cast<std::uint8_t>(data[2 * i]) | data[2 * i + 1] << 8, test.expected[i]);
        EXPECT_EQ(bytes.substr(bytes.size() - data.size() - 8, 4), "data");
        EXPECT_EQ(bytes.substr(0, 4) + bytes.substr(8, 4), "RIFFWAVE");
    }
}

TEST(AVAssetWriter, an_input_that_is_a_second_ahead_of_another_waits_for_it)
{
    TemporaryDirectory folder;
    Writing writing(folder.path("out.mov"), AVFileTypeQuickTimeMovie, {aac, aac, aac});
    auto& inputs = writing.inputs;
    EXPECT_FALSE(inputs[0]->isReadyForMoreMediaData()) << "nothing has started";
    ASSERT_TRUE(writing.start());
    EXPECT_TRUE(inputs[0]->append(counting(0, rate * 3 / 2)));
    EXPECT_FALSE(inputs[0]->isReadyForMoreMediaData());
    EXPECT_TRUE(inputs[1]->isReadyForMoreMediaData());
    inputs[1]->append(counting(0, rate));
    EXPECT_FALSE(inputs[0]->isReadyForMoreMediaData());
    inputs[2]->markAsFinished();
    EXPECT_TRUE(inputs[0]->isReadyForMoreMediaData());
    EXPECT_FALSE(inputs[2]->isReadyForMoreMediaData());
    EXPECT_FALSE(inputs[2]->append(counting(0, 10))) << "it is finished";
    EXPECT_EQ(writing.finish(), AVAssetWriterStatus::completed);
    EXPECT_FALSE(inputs[1]->append(counting(rate, 10)));
    // The track without sound says nothing and is left out.
    EXPECT_EQ(inspect(folder.path("out.mov")).streams.size(), 2U);
}

TEST(AVAssetWriter, many_inputs_are_asked_in_turn_and_one_that_stalls_stops_nobody_for_ever)
{
    constexpr int tracks = 8, length = 12;
    TemporaryDirectory folder;
    Writing writing(folder.path("out.mov"), AVFileTypeQuickTimeMovie, std::vector(tracks, aac));
    ASSERT_TRUE(writing.start());
    std::vector<int> given(tracks); // quarters of a second, each touched on its own queue only
    std::atomic<int> ended = 0, stalls = 0;
    std::promise<void> done;
    for (int track = 0; track < tracks; ++track) {
        auto& input = writing.inputs[static_cast<std::size_t>(track)];
        input->requestMediaDataWhenReady(DispatchQueue::make("org.zelk.tests.track"), [&, track, input] {
            auto& count = given[static_cast<std::size_t>(track)];
            // The last track often has nothing when it is asked.
            if (track == tracks - 1 && ++stalls % 3)
                return static_cast<void>(input->append(counting(count * rate / 4, 0)));
            while (count < length && input->isReadyForMoreMediaData())
                EXPECT_TRUE(input->append(counting(count++ * rate / 4, rate / 4)));
            if (count == length) {
                input->markAsFinished();
                if (++ended == tracks)
                    done.set_value();
            }
        });
    }
    done.get_future().wait();
    EXPECT_EQ(writing.finish(), AVAssetWriterStatus::completed);
    auto movie = inspect(folder.path("out.mov"));
    ASSERT_EQ(movie.streams.size(), static_cast<std::size_t>(tracks));
    for (auto& stream : movie.streams)
        EXPECT_NEAR(static_cast<double>(stream.sound.at(0).size()), rate * length / 4, 1024);
}

TEST(AVAssetWriter, a_writer_that_cannot_start_says_why_and_its_inputs_are_asked_once)
{
    TemporaryDirectory folder;
    folder.write("taken.wav", "mine");
    struct Case {
        std::string path;
        Error error;
    };
    const Case cases[] = {
        {folder.path("taken.wav"), AVError::fileAlreadyExists},
        {folder.path("no/folder.wav"), NSError(NSCocoaError::fileNoSuchFile)},
        {"/proc/out.wav", NSError(NSCocoaError::fileNoSuchFile)},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.path);
        Writing writing(test.path);
        EXPECT_FALSE(writing.start());
        ASSERT_TRUE(writing.writer->error());
        EXPECT_EQ(writing.writer->error()->bridged().domain(), test.error.bridged().domain());
        EXPECT_EQ(writing.writer->error()->bridged().code(), test.error.bridged().code());
        writing.writer->startSession(CMTime::zero());
        std::promise<void> asked; // a second call would throw
        writing.inputs[0]->requestMediaDataWhenReady(DispatchQueue::make("org.zelk.tests.failed"),
                                                     [&] { asked.set_value(); });
        asked.get_future().wait();
        EXPECT_EQ(writing.finish(), AVAssetWriterStatus::failed);
    }
    EXPECT_EQ(folder.read("taken.wav"), "mine");
    EXPECT_FALSE(AVAssetWriter::make(*URL::parse("https://example.org/a.wav"), AVFileTypeWAVE));
    Writing empty(folder.path("empty.mov"), AVFileTypeQuickTimeMovie, {});
    EXPECT_FALSE(empty.start());
    EXPECT_EQ(empty.writer->error(), Error(AVError::noSourceTrack));
}

TEST(AVAssetWriter, what_a_file_type_cannot_hold_is_refused)
{
    struct Case {
        const char* name;
        AVFileType type;
        platform::AVMediaType mediaType;
        AVAssetWriterInput::OutputSettings settings;
        bool isTaken;
    };
    constexpr auto audio = platform::AVMediaType::audio, video = platform::AVMediaType::video;
    const Case cases[] = {
        {"PCM in WAVE", AVFileTypeWAVE, audio, pcm16, true},
        {"AAC in WAVE", AVFileTypeWAVE, audio, aac, false},
        {"big-endian PCM in WAVE", AVFileTypeWAVE, audio, AudioSettings{.AVLinearPCMIsBigEndianKey = true},
         false},
        {"pictures in WAVE", AVFileTypeWAVE, video, VideoSettings{}, false},
        {"AAC in M4A", AVFileTypeAppleM4A, audio, aac, true},
        {"PCM in MPEG-4", AVFileTypeMPEG4, audio, pcm16, false},
        {"pictures in M4A", AVFileTypeAppleM4A, video, VideoSettings{}, false},
        {"pictures in MPEG-4", AVFileTypeMPEG4, video, VideoSettings{}, true},
        {"pictures as sound", AVFileTypeQuickTimeMovie, audio, VideoSettings{}, false},
        {"odd pictures", AVFileTypeQuickTimeMovie, video, VideoSettings{.AVVideoWidthKey = 33}, false},
        {"PCM of 17 bits", AVFileTypeQuickTimeMovie, audio, AudioSettings{.AVLinearPCMBitDepthKey = 17},
         false},
        {"a form that nobody knows", AVFileTypeQuickTimeMovie, audio, AudioSettings{.AVFormatIDKey = 1},
         false},
    };
    for (auto& test : cases) {
        auto writer = *AVAssetWriter::make(URL::fileURL("/nowhere"), test.type);
        EXPECT_EQ(writer->canAdd(AVAssetWriterInput(test.mediaType, test.settings)), test.isTaken)
            << test.name;
    }
    Writing full("/nowhere.wav");
    EXPECT_FALSE(full.writer->canAdd(AVAssetWriterInput(audio, pcm16))) << "a WAVE file has one track";
}

TEST(AVAssetWriter, sound_is_brought_into_every_form_and_a_session_ends_it)
{
    struct Case {
        const char* name;
        AVFileType type;
        AudioSettings settings;
        AVCodecID codec;
    };
    const Case cases[] = {
        {"8 bits", AVFileTypeWAVE, {.AVLinearPCMBitDepthKey = 8}, AV_CODEC_ID_PCM_U8},
        {"24 bits", AVFileTypeWAVE, {.AVLinearPCMBitDepthKey = 24}, AV_CODEC_ID_PCM_S24LE},
        {"32 bits", AVFileTypeWAVE, {.AVLinearPCMBitDepthKey = 32}, AV_CODEC_ID_PCM_S32LE},
        {"floating point", AVFileTypeWAVE, {.AVLinearPCMIsFloatKey = true}, AV_CODEC_ID_PCM_F32LE},
        {"big-endian", AVFileTypeQuickTimeMovie, {.AVLinearPCMIsBigEndianKey = true}, AV_CODEC_ID_PCM_S16BE},
        {"two channels", AVFileTypeWAVE, {.AVNumberOfChannelsKey = 2}, AV_CODEC_ID_PCM_S16LE},
        {"twice the rate", AVFileTypeWAVE, {.AVSampleRateKey = 2 * rate}, AV_CODEC_ID_PCM_S16LE},
        {"lossless", AVFileTypeAppleM4A, {.AVFormatIDKey = kAudioFormatAppleLossless}, AV_CODEC_ID_ALAC},
        {"AAC", AVFileTypeMPEG4, aac, AV_CODEC_ID_AAC},
    };
    for (auto& test : cases) {
        SCOPED_TRACE(test.name);
        TemporaryDirectory folder;
        Writing writing(folder.path("out"), test.type, {test.settings});
        ASSERT_TRUE(writing.start());
        writing.writer->endSession(CMTime(1, 2));
        for (int i = 0; i < 4; ++i)
            EXPECT_TRUE(writing.inputs[0]->append(counting(i * rate / 4, rate / 4, 8000)));
        ASSERT_EQ(writing.finish(), AVAssetWriterStatus::completed);
        EXPECT_EQ(proberWarnings(folder.path("out")), "");
        auto written = inspect(folder.path("out"));
        auto& track = written.audio();
        EXPECT_EQ(track.parameters.codec_id, test.codec);
        const auto lossy = test.codec == AV_CODEC_ID_AAC;
        EXPECT_NEAR(static_cast<double>(track.sound.at(0).size()) / track.parameters.sample_rate, 0.5,
                    lossy ? 0.13 : 0);
        const auto value =
            lossy || test.settings.AVSampleRateKey ? 9000 / 32768.0 : track.sound.back().at(1000);
        EXPECT_NEAR(value, 9000 / 32768.0, 1 / 128.0);
    }
}

TEST(AVAssetWriter, cancelling_removes_the_file_and_letting_go_keeps_it)
{
    TemporaryDirectory folder;
    {
        Writing writing(folder.path("out.wav"));
        ASSERT_TRUE(writing.start());
        writing.inputs[0]->append(counting(0, 100));
        writing.writer->cancelWriting();
        EXPECT_EQ(folder.fileCount(), 0);
        EXPECT_FALSE(writing.inputs[0]->append(counting(100, 100)));
        EXPECT_EQ(writing.finish(), AVAssetWriterStatus::cancelled);
        EXPECT_FALSE(writing.writer->error());
    }
    Writing(folder.path("left.wav")).start();
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(AVAssetWriter, a_disk_that_is_full_is_one_error)
{
    TemporaryDirectory folder;
    FullDisk disk(100'000);
    for (auto type : {AVFileTypeWAVE, AVFileTypeQuickTimeMovie}) {
        Writing writing(folder.path(type == AVFileTypeWAVE ? "wav" : "mov"), type);
        ASSERT_TRUE(writing.start());
        bool isWritten = true;
        for (int i = 0; i < 400 && isWritten; ++i)
            isWritten = writing.inputs[0]->append(counting(i * rate, rate));
        EXPECT_FALSE(isWritten);
        ASSERT_TRUE(writing.writer->error());
        EXPECT_EQ(writing.finish(), AVAssetWriterStatus::failed);
    }
}

} // namespace

// SPDX-License-Identifier: MIT
#include "platform/avfoundation/AVComposition.h"
#include "tests/platform/avfoundation/ReaderTesting.h"
#include "tests/support/MediaFixtures.h"
#include "tests/support/TemporaryDirectory.h"

#include <sstream>

#include <cmath>

using namespace platform;
using namespace tests;

namespace {

// A stereo sweep of 3.3 s and another sound beside it.
const std::string sweep = "-f lavfi -i \"aevalsrc='0.5*sin(400*t*t)|0.4*sin(5000*t)':s=44100:d=3.3\" ";

// 44.1 kHz mono whose sample i is i: every sample says where it is from.
std::string countingWave(const TemporaryDirectory& folder)
{
    std::string samples;
    for (int index = 0; index < 30000; ++index)
        samples += {static_cast<char>(index & 255), static_cast<char>(index >> 8)};
    auto raw = folder.file("count.raw", samples);
    outputOf("ffmpeg -v error -nostdin -f s16le -ar 44100 -ac 1 -i " + raw + " " + folder.path("count.wav"));
    return folder.path("count.wav");
}

// "-ac 1 -ar 16000 -f s16le": channels, rate, and samples of their kind, bits and order of bytes.
AudioSettings settingsOf(const std::string& form)
{
    AudioSettings settings;
    std::istringstream words(form);
    for (std::string key, value; words >> key >> value;) {
        if (key == "-ac") {
            settings.AVNumberOfChannelsKey = std::stoi(value);
        } else if (key == "-ar") {
            settings.AVSampleRateKey = std::stoi(value);
        } else {
            settings.AVLinearPCMBitDepthKey = std::stoi(value.substr(1));
            settings.AVLinearPCMIsFloatKey = value.starts_with('f');
            settings.AVLinearPCMIsBigEndianKey = value.ends_with("be");
        }
    }
    return settings;
}

std::vector<double> decoded(const std::string& bytes, const AudioSettings& settings)
{
    const auto width = static_cast<std::size_t>(*settings.AVLinearPCMBitDepthKey / 8);
    std::vector<double> result;
    for (std::size_t at = 0; at + width <= bytes.size(); at += width) {
        std::string sample(bytes, at, width);
        if (settings.AVLinearPCMIsBigEndianKey.value_or(false))
            std::ranges::reverse(sample);
        if (settings.AVLinearPCMIsFloatKey.value_or(false)) {
            float single = 0;
            double real = 0;
            std::memcpy(width == 8 ? static_cast<void*>(&real) : &single, sample.data(), width);
            result.push_back(width == 8 ? real : single);
        } else if (width == 1) {
            result.push_back((static_cast<unsigned char>(sample[0]) - 128) / 128.0);
        } else {
            std::int64_t value = static_cast<signed char>(sample.back());
            for (auto index = width - 1; index-- > 0;)
                value = value << 8 | static_cast<unsigned char>(sample[index]);
            result.push_back(static_cast<double>(value) / std::ldexp(1, static_cast<int>(width * 8) - 1));
        }
    }
    return result;
}

double greatestDifference(const std::vector<double>& a, const std::vector<double>& b, std::size_t from = 0)
{
    double result = 0;
    for (auto index = from; index < std::min(a.size(), b.size()); ++index)
        result = std::max(result, std::abs(a[index] - b[index]));
    return result;
}

TEST(AVAssetReaderSound, reads_every_container_and_form_as_the_command_line_does)
{
    struct Case {
        std::string_view name, extension, encoding;
        std::string form; // of the result, as the command line has it
    };
    const Case cases[] = {
        {"AAC without the encoder's padding", "m4a", "-c:a aac -b:a 96k", "-ac 1 -ar 16000 -f s16le"},
        {"MP3 without the encoder's padding", "mp3", "-c:a libmp3lame", "-ac 1 -ar 16000 -f s16le"},
        {"FLAC to 24 bits, big-endian", "flac", "-c:a flac", "-ar 48000 -f s24be"},
        {"Opus in Matroska to floats", "mkv", "-c:a libopus", "-f f32le"},
        {"Vorbis in Ogg to big-endian doubles", "ogg", "-c:a libvorbis", "-f f64be"},
        {"a transport stream, whose clock does not begin at zero", "ts", "-c:a aac", "-f s32le"},
        {"a bare AAC stream", "aac", "-c:a aac", "-f s16le"},
        {"six channels of AC-3 into two", "ac3",
         "-af \"pan=5.1|FL=c0|FR=c1|FC=0.5*c1|LFE=c0|BL=0.7*c1|BR=c0\" -c:a ac3", "-ac 2 -f s16le"},
        {"WAVE to 8 bits", "wav", "-c:a pcm_s16le", "-ar 8000 -f u8"},
    };
    for (auto& [name, extension, encoding, form] : cases) {
        SCOPED_TRACE(name);
        auto settings = settingsOf(form);
        auto file = mediaFixture(std::string(extension), sweep + std::string(encoding));
        auto reading = readFile(file, AVMediaType::audio, settings);
        EXPECT_EQ(reading.status, AVAssetReaderStatus::completed);
        auto ours = decoded(reading.bytes(), settings);
        auto theirs = decoded(outputOf("ffmpeg -v error -i " + file + " " + form + " -"), settings);
        if (extension == "m4a") // the command line plays on into the last packet's padding
            EXPECT_EQ(ours.size(), 52800U);
        else
            EXPECT_NEAR(static_cast<double>(ours.size()), static_cast<double>(theirs.size()), 2);
        // The last bit may round another way.
        EXPECT_LE(greatestDifference(ours, theirs),
                  settings.AVLinearPCMBitDepthKey == 8 ? 1.0 / 128 : 2.0 / 32768);
    }
}

TEST(AVAssetReaderSound, begins_at_the_sample_of_the_range_and_lasts_as_long_as_it_does)
{
    TemporaryDirectory folder;
    auto file = countingWave(folder);
    struct Case {
        std::string_view name;
        CMTimeRange range;
        std::size_t first, count;
    };
    const Case cases[] = {
        {"all of it", everything, 0, 30000},
        {"a start between samples goes to the nearer", {{1, 30}, {1, 100}}, 1470, 441},
        {"a third of a second, rounded once", {{1, 3}, {1, 3}}, 14700, 14700},
        {"both off the grid", {{10007, 90000}, {333, 90000}}, 4903, 163},
        {"one sample", {{29999, 44100}, {1, 44100}}, 29999, 1},
        {"a range that begins before zero", {{-1, 10}, {2, 10}}, 0, 4410},
        {"a range that ends after the end", {{29000, 44100}, {10, 1}}, 29000, 1000},
    };
    for (auto& [name, range, first, count] : cases) {
        SCOPED_TRACE(name);
        auto samples = readFile(file, AVMediaType::audio, AudioSettings{}, range).samples<std::int16_t>();
        ASSERT_EQ(samples.size(), count);
        EXPECT_EQ(samples.front(), static_cast<std::int16_t>(first));
        EXPECT_EQ(samples.back(), static_cast<std::int16_t>(first + count - 1));
    }
    for (auto& range : {CMTimeRange::invalid(), CMTimeRange({1, 10}, {0, 1}), CMTimeRange({10, 1}, {1, 1})}) {
        auto refused = readFile(file, AVMediaType::audio, AudioSettings{}, range);
        EXPECT_EQ(refused.status, AVAssetReaderStatus::failed);
        EXPECT_TRUE(refused.error);
    }
}

TEST(AVAssetReaderSound, of_a_range_in_the_middle_is_what_reading_all_gives_there)
{
    for (auto [extension, encoding] :
         {std::pair("m4a", "-c:a aac -b:a 96k"), std::pair("mp3", "-c:a libmp3lame"),
          std::pair("mkv", "-c:a libopus"), std::pair("ts", "-c:a aac")}) {
        SCOPED_TRACE(extension);
        auto file = mediaFixture(extension, sweep + encoding);
        auto all = readFile(file, AVMediaType::audio, mono16k).samples<std::int16_t>();
        auto part =
            readFile(file, AVMediaType::audio, mono16k, {{3, 2}, {100003, 90000}}).samples<std::int16_t>();
        ASSERT_EQ(part.size(), 17778U); // 100003 / 90000 * 16000, rounded
        // A filter that begins has no past: the first samples differ a little.
        double worst = 0;
        for (std::size_t index = 40; index < part.size(); ++index)
            worst = std::max(worst, std::abs(static_cast<double>(part[index]) - all[24000 + index]));
        EXPECT_LE(worst, extension == std::string_view("mkv") ? 300 : 2); // Opus settles, but never quite
    }
}

TEST(AVAssetReaderSound, of_a_composition_is_its_segments_and_silence_between)
{
    TemporaryDirectory folder;
    auto source = std::make_shared<AVURLAsset>(URL::fileURL(countingWave(folder)));
    auto composition = std::make_shared<AVMutableComposition>();
    auto track = composition->addMutableTrack(AVMediaType::audio, kCMPersistentTrackID_Invalid);
    auto& wave = *source->tracks().front();
    ASSERT_TRUE(track->insertTimeRange({{20000, 44100}, {50, 44100}}, wave, {100, 44100}));
    ASSERT_TRUE(track->insertTimeRange({{7000, 44100}, {30, 44100}}, wave, {120, 44100})); // pushes the rest
    auto samples = read(composition, track, AudioSettings{}, {{90, 44100}, {1, 1}}).samples<std::int16_t>();
    std::vector<std::int16_t> expected(10, 0);
    for (auto [first, count] : {std::pair(20000, 20), std::pair(7000, 30), std::pair(20020, 30)})
        for (int index = 0; index < count; ++index)
            expected.push_back(static_cast<std::int16_t>(first + index));
    EXPECT_EQ(samples, expected);
    // Channels apart: first all of the one, then all of the other.
    auto apart = read(composition, track,
                      AudioSettings{.AVNumberOfChannelsKey = 2, .AVLinearPCMIsNonInterleaved = true},
                      {{100, 44100}, {20, 44100}});
    auto planes = apart.samples<std::int16_t>();
    ASSERT_EQ(planes.size(), 40U);
    EXPECT_EQ(planes[3], 20003);
    EXPECT_EQ(planes[23], 20003);
}

TEST(AVAssetReaderSound, mixes_channels_down_without_clipping_them)
{
    struct Case {
        std::string_view name, source;
        int channels;
        double peak;
    };
    const Case cases[] = {
        {"the same in both of two", "aevalsrc='sin(2000*t)|sin(2000*t)':s=48000:d=0.5", 1, 1},
        {"one of two", "aevalsrc='sin(2000*t)|0':s=48000:d=0.5", 1, 0.5},
        {"one into two", "aevalsrc='0.5*sin(2000*t)':s=48000:d=0.5", 2, 0.5},
        {"full six",
         "aevalsrc='sin(2000*t)|sin(2000*t)|sin(2000*t)|sin(2000*t)|sin(2000*t)|sin(2000*t)':c=5.1:s=48000:d="
         "0.5",
         1, 1},
        {"full six into two",
         "aevalsrc='sin(2000*t)|sin(2000*t)|sin(2000*t)|sin(2000*t)|sin(2000*t)|sin(2000*t)':c=5.1:s=48000:d="
         "0.5",
         2, 1},
    };
    for (auto& [name, source, channels, peak] : cases) {
        SCOPED_TRACE(name);
        auto file = mediaFixture("wav", "-f lavfi -i \"" + std::string(source) + "\" -c:a pcm_f32le");
        AudioSettings settings{
            .AVNumberOfChannelsKey = channels, .AVLinearPCMBitDepthKey = 32, .AVLinearPCMIsFloatKey = true};
        auto samples = readFile(file, AVMediaType::audio, settings).samples<float>();
        ASSERT_EQ(samples.size(), 24000U * static_cast<unsigned>(channels));
        EXPECT_NEAR(std::ranges::max(samples), peak, 0.001);
    }
    TemporaryDirectory folder;
    auto raw = folder.file("many.raw", std::string(64 * 2 * 4800, '\x10'));
    outputOf("ffmpeg -v error -f s16le -ar 48000 -ac 64 -i " + raw + " " + folder.path("many.wav"));
    auto many = readFile(folder.path("many.wav"), AVMediaType::audio, mono16k).samples<std::int16_t>();
    ASSERT_EQ(many.size(), 1600U);
    EXPECT_NEAR(many[800], 0x1010, 2) << "channels in no known place are averaged";
}

TEST(AVAssetReaderSound, goes_on_where_the_form_of_the_sound_changes_midway)
{
    // Two MP3 files in one: 44.1 kHz stereo and 24 kHz mono, each a second of the same tone.
    TemporaryDirectory folder;
    std::string joined;
    for (auto form : {"-ar 44100 -ac 2", "-ar 24000 -ac 1"})
        joined += outputOf("ffmpeg -v error -f lavfi -i sine=1000:d=1 " + std::string(form)
                           + " -c:a libmp3lame -write_xing 0 -id3v2_version 0 -f mp3 -");
    folder.write("joined.mp3", joined);
    auto reading = readFile(folder.path("joined.mp3"), AVMediaType::audio, mono16k);
    EXPECT_EQ(reading.status, AVAssetReaderStatus::completed);
    auto samples = reading.samples<std::int16_t>();
    EXPECT_NEAR(static_cast<double>(samples.size()), 33000, 2000);
    for (std::size_t second : {4000U, 24000U}) {
        int crossings = 0;
        for (auto index = second; index < second + 8000; ++index)
            crossings += (samples[index] < 0) != (samples[index + 1] < 0);
        EXPECT_NEAR(crossings, 1000, 5) << "a tone of 1 kHz";
    }
}

} // namespace

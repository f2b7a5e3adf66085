// SPDX-License-Identifier: MIT
#include "platform/services/JPEGMetadata_p.h"

#include "platform/graphics/UIImage.h"
#include "tests/support/MediaInspection.h"
#include "tests/support/PhotoLibraryFolders.h"
#include "tests/support/ShownPicker.h"

#include <gtest/gtest.h>

#include <QtGui/QColorSpace>
#include <QtGui/QImageReader>

namespace {

using namespace platform;
using namespace std::string_literals;

// A block of Exif as cameras write it, in either order of bytes: lying on its side, with a small copy of the whole.
class Block {
public:
    explicit Block(bool isBigEndian)
        : isBig_(isBigEndian)
    {
        constexpr std::uint32_t image = 8, picture = 62, date = 130, copy = 150, model = 180;
        bytes = (isBig_ ? "MM\0*"s : "II*\0"s) + number(image, 4) + number(4, 2);
        bytes += entry(0x0110, 2, 7, model) + entry(0x0112, 3, 1, 6) + entry(0x0100, 4, 1, 64);
        bytes += entry(0x8769, 4, 1, picture) + number(copy, 4);
        bytes += number(5, 2) + entry(0x9003, 2, 20, date) + entry(0x9214, 3, 4, date);
        bytes += entry(0xa002, 3, 1, 64) + entry(0xa003, 4, 1, 32) + entry(0xa214, 3, 2, 0x200020);
        bytes += number(0, 4) + std::string(date - bytes.size() - 4, '\0');
        bytes += "2024:05:06 07:08:09\0"s;
        bytes += number(2, 2) + entry(0x0201, 4, 1, 190) + entry(0x0202, 4, 1, 9) + number(0, 4);
        bytes += "Camera\0"s + "   " + "THE WHOLE";
    }
    std::string bytes;

private:
    std::string number(std::uint32_t value, int size) const
    {
        std::string text;
        for (int i = 0; i < size; ++i)
            text.push_back(static_cast<char>(value >> 8 * (isBig_ ? size - 1 - i : i) & 0xff));
        return text;
    }
    std::string entry(std::uint32_t tag, std::uint32_t type, std::uint32_t count, std::uint32_t value) const
    {
        auto text = number(tag, 2) + number(type, 2) + number(count, 4);
        return type == 3 && count == 1 ? text + number(value, 2) + number(0, 2) : text + number(value, 4);
    }
    const bool isBig_;
};

std::string segment(char mark, const std::string& content)
{
    auto length = content.size() + 2;
    return std::string{'\xff', mark, static_cast<char>(length >> 8), static_cast<char>(length)} + content;
}

std::string plainJPEG()
{
    return tests::contentsOf(tests::mediaFixture("jpg", "-f lavfi -i color=c=red:s=64x32 -frames:v 1"));
}

TEST(JPEGMetadata, goes_with_what_is_cut_out_of_a_photo_and_says_what_it_is_now)
{
    namespace keys = UIImagePickerInfoKey;
    auto profile = QColorSpace(QColorSpace::DisplayP3).iccProfile().toStdString();
    auto plain = plainJPEG();
    for (bool isBigEndian : {false, true}) {
        tests::PhotoLibraryFolders folders;
        auto described = segment('\xe1', "Exif\0\0"s + Block(isBigEndian).bytes)
            + segment('\xe2', "ICC_PROFILE\0\1\1"s + profile);
        folders.folder.write("pictures/a.jpg", plain.substr(0, 2) + described + plain.substr(2));
        tests::ShownPicker shown({kUTTypeImage}, [](auto& picker) { picker.allowsEditing = true; });
        shown.tap("a.jpg");
        shown.tap("Choose");
        auto path = shown.pathOf(keys::imageURL);
        auto said = tests::outputOf("ffprobe -v warning -show_frames " + path + " 2>&1");
        for (const auto* part : {"width=32", "height=32", "TAG:Model=Camera", "TAG:Orientation=    1",
                                 "TAG:DateTimeOriginal=2024:05:06 07:08:09", "TAG:PixelXDimension=     32",
                                 "TAG:PixelYDimension=     32", "TAG:ImageWidth=     32"})
            EXPECT_NE(said.find(part), said.npos) << part << " in\n" << said;
        for (const auto* part : {"TAG:SubjectArea", "TAG:SubjectLocation", "TAG:0x9214", "TAG:0xA214"})
            EXPECT_EQ(said.find(part), said.npos) << "that was elsewhere\n" << said;
        auto written = tests::contentsOf(path);
        EXPECT_EQ(written.find("THE WHOLE"), written.npos) << "what was cut away is nobody's to see";
        auto first = written.find(profile);
        EXPECT_NE(first, written.npos);
        EXPECT_EQ(written.find("ICC_PROFILE", first), written.npos) << "there is one profile";
        QImageReader reader(QString::fromStdString(path));
        EXPECT_EQ(reader.transformation(), QImageIOHandler::TransformationNone);
        EXPECT_EQ(reader.read().colorSpace(), QColorSpace(QColorSpace::DisplayP3));
        std::filesystem::remove(path);
    }
}

TEST(JPEGMetadata, believes_nothing_that_leads_out_of_its_segment)
{
    auto plain = plainJPEG();
    auto carried = [&](const std::string& segments) {
        auto metadata = metadataOfCut(plain.substr(0, 2) + segments + plain.substr(2), 32, 32);
        EXPECT_LE(metadata.exif.size(), segments.size());
        auto described = withMetadata(plain, metadata);
        EXPECT_TRUE(UIImage::fromData(std::as_bytes(std::span(described))));
        return metadata;
    };
    auto exif = [](std::string block) { return segment('\xe1', "Exif\0\0"s + std::move(block)); };
    const auto whole = Block(true).bytes;
    ASSERT_FALSE(carried(exif(whole)).exif.empty());
    for (std::size_t place = 0; place < whole.size(); ++place) {
        carried(exif(whole.substr(0, place)));
        for (char value : {'\0', '\x0c', '\x7f', '\xff'}) {
            auto changed = whole;
            changed[place] = value;
            carried(exif(changed));
        }
    }
    struct Case {
        const char* name;
        std::string segments;
    };
    const Case cases[] = {
        {"no order of bytes", exif("XX" + whole.substr(2))},
        {"a directory beyond the end", exif("MM\0*\xff\xff\xff\xff"s)},
        {"more entries than there are", exif("MM\0*\0\0\0\x08\xff\xff"s)},
        {"a segment that is longer than the file", "\xff\xe1\xff\xff"s + "Exif\0\0"s + whole},
        {"a segment shorter than its length", "\xff\xe1\0\1"s + whole},
        {"another name", segment('\xe1', "http://ns.adobe.com/xap/1.0/"s)},
        {"a profile of ink", segment('\xe2', "ICC_PROFILE\0\1\1"s + std::string(16, '\0') + "CMYK")},
        {"a profile that is cut off", segment('\xe2', "ICC_PROFILE\0\1\1"s + std::string(16, '\0') + "RG")},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        auto metadata = carried(each.segments);
        EXPECT_EQ(metadata.exif + metadata.profile, "");
    }
    EXPECT_EQ(withMetadata("no picture", {"a", "b"}), "no picture");
    EXPECT_TRUE(metadataOfCut("", 1, 1).exif.empty());
}

} // namespace

// SPDX-License-Identifier: MIT
#include "kit/foundation/errorClassification.h"

#include "kit/foundation/LocalizedErrorWrapper.h"
#include "platform/avfoundation/AVError.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/services/PHPhotosError.h"

#include <gtest/gtest.h>

namespace faults {

using namespace platform;

enum class Fault { offline, quiet, spoken };

NSError nsError(Fault fault)
{
    if (fault == Fault::offline)
        return NSError(NSURLErrorDomain, -1009);
    return NSError("faults.Fault", static_cast<long>(fault));
}
LocalizedError localizedError(Fault fault)
{
    if (fault == Fault::quiet)
        return {.failureReason = "for no reason"};
    return {.errorDescription = "spoken of", .recoverySuggestion = "speak again"};
}

} // namespace faults

namespace {

using namespace platform;

// A letter for each predicate that holds.
std::string classify(const Error& error)
{
    std::string found;
    auto add = [&](char letter, bool holds) {
        if (holds)
            found += letter;
    };
    add('p', zelk::isPhotosPermissionsError(error));
    add('P', zelk::isPhotosDiskIsFull(error));
    add('A', zelk::isAVFoundationDiskIsFull(error));
    add('d', zelk::isDiskOutOfSpace(error));
    add('o', zelk::isNotConnectedToInternetError(error));
    add('c', zelk::isUserCancelled(error));
    add('u', zelk::isURLCancelled(error));
    return found;
}

TEST(ErrorClassification, goes_by_domain_code_and_system_version)
{
    struct Case {
        std::string_view domain;
        long code;
        std::string since15, before15;
    };
    const Case cases[] = {
        {"PHPhotosErrorDomain", 3311, "p", ""},
        {"PHPhotosErrorDomain", 3310, "p", ""},
        {"PHPhotosErrorDomain", 3305, "Pd", ""},
        {"PHPhotosErrorDomain", 3072, "", ""},
        {"NSCocoaErrorDomain", 2047, "", "p"},
        {"NSCocoaErrorDomain", 640, "d", "Pd"},
        {"NSCocoaErrorDomain", 3311, "", ""},
        {"NSCocoaErrorDomain", 3072, "c", "c"},
        {"NSCocoaErrorDomain", -999, "", ""},
        {"AVFoundationErrorDomain", -11807, "Ad", "Ad"},
        {"AVFoundationErrorDomain", 11807, "", ""},
        {"NSPOSIXErrorDomain", 28, "d", "d"},
        {"NSURLErrorDomain", -1009, "o", "o"},
        {"kCFErrorDomainCFNetwork", -1009, "o", "o"},
        {"NSCocoaErrorDomain", -1009, "", ""},
        {"NSURLErrorDomain", -999, "u", "u"},
        {"kCFErrorDomainCFNetwork", -999, "", ""},
        {"nsurlerrordomain", -999, "", ""},
        {"", 0, "", ""},
    };
    for (const auto& test : cases) {
        NSError error(test.domain, test.code);
        EXPECT_EQ(classify(error), test.since15) << test.domain << test.code;
        SystemVersionOverride exactly({15});
        EXPECT_EQ(classify(error), test.since15) << test.domain << test.code;
        SystemVersionOverride before({14, 8, 1});
        EXPECT_EQ(classify(error), test.before15) << test.domain << test.code;
    }
    // Any error value by what it bridges to, and not by what it holds.
    EXPECT_EQ(classify(faults::Fault::offline), "o");
    EXPECT_EQ(classify(zelk::asLocalized(faults::Fault::offline)), "");
    EXPECT_EQ(classify(PHPhotosError::notEnoughSpace), "Pd");
    EXPECT_EQ(classify(AVError::diskFull), "Ad");
    EXPECT_EQ(classify(zelk::userCancelled()), "c");
    EXPECT_TRUE(zelk::userCancelled().userInfo().empty());
}

TEST(LocalizedErrorWrapper, says_what_the_error_says)
{
    using faults::Fault;
    using Wrapper = zelk::LocalizedErrorWrapper;
    EXPECT_EQ(Wrapper{Error(Fault::spoken)}.errorDescription(), "spoken of");
    EXPECT_EQ(Wrapper{Error(Fault::quiet)}.errorDescription(), std::nullopt)
        << "its type speaks, and says nothing";
    NSError plain("Some", 3);
    EXPECT_EQ(Wrapper{Error(plain)}.errorDescription(), plain.localizedDescription());
    auto wrapped = zelk::asLocalized(Fault::quiet);
    EXPECT_EQ(wrapped.errorDescription(), Error(Fault::quiet).localizedDescription())
        << "a platform error by then";
    EXPECT_EQ(wrapped.error.bridged().domain(), "faults.Fault");

    // As an error of its own it has the description and nothing else of what it holds.
    Error outer(Wrapper{Error(Fault::spoken)});
    EXPECT_EQ(outer.localizedDescription(), "spoken of");
    EXPECT_EQ(outer.bridged().localizedRecoverySuggestion(), std::nullopt);
    EXPECT_NE(outer.bridged().domain(), "faults.Fault");
}

} // namespace

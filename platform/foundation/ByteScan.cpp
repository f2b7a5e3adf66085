// SPDX-License-Identifier: MIT
// Compiled once for each of a few instruction sets; the best that the machine has is chosen at the first call.
// Reading is bound by memory beyond AVX2, so the wider sets would cost compile time for nothing.
#include "platform/foundation/ByteScan_p.h"
#include "platform/foundation/UTF8.h"

#include <algorithm>
#include <cstring>

#undef HWY_DISABLED_TARGETS
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_AVX3 | HWY_AVX3_DL)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/foundation/ByteScan.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
// What is left when a machine has none of the sets.

BlockCounts countWide(std::string_view block, NextByte next)
{
    return countBlockByByte(block, next);
}

bool isWellFormedWide(std::string_view text)
{
    return wellFormedPrefixByByte(text) == text.size();
}

#else
namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Vector = hn::Vec<Bytes>;

// Adds up byte counters before they overflow.
class Counter {
public:
    // Written out: GCC compiles a generated constructor without the instruction set.
    HWY_INLINE Counter()
        : bytes_(hn::Zero(Bytes()))
        , sums_(hn::Zero(hn::Repartition<std::uint64_t, Bytes>()))
    {
    }
    // Lanes of `isCounted` are all ones or zero.
    HWY_INLINE void add(Vector isCounted) { bytes_ = hn::Sub(bytes_, isCounted); }
    HWY_INLINE void flush()
    {
        sums_ = hn::Add(sums_, hn::SumsOf8(bytes_));
        bytes_ = hn::Zero(Bytes());
    }
    HWY_INLINE std::uint32_t total() const
    {
        return static_cast<std::uint32_t>(
            hn::GetLane(hn::SumOfLanes(hn::Repartition<std::uint64_t, Bytes>(), sums_)));
    }

private:
    Vector bytes_;
    hn::Vec<hn::Repartition<std::uint64_t, Bytes>> sums_;
};

HWY_INLINE bool isAllASCII(Vector bytes)
{
    const hn::RebindToSigned<Bytes> asSigned;
    return hn::AllFalse(asSigned, hn::Lt(hn::BitCast(asSigned, bytes), hn::Zero(asSigned)));
}

BlockCounts countWide(std::string_view block, NextByte next)
{
    const Bytes tag;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(block.data());
    const auto size = block.size();
    const hn::RebindToSigned<Bytes> asSigned;
    const std::size_t step = hn::Lanes(tag);
    const auto lineFeed = hn::Set(tag, '\n'), carriageReturn = hn::Set(tag, '\r');
    const auto lastContinuation = hn::Set(asSigned, static_cast<std::int8_t>(0xBF));
    Counter lineEnds, characters;
    auto all = hn::Zero(tag);
    std::size_t at = 0;
    // one byte ahead is looked at
    while (at + step < size) {
        auto rounds = std::min<std::size_t>((size - at - 1) / step, 255);
        for (; rounds > 0; --rounds, at += step) {
            const auto here = hn::LoadU(tag, bytes + at), ahead = hn::LoadU(tag, bytes + at + 1);
            const auto isReturn = hn::VecFromMask(tag, hn::Eq(here, carriageReturn));
            const auto isFeed = hn::VecFromMask(tag, hn::Eq(here, lineFeed));
            const auto feedFollows = hn::VecFromMask(tag, hn::Eq(ahead, lineFeed));
            lineEnds.add(hn::Or(isFeed, hn::AndNot(feedFollows, isReturn)));
            const auto begins = hn::Gt(hn::BitCast(asSigned, here), lastContinuation);
            characters.add(hn::BitCast(tag, hn::VecFromMask(asSigned, begins)));
            all = hn::Or(all, here);
        }
        lineEnds.flush();
        characters.flush();
    }
    auto rest = countBlockByByte(block.substr(at), next);
    return {.lineEnds = lineEnds.total() + rest.lineEnds,
            .characters = characters.total() + rest.characters,
            .isASCII = rest.isASCII && isAllASCII(all)};
}

// UTF-8 validation by table lookup, as published by J. Keiser and D. Lemire, "Validating UTF-8 in less than one
// instruction per byte" (2021). Each fault of two neighbouring bytes has a bit; three tables, indexed by
// the halves of the first byte and the upper half of the second, say which faults each half allows, and a
// bit that all three have set is a fault. What is left, third and fourth bytes of a sequence, must be
// continuation bytes exactly where the bytes two and three before say so.
constexpr std::uint8_t tooShort = 1, tooLong = 2, overlong3 = 4, tooLarge = 8, surrogate = 16, overlong2 = 32,
                       tooLarge1000 = 64, overlong4 = 64, twoContinuations = 128;
constexpr std::uint8_t carry = tooShort | tooLong | twoContinuations;

alignas(16) constexpr std::uint8_t firstHigh[16] = {tooLong,
                                                    tooLong,
                                                    tooLong,
                                                    tooLong,
                                                    tooLong,
                                                    tooLong,
                                                    tooLong,
                                                    tooLong,
                                                    twoContinuations,
                                                    twoContinuations,
                                                    twoContinuations,
                                                    twoContinuations,
                                                    tooShort | overlong2,
                                                    tooShort,
                                                    tooShort | overlong3 | surrogate,
                                                    tooShort | tooLarge | tooLarge1000 | overlong4};
alignas(16) constexpr std::uint8_t firstLow[16] = {carry | overlong3 | overlong2 | overlong4,
                                                   carry | overlong2,
                                                   carry,
                                                   carry,
                                                   carry | tooLarge,
                                                   carry | tooLarge | tooLarge1000,
                                                   carry | tooLarge | tooLarge1000,
                                                   carry | tooLarge | tooLarge1000,
                                                   carry | tooLarge | tooLarge1000,
                                                   carry | tooLarge | tooLarge1000,
                                                   carry | tooLarge | tooLarge1000,
                                                   carry | tooLarge | tooLarge1000,
                                                   carry | tooLarge | tooLarge1000,
                                                   carry | tooLarge | tooLarge1000 | surrogate,
                                                   carry | tooLarge | tooLarge1000,
                                                   carry | tooLarge | tooLarge1000};
constexpr std::uint8_t anySecond = tooLong | overlong2 | twoContinuations;
alignas(16) constexpr std::uint8_t secondHigh[16] = {tooShort,
                                                     tooShort,
                                                     tooShort,
                                                     tooShort,
                                                     tooShort,
                                                     tooShort,
                                                     tooShort,
                                                     tooShort,
                                                     anySecond | overlong3 | tooLarge1000 | overlong4,
                                                     anySecond | overlong3 | tooLarge,
                                                     anySecond | surrogate | tooLarge,
                                                     anySecond | surrogate | tooLarge,
                                                     tooShort,
                                                     tooShort,
                                                     tooShort,
                                                     tooShort};

// Non-zero where the bytes at `bytes` and the three before them, which must be readable, are faulty.
HWY_INLINE Vector faults(const std::uint8_t* bytes)
{
    const Bytes tag;
    const auto here = hn::LoadU(tag, bytes), before = hn::LoadU(tag, bytes - 1);
    const auto pairs = hn::And(
        hn::And(hn::TableLookupBytes(hn::LoadDup128(tag, firstHigh), hn::ShiftRight<4>(before)),
                hn::TableLookupBytes(hn::LoadDup128(tag, firstLow), hn::And(before, hn::Set(tag, 15)))),
        hn::TableLookupBytes(hn::LoadDup128(tag, secondHigh), hn::ShiftRight<4>(here)));
    const auto third = hn::SaturatedSub(hn::LoadU(tag, bytes - 2), hn::Set(tag, 0xE0 - 0x80));
    const auto fourth = hn::SaturatedSub(hn::LoadU(tag, bytes - 3), hn::Set(tag, 0xF0 - 0x80));
    return hn::Xor(hn::And(hn::Or(third, fourth), hn::Set(tag, 0x80)), pairs);
}

// Whether the three bytes before `end` leave a sequence open.
HWY_INLINE bool leavesOpen(const std::uint8_t* end)
{
    return end[-1] >= 0xC0 || end[-2] >= 0xE0 || end[-3] >= 0xF0;
}

bool isWellFormedWide(std::string_view text)
{
    const Bytes tag;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto size = text.size();
    const std::size_t step = hn::Lanes(tag);
    std::uint8_t padded[3 + hn::MaxLanes(tag)] = {};
    // the beginning, as if zeros came before it
    auto first = std::min(step, size);
    std::memcpy(padded + 3, bytes, first);
    auto found = faults(padded + 3);
    if (size < step)
        return hn::AllFalse(tag, hn::Ne(found, hn::Zero(tag))) && !leavesOpen(padded + 3 + size);

    std::size_t at = step;
    for (; at + 4 * step <= size; at += 4 * step) {
        const auto* here = bytes + at;
        const auto all = hn::Or(hn::Or(hn::LoadU(tag, here), hn::LoadU(tag, here + step)),
                                hn::Or(hn::LoadU(tag, here + 2 * step), hn::LoadU(tag, here + 3 * step)));
        if (isAllASCII(all)) {
            if (leavesOpen(here))
                return false;
            continue;
        }
        found = hn::Or(found,
                       hn::Or(hn::Or(faults(here), faults(here + step)),
                              hn::Or(faults(here + 2 * step), faults(here + 3 * step))));
    }
    for (; at + step <= size; at += step)
        found = hn::Or(found, faults(bytes + at));
    if (at < size) {
        std::memset(padded, 0, sizeof padded);
        std::memcpy(padded, bytes + at - 3, size - at + 3);
        found = hn::Or(found, faults(padded + 3));
    }
    return hn::AllFalse(tag, hn::Ne(found, hn::Zero(tag))) && !leavesOpen(bytes + size);
}

#endif

} // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

// Chosen here and not by Highway's own dispatcher: that one lives in its shared library, which measures the
// processor's clock whenever it is loaded and would add a tenth to the time until a preview is on screen.
const std::vector<ByteScanKernels>& byteScanKernels()
{
    // Never destroyed: settings are written until the process ends.
    static const auto& kernels = [] -> const std::vector<ByteScanKernels>& {
        auto& found = *new std::vector<ByteScanKernels>;
#if HWY_TARGETS & HWY_AVX2
        // The other instructions that Highway's AVX2 target uses came with the same processors.
        if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("fma"))
            found.push_back({"AVX2", N_AVX2::countWide, N_AVX2::isWellFormedWide});
#endif
#if HWY_TARGETS & HWY_SSE4
        if (__builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("pclmul")
            && __builtin_cpu_supports("aes"))
            found.push_back({"SSE4", N_SSE4::countWide, N_SSE4::isWellFormedWide});
#endif
        found.push_back({"baseline", HWY_STATIC_DISPATCH(countWide), HWY_STATIC_DISPATCH(isWellFormedWide)});
        return found;
    }();
    return kernels;
}

namespace {

const ByteScanKernels& best()
{
    static const ByteScanKernels& first = byteScanKernels().front();
    return first;
}

} // namespace

BlockCounts countBlock(std::string_view block, NextByte next)
{
    return best().count(block, next);
}

bool isWellFormedUTF8(std::string_view bytes)
{
    if (bytes.size() < 16)
        return wellFormedPrefixByByte(bytes) == bytes.size();
    return best().isWellFormed(bytes);
}

} // namespace platform
#endif

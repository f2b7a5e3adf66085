// SPDX-License-Identifier: MIT
#include "platform/graphics/pixelRows_p.h"

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace platform {

namespace {

QRgb mapChannels(auto channelAt)
{
    QRgb result = 0;
    for (int shift = 0; shift < 32; shift += 8)
        result |= QRgb(channelAt(shift)) << shift;
    return result;
}

#if defined(__SSE2__)
// Of two pixels, a channel in 16 bits.
__m128i multiplied(__m128i colors, __m128i factors)
{
    auto products = _mm_add_epi16(_mm_mullo_epi16(colors, factors), _mm_set1_epi16(128));
    return _mm_srli_epi16(_mm_add_epi16(products, _mm_srli_epi16(products, 8)), 8);
}

__m128i blended(__m128i above, __m128i below)
{
    auto alphas =
        _mm_shufflehi_epi16(_mm_shufflelo_epi16(above, _MM_SHUFFLE(3, 3, 3, 3)), _MM_SHUFFLE(3, 3, 3, 3));
    auto products = _mm_mullo_epi16(below, _mm_sub_epi16(_mm_set1_epi16(255), alphas));
    products = _mm_add_epi16(_mm_add_epi16(products, _mm_srli_epi16(products, 8)), _mm_set1_epi16(128));
    return _mm_add_epi16(above, _mm_srli_epi16(products, 8));
}

__m128i load(const void* from)
{
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}
#endif

} // namespace

void multiplyPixels(QRgb* pixels, const PixelFactor* factors, std::size_t count)
{
#if defined(__SSE2__)
    auto zero = _mm_setzero_si128();
    for (; count >= 4; count -= 4, pixels += 4, factors += 4) {
        auto colors = load(pixels);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels),
                         _mm_packus_epi16(multiplied(_mm_unpacklo_epi8(colors, zero), load(factors)),
                                          multiplied(_mm_unpackhi_epi8(colors, zero), load(factors + 2))));
    }
#endif
    for (; count > 0; --count, ++pixels, ++factors) {
        *pixels = mapChannels([&](int shift) {
            auto product = (*pixels >> shift & 255) * QRgb(*factors & 255) + 128;
            return (product + (product >> 8)) >> 8;
        });
    }
}

void blendPixels(QRgb* below, const QRgb* above, std::size_t count)
{
#if defined(__SSE2__)
    auto zero = _mm_setzero_si128();
    for (; count >= 4; count -= 4, below += 4, above += 4) {
        auto colors = load(above), under = load(below);
        _mm_storeu_si128(
            reinterpret_cast<__m128i*>(below),
            _mm_packus_epi16(blended(_mm_unpacklo_epi8(colors, zero), _mm_unpacklo_epi8(under, zero)),
                             blended(_mm_unpackhi_epi8(colors, zero), _mm_unpackhi_epi8(under, zero))));
    }
#endif
    for (; count > 0; --count, ++below, ++above) {
        *below = mapChannels([&](int shift) {
            auto product = (*below >> shift & 255) * QRgb(255 - qAlpha(*above));
            return (*above >> shift & 255) + ((product + (product >> 8) + 128) >> 8);
        });
    }
}

} // namespace platform

#include "text/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace kestrane {
namespace {

static_assert(std::numeric_limits<double>::is_iec559, "the fields below are those of IEEE 754 binary64");

/// A finite double without its sign: mantissa * 2^exponent.
struct BinaryParts {
    std::uint64_t mantissa;  // below 2^53
    int exponent;
};

BinaryParts SplitDouble(double value) {
    constexpr int FractionBits = 52;
    constexpr std::uint64_t FractionMask = (std::uint64_t{1} << FractionBits) - 1;
    constexpr std::uint64_t ExponentMask = 0x7FF;
    constexpr int ExponentBias = 1023 + FractionBits;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const std::uint64_t fraction = bits & FractionMask;
    const int biased = static_cast<int>((bits >> FractionBits) & ExponentMask);
    if (biased == 0) return {fraction, 1 - ExponentBias};
    return {fraction | (FractionMask + 1), biased - ExponentBias};
}

/// number / 2^shift, rounded to nearest, ties to even. `number` is below 2^63 and `shift` above 0.
std::uint64_t DividePowerOfTwo(std::uint64_t number, int shift) {
    if (shift >= 64) return 0;  // less than a half
    const std::uint64_t quotient = number >> shift;
    const std::uint64_t half = std::uint64_t{1} << (shift - 1);
    const std::uint64_t rest = number & (half * 2 - 1);
    const bool up = rest > half || (rest == half && quotient % 2 == 1);
    return quotient + (up ? 1 : 0);
}

std::wstring PadWithZeros(std::wstring digits, std::size_t width) {
    if (digits.size() < width) digits.insert(0, width - digits.size(), L'0');
    return digits;
}

/// mantissa * 2^doublings in decimal; `mantissa` is not 0. Each limb holds nine digits, lowest limb first.
std::wstring FormatWhole(std::uint64_t mantissa, int doublings) {
    constexpr std::uint64_t LimbBase = 1'000'000'000;
    constexpr std::size_t LimbDigits = 9;
    constexpr int MostDoublings = 29;  // per step, so that the carry fits one limb
    std::vector<std::uint64_t> limbs;
    for (; mantissa != 0; mantissa /= LimbBase) {
        limbs.push_back(mantissa % LimbBase);
    }
    while (doublings > 0) {
        const int step = std::min(doublings, MostDoublings);
        doublings -= step;
        std::uint64_t carry = 0;
        for (std::uint64_t& limb : limbs) {
            const std::uint64_t product = (limb << step) + carry;
            limb = product % LimbBase;
            carry = product / LimbBase;
        }
        if (carry != 0) limbs.push_back(carry);
    }
    std::wstring text = FormatUnsigned(limbs.back());
    for (std::size_t i = limbs.size(); i-- > 1;) {
        text += PadWithZeros(FormatUnsigned(limbs[i - 1]), LimbDigits);
    }
    return text;
}

/// The digits of a finite value without sign or point; the last `decimals` of them are the fraction.
std::wstring FixedDigits(const BinaryParts& parts, int decimals) {
    constexpr std::array<std::uint64_t, MaxFixedDecimals + 1> PowersOfTen = {1, 10, 100, 1000};
    const auto places = static_cast<std::size_t>(decimals);
    // An exponent of 0 or more means the number is not 0.
    if (parts.exponent >= 0) return FormatWhole(parts.mantissa, parts.exponent) + std::wstring(places, L'0');
    const std::uint64_t scaled = parts.mantissa * PowersOfTen[places];
    return PadWithZeros(FormatUnsigned(DividePowerOfTwo(scaled, -parts.exponent)), places + 1);
}

}  // namespace

std::wstring FormatUnsigned(std::uint64_t value) {
    std::wstring text;
    do {
        text += static_cast<wchar_t>(L'0' + value % 10);
        value /= 10;
    } while (value != 0);
    std::ranges::reverse(text);
    return text;
}

std::wstring FormatSigned(std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    // Negated as unsigned, because the lowest value has no positive counterpart.
    return value < 0 ? L"-" + FormatUnsigned(0 - bits) : FormatUnsigned(bits);
}

double RoundHalfAway(double value) {
    const double whole = std::trunc(value);
    return std::abs(value - whole) >= 0.5 ? whole + std::copysign(1.0, value) : whole;
}

std::wstring FormatFixed(double value, int decimals) {
    if (std::isnan(value)) return L"nan";
    const std::wstring sign = std::signbit(value) ? L"-" : L"";
    if (std::isinf(value)) return sign + L"inf";
    decimals = std::clamp(decimals, 0, MaxFixedDecimals);
    std::wstring digits = FixedDigits(SplitDouble(value), decimals);
    if (decimals > 0) digits.insert(digits.size() - static_cast<std::size_t>(decimals), 1, L'.');
    return sign + digits;
}

}  // namespace kestrane

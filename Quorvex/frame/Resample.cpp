#include <Quorvex/frame/Resample.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace KOVA::Quorvex {

namespace {

constexpr unsigned int s_largestSize = 65535;

// The source pixels of one new pixel: count of them from first on, with weights from weights[offset] on.
struct Span {
    std::size_t first;
    std::size_t count;
    std::size_t offset;
};

// One axis. All weights are integers; those of a new pixel add up to total, at most 2 * 65535.
struct Axis {
    std::vector<Span> spans;
    std::vector<std::uint32_t> weights;
    std::uint32_t total = 1;

    void Begin(std::size_t first) { spans.push_back({first, 0, weights.size()}); }
    void Add(std::uint64_t weight) {
        weights.push_back(static_cast<std::uint32_t>(weight));
        ++spans.back().count;
    }
};

// In units of 1 / to of a source pixel the new pixel i covers [i * from, (i + 1) * from).
Axis AreaAverage(std::uint64_t from, std::uint64_t to) {
    const std::uint64_t divisor = std::gcd(from, to);
    from /= divisor;
    to /= divisor;
    Axis axis;
    axis.total = static_cast<std::uint32_t>(from);
    for (std::uint64_t i = 0; i < to * divisor; ++i) {
        const std::uint64_t begin = i * from;
        const std::uint64_t end = begin + from;
        axis.Begin(static_cast<std::size_t>(begin / to));
        for (std::uint64_t pixel = begin / to; pixel * to < end; ++pixel) {
            axis.Add(std::min(end, (pixel + 1) * to) - std::max(begin, pixel * to));
        }
    }
    return axis;
}

// The centre of the new pixel i lies at (i + 1/2) from / to - 1/2 in source pixels, here in units of 1 / (2 * to).
Axis Linear(std::int64_t from, std::int64_t to) {
    const std::int64_t unit = 2 * to;
    Axis axis;
    axis.total = static_cast<std::uint32_t>(unit);
    for (std::int64_t i = 0; i < to; ++i) {
        const std::int64_t position = std::clamp<std::int64_t>((2 * i + 1) * from - to, 0, (from - 1) * unit);
        const std::int64_t rest = position % unit;
        axis.Begin(static_cast<std::size_t>(position / unit));
        axis.Add(static_cast<std::uint64_t>(unit - rest));
        if (rest != 0) {
            axis.Add(static_cast<std::uint64_t>(rest));
        }
    }
    return axis;
}

Axis MakeAxis(unsigned int from, unsigned int to) {
    return from >= to ? AreaAverage(from, to) : Linear(from, to);
}

// row = the weighted sum of the source's rows under the span; at most 255 * total, which is less than 2^25.
void SumRows(const unsigned char* source, const Axis& axis, const Span& span, std::vector<std::uint32_t>& row) {
    const std::size_t length = row.size();
    std::uint32_t* out = row.data();
    for (std::size_t k = 0; k < span.count; ++k) {
        const unsigned char* in = source + (span.first + k) * length;
        const std::uint32_t weight = axis.weights[span.offset + k];
        if (k == 0) {
            for (std::size_t i = 0; i < length; ++i) {
                out[i] = weight * in[i];
            }
        } else {
            for (std::size_t i = 0; i < length; ++i) {
                out[i] += weight * in[i];
            }
        }
    }
}

// Divides sums of up to 255 * total, total < 2^35, by total and rounds. A half added to the integer sum keeps the exact
// quotient at least 2^-36 away from every integer, far more than the error of the product with the reciprocal: the
// truncated result is the exact one.
class Rounder {
public:
    explicit Rounder(std::uint64_t total)
        : m_offset(static_cast<double>(total >> 1U) + 0.5), m_reciprocal(1.0 / static_cast<double>(total)) {}

    unsigned char operator()(std::uint64_t sum) const {
        const double quotient = (static_cast<double>(static_cast<std::int64_t>(sum)) + m_offset) * m_reciprocal;
        return static_cast<unsigned char>(static_cast<int>(quotient));
    }

private:
    double m_offset;
    double m_reciprocal;
};

template <std::size_t Channels>
void SumColumns(const std::vector<std::uint32_t>& row, const Axis& axis, const Rounder& round, unsigned char* out) {
    for (const Span& span : axis.spans) {
        std::uint64_t sums[Channels] = {};
        const std::uint32_t* in = row.data() + span.first * Channels;
        const std::uint32_t* weight = axis.weights.data() + span.offset;
        for (std::size_t k = 0; k < span.count; ++k) {
            for (std::size_t channel = 0; channel < Channels; ++channel) {
                sums[channel] += static_cast<std::uint64_t>(weight[k]) * in[k * Channels + channel];
            }
        }
        for (std::size_t channel = 0; channel < Channels; ++channel) {
            *out++ = round(sums[channel]);
        }
    }
}

template <std::size_t Channels>
void ResampleRows(const unsigned char* source, std::size_t sourceWidth, const Axis& horizontal, const Axis& vertical,
                  std::vector<unsigned char>& result) {
    const Rounder round(static_cast<std::uint64_t>(horizontal.total) * vertical.total);
    std::vector<std::uint32_t> row(sourceWidth * Channels);
    unsigned char* out = result.data();
    for (const Span& span : vertical.spans) {
        SumRows(source, vertical, span, row);
        SumColumns<Channels>(row, horizontal, round, out);
        out += horizontal.spans.size() * Channels;
    }
}

bool IsValidSize(unsigned int size) {
    return size >= 1 && size <= s_largestSize;
}

} // namespace

std::vector<unsigned char> Resample(const unsigned char* source, unsigned int sourceWidth, unsigned int sourceHeight,
                                    unsigned int channels, unsigned int width, unsigned int height) {
    if (!IsValidSize(sourceWidth) || !IsValidSize(sourceHeight) || !IsValidSize(width) || !IsValidSize(height) ||
        channels < 1 || channels > 4) {
        return {};
    }
    const std::size_t length = static_cast<std::size_t>(width) * height * channels;
    if (sourceWidth == width && sourceHeight == height) {
        return {source, source + length};
    }

    const Axis horizontal = MakeAxis(sourceWidth, width);
    const Axis vertical = MakeAxis(sourceHeight, height);
    std::vector<unsigned char> result(length);
    switch (channels) {
    case 1:
        ResampleRows<1>(source, sourceWidth, horizontal, vertical, result);
        break;
    case 2:
        ResampleRows<2>(source, sourceWidth, horizontal, vertical, result);
        break;
    case 3:
        ResampleRows<3>(source, sourceWidth, horizontal, vertical, result);
        break;
    default:
        ResampleRows<4>(source, sourceWidth, horizontal, vertical, result);
        break;
    }
    return result;
}

} // namespace KOVA::Quorvex

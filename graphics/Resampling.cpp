#include "graphics/Resampling.h"

#include "graphics/RowSums.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace zmr {
namespace {

using Four = float __attribute__((vector_size(16)));

/// The source pixels behind one pixel of a side: the first and the last with weights of their own,
/// those between with weight 1.
struct AxisSpan {
    int first;
    int count;
    float first_weight;
    float last_weight;  ///< 0 when there is only one.
    float total;
};

AxisSpan area_span(int index, int from, int to)
{
    constexpr double kNothing = 1e-6;
    const double left = static_cast<double>(index) * from / to;
    const double right = static_cast<double>(index + 1) * from / to;
    int first = static_cast<int>(left + kNothing);
    first = std::min(first, from - 1);
    int last = static_cast<int>(std::ceil(right - kNothing)) - 1;
    last = std::clamp(last, first, from - 1);
    AxisSpan span{};
    span.first = first;
    span.count = last - first + 1;
    if (span.count == 1) {
        span.first_weight = 1.0f;
        span.total = 1.0f;
        return span;
    }
    span.first_weight = static_cast<float>(std::min(first + 1 - left, 1.0));
    span.last_weight = static_cast<float>(std::min(right - last, 1.0));
    span.total = span.first_weight + span.last_weight + static_cast<float>(span.count - 2);
    return span;
}

AxisSpan linear_span(int index, int from, int to)
{
    const double centre = (index + 0.5) * from / to - 0.5;
    const double place = std::clamp(centre, 0.0, static_cast<double>(from - 1));
    AxisSpan span{};
    span.first = static_cast<int>(place);
    span.last_weight = static_cast<float>(place - span.first);
    span.first_weight = 1.0f - span.last_weight;
    span.count = span.last_weight > 0 ? 2 : 1;
    span.total = 1.0f;
    return span;
}

std::vector<AxisSpan> axis_spans(int from, int to)
{
    std::vector<AxisSpan> spans(static_cast<std::size_t>(to));
    for (int index = 0; index < to; ++index)
        spans[static_cast<std::size_t>(index)] =
            to < from ? area_span(index, from, to) : linear_span(index, from, to);
    return spans;
}

unsigned char rounded(float value)
{
    return static_cast<unsigned char>(std::min(value + 0.5f, 255.0f));
}

class SmoothScaler {
public:
    SmoothScaler(const PixelBuffer& source, int width, int height)
        : source_(source),
          result_(width, height, source.channels()),
          columns_(axis_spans(source.width(), width)),
          rows_(axis_spans(source.height(), height)),
          nothing_(source.row_bytes()),
          middle_(source.row_bytes()),
          line_(source.row_bytes() + 1)  // four parts are read where there are three
    {
        first_.sums.resize(source.row_bytes());
        last_.sums.resize(source.row_bytes());
    }

    PixelBuffer run()
    {
        for (int y = 0; y < result_.height(); ++y) {
            const AxisSpan& span = rows_[static_cast<std::size_t>(y)];
            gather_rows(span);
            if (result_.has_alpha())
                put_row<4>(result_.row(y), span.total);
            else
                put_row<3>(result_.row(y), span.total);
        }
        return std::move(result_);
    }

private:
    struct SingleRow {
        int row = -1;
        std::vector<std::uint32_t> sums;
    };

    void sum_rows(int first, int count, std::uint32_t* sums) const
    {
        const RowSums& kernel = RowSums::Best();
        if (source_.has_alpha())
            kernel.sum_with_alpha(source_.row(first), source_.row_bytes(), count,
                                  static_cast<std::size_t>(source_.width()), sums);
        else
            kernel.sum_bytes(source_.row(first), source_.row_bytes(), count, source_.row_bytes(),
                             sums);
    }
    void load(SingleRow& place, int row)
    {
        if (place.row == row)
            return;
        place.row = row;
        sum_rows(row, 1, place.sums.data());
    }
    /// Makes `line_` the weighted sum of the rows of a span.
    void gather_rows(const AxisSpan& span)
    {
        // The last row of one span is often the first of the next.
        if (first_.row != span.first && last_.row == span.first)
            std::swap(first_, last_);
        load(first_, span.first);
        const int last = span.first + span.count - 1;
        if (span.count > 1)
            load(last_, last);
        const std::uint32_t* last_sums = span.count > 1 ? last_.sums.data() : nothing_.data();
        const RowSums& kernel = RowSums::Best();
        const std::size_t count = source_.row_bytes();
        if (span.count <= 2) {
            kernel.combine(nothing_.data(), first_.sums.data(), span.first_weight, last_sums,
                           span.last_weight, count, line_.data());
            return;
        }
        int row = span.first + 1;
        int rows = std::min(last - row, RowSums::kMaxRows);
        sum_rows(row, rows, middle_.data());
        kernel.combine(middle_.data(), first_.sums.data(), span.first_weight, last_sums,
                       span.last_weight, count, line_.data());
        for (row += rows; row < last; row += rows) {
            rows = std::min(last - row, RowSums::kMaxRows);
            sum_rows(row, rows, middle_.data());
            for (std::size_t index = 0; index < count; ++index)
                line_[index] += static_cast<float>(middle_[index]);
        }
    }
    template <int kChannels>
    void put_row(unsigned char* to, float row_total) const
    {
        for (const AxisSpan& span : columns_) {
            const Four sum = sum_columns<kChannels>(span);
            const float total = span.total * row_total;
            if constexpr (kChannels == 4) {
                put_with_alpha(sum, total, to);
            } else {
                for (int part = 0; part < 3; ++part)
                    to[part] = rounded(sum[part] / total);
            }
            to += kChannels;
        }
    }
    template <int kChannels>
    [[nodiscard]] Four sum_columns(const AxisSpan& span) const
    {
        const float* from = line_.data() + static_cast<std::size_t>(span.first) * kChannels;
        Four even = load_four(from) * span.first_weight;
        if (span.count == 1)
            return even;
        const float* last = from + static_cast<std::size_t>(span.count - 1) * kChannels;
        Four odd = load_four(last) * span.last_weight;
        for (from += kChannels; from + kChannels < last; from += std::size_t{2} * kChannels) {
            even += load_four(from);
            odd += load_four(from + std::size_t{kChannels});
        }
        if (from < last)
            even += load_four(from);
        return even + odd;
    }
    [[nodiscard]] static Four load_four(const float* from)
    {
        Four value;
        std::memcpy(&value, from, sizeof value);
        return value;
    }
    /// `sum` holds colours times alpha, and alpha times 255.
    static void put_with_alpha(const Four& sum, float total, unsigned char* to)
    {
        to[3] = rounded(sum[3] / (total * 255.0f));
        if (to[3] == 0) {
            to[0] = to[1] = to[2] = 0;
            return;
        }
        const float scale = 255.0f / sum[3];
        for (int part = 0; part < 3; ++part)
            to[part] = rounded(sum[part] * scale);
    }

    const PixelBuffer& source_;
    PixelBuffer result_;
    std::vector<AxisSpan> columns_;
    std::vector<AxisSpan> rows_;
    std::vector<std::uint32_t> nothing_;
    std::vector<std::uint32_t> middle_;
    SingleRow first_;
    SingleRow last_;
    std::vector<float> line_;
};

}  // namespace

PixelBuffer scaled_smooth(const PixelBuffer& source, int width, int height)
{
    if (source.is_empty() || (width == source.width() && height == source.height()))
        return source.copy();
    return SmoothScaler(source, width, height).run();
}

PixelBuffer scaled_nearest(const PixelBuffer& source, int width, int height)
{
    if (source.is_empty())
        return {};
    PixelBuffer result(width, height, source.channels());
    const auto channels = static_cast<std::size_t>(source.channels());
    std::vector<std::size_t> places(static_cast<std::size_t>(width));
    const auto nearest = [](int index, int from, int to) {
        return static_cast<std::size_t>((2 * std::int64_t{index} + 1) * from /
                                        (2 * std::int64_t{to}));
    };
    for (int x = 0; x < width; ++x)
        places[static_cast<std::size_t>(x)] = nearest(x, source.width(), width) * channels;
    for (int y = 0; y < height; ++y) {
        const unsigned char* from =
            source.row(static_cast<int>(nearest(y, source.height(), height)));
        unsigned char* to = result.row(y);
        for (const std::size_t place : places) {
            std::memcpy(to, from + place, channels);
            to += channels;
        }
    }
    return result;
}

}  // namespace zmr

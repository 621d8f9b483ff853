#include <Quorvex/analysis/Histogram.h>

#include <algorithm>
#include <cstddef>

namespace KOVA::Quorvex {

namespace {

// The values of a window that slides along, in ascending order.
class SortedWindow {
public:
    void Add(int value) { m_values.insert(std::upper_bound(m_values.begin(), m_values.end(), value), value); }
    void Remove(int value) { m_values.erase(std::lower_bound(m_values.begin(), m_values.end(), value)); }
    int Median() const { return m_values[m_values.size() / 2]; }

private:
    std::vector<int> m_values;
};

} // namespace

Histogram::Histogram() : Histogram(256) {}

Histogram::Histogram(int size) {
    setSize(size);
}

void Histogram::setSize(int n) {
    // Zeros, although nobody may rely on them: a histogram that was forgotten to be reset looks the same every time.
    m_bins = n > 0 ? std::shared_ptr<int[]>(new int[static_cast<std::size_t>(n)]()) : nullptr;
    m_size = n;
}

void Histogram::reset() {
    std::fill_n(m_bins.get(), std::max(m_size, 0), 0);
}

int Histogram::getLowestIndex() const {
    for (int i = 0; i < m_size; ++i) {
        if (m_bins[i] > 0) {
            return i;
        }
    }
    return 0;
}

int Histogram::getHighestIndex() const {
    for (int i = m_size - 1; i > 0; --i) {
        if (m_bins[i] > 0) {
            return i;
        }
    }
    return m_size - 1;
}

int Histogram::getMin() const {
    int smallest = -1;
    for (int i = 0; i < m_size; ++i) {
        smallest = std::min(smallest, m_bins[i]);
    }
    return smallest;
}

int Histogram::getMax() const {
    int largest = 0;
    for (int i = 0; i < m_size; ++i) {
        largest = std::max(largest, m_bins[i]);
    }
    return largest;
}

void Histogram::filterMedian() {
    filterMedian(m_bins.get(), m_size, m_filterSize);
}

void Histogram::filterMedian(int* values, int n, int width) const {
    if (n < 1) {
        return;
    }
    const int reach = std::clamp(width / 2, 0, n); // of w and w + 1 for an even w, (width - 1) / 2 for an odd one
    const std::vector<int> source(values, values + n);
    const auto at = [&source](int i) { return source[static_cast<std::size_t>(i)]; };
    SortedWindow window;
    for (int i = 0; i < std::min(reach, n); ++i) {
        window.Add(at(i));
    }
    for (int i = 0; i < n; ++i) {
        if (i + reach < n) {
            window.Add(at(i + reach));
        }
        if (i - reach > 0) {
            window.Remove(at(i - reach - 1));
        }
        values[i] = window.Median();
    }
}

std::vector<int> Histogram::findMaxima(const int* values, int n) const {
    std::vector<int> peaks;
    int previous = 0; // where the run before starts
    for (int start = 0, end = 0; start < n; previous = start, start = end) {
        end = start + 1;
        while (end < n && values[end] == values[start]) {
            ++end;
        }
        const bool isLastValue = start > 0 && start == n - 1;
        if (end == n && !isLastValue) {
            break;
        }
        const bool risesBefore = start == 0 || values[start] >= values[previous];
        const bool fallsAfter = isLastValue || values[start] >= values[end];
        if (risesBefore && fallsAfter) {
            peaks.push_back(start + (end - start) / 2);
        }
    }
    return peaks;
}

int Histogram::getNumMaxima() {
    m_maxima = findMaxima(m_bins.get(), m_size);
    return static_cast<int>(m_maxima.size());
}

int Histogram::getMaximum(int i) const {
    return i >= 0 && static_cast<std::size_t>(i) < m_maxima.size() ? m_maxima[static_cast<std::size_t>(i)] : -1;
}

void Histogram::binarize(int* low, int* high) const {
    constexpr int largestSearched = 512;
    std::vector<int> peaks{100, 400}; // of what more bins hold, which are known to be spread like that
    if (m_size <= largestSearched) {
        std::vector<int> bins(m_bins.get(), m_bins.get() + std::max(m_size, 0));
        int width = 5;
        do {
            filterMedian(bins.data(), m_size, width);
            peaks = findMaxima(bins.data(), m_size);
            width += 2;
        } while (peaks.size() > 2); // ends: a window as wide as all bins makes them all equal
    }
    *low = peaks.empty() ? -1 : peaks[0];
    *high = peaks.size() < 2 ? -1 : peaks[1];
}

} // namespace KOVA::Quorvex
